// The tab "Fit Control" of frmData: the parameter page, on which a fit is stated.
#pragma once

#include <QPointer>
#include <QWidget>
#include <array>

#include "base/k_display.h"
#include "core/page/constants.h"

class QPushButton;

namespace quorvane {

class FitRows;
class ModelBlock;
class PageSteps;
class RestLine;
class WeightLine;
class SessionHost;
struct Model;
struct Session;

class FitControlTab : public QWidget {
  Q_OBJECT
 public:
  FitControlTab(Session& session, SessionHost& host, QWidget* parent = nullptr);

  // Builds the page for model `model` and the datasets that are checked. False, with a message and
  // the page as it was, if none is checked or more than a fit can hold.
  bool SetupFit(const Model& model);

  // Builds the page that the session has, such as one that was loaded with its experiment.
  void ShowPage();

  // Records and shared values into the boxes: after a fit, or when a constant has changed. Rows
  // whose datasets are no longer loaded stay as they are.
  void ShowValues();

  // The values of row `row` (from 0) into its boxes.
  void ShowRow(int row);

  // The display of K or of molecular weights has changed. An entry that is not yet stored is lost;
  // so CommitPending comes before the change.
  void RefreshDisplay();

  // Whether there is a fit whose error analysis can be shown.
  void SetFitDone(bool done);
  bool FitDone() const { return fitDone_; }

  // Stores what was typed and not yet stored. False if it was refused; then the message has been
  // shown and the box has the focus.
  bool CommitPending();

  // While a calculation runs the page can be looked at, not changed.
  void SetCalculating(bool on);

  // The focus goes back to where it was before the last calculation.
  void RestoreFocus();

  QPushButton& FitButton() { return *cmdFitMe_; }
  RestLine& Rest() { return *rest_; }
  QPushButton& PreviewButton() { return *cmdPreviewFit_; }

 signals:
  void FitRequested();
  void FitToRestRequested();
  void PreviewRequested();
  void CalcCIRequested();
  void ShowCCCsRequested();
  void FitOutdated();  // there is no fit any more whose error analysis can be shown
  void PageClosing();  // the page is about to be built anew
  void RefConcRequested(int row);
  void KDisplayChosen(KDisplay display);
  void MwDisplayChosen(bool buoyant);
  void ConstantRequested(Constant constant);

 private:
  bool SetupEngine(const Model& model);
  void BuildWidgets();
  std::array<QPushButton*, 5> Buttons() const;
  void ConnectSignals();
  void ChainTabOrder();
  void ShowStep();
  void WarnNonideal();

  Session& session_;
  SessionHost& host_;
  QWidget* top_;  // block and buttons
  ModelBlock* block_;
  FitRows* rows_;
  RestLine* rest_;
  PageSteps* steps_;
  WeightLine* weights_;
  QPushButton* cmdFitMe_;
  QPushButton* cmdFitToRest_;
  QPushButton* cmdPreviewFit_;
  QPushButton* cmdCalcCI_;
  QPushButton* cmdShowCCCs_;
  bool fitDone_ = false;
  QPointer<QWidget> focused_;  // before the calculation that runs, or the last one
};

}  // namespace quorvane
