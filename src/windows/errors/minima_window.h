// frmMinima: whether the last fit stands at its best minimum.
#pragma once

#include <QDialog>
#include <memory>

#include "stats/minimum_check.h"

class QLabel;
class QLayout;
class QPushButton;
class QSpinBox;
class QTableWidget;

namespace quorvane {

struct FinishedFit;
struct FitState;

class MinimaWindow : public QDialog {
  Q_OBJECT
 public:
  explicit MinimaWindow(QWidget* parent = nullptr);

  // The check runs: only "Stop" can be pressed.
  void SetRunning(bool on);

  // What a check of `fit` found; the better minimum, if there is one, is selected.
  void ShowOutcome(std::shared_ptr<const FinishedFit> fit, const MinimumRequest& request,
                   const MinimumOutcome& outcome);

  void reject() override;  // stops a running check and stays

 signals:
  void CheckRequested(const MinimumRequest& request);
  void StopRequested();
  // "Use as Start": values of the parameters of the fit, in the order of FitA.
  void UseRequested(const Array1<double>& parameters);

 private:
  void BuildWidgets();
  QLayout* BuildHead();
  QLayout* BuildFoot();
  void ConnectSignals();
  void FillRows(const FitState& fit);
  void UpdateUse();

  MinimumOutcome outcome_;
  std::shared_ptr<const FinishedFit> fit_;  // that was checked
  bool running_ = false;
  QSpinBox* spnStarts_;
  QSpinBox* spnSeed_;
  QPushButton* cmdCheckMinimum_;
  QPushButton* cmdStopMinima_;
  QLabel* lblMinima_;
  QTableWidget* gridMinima_;
  QPushButton* cmdUseAsStart_;
  QPushButton* cmdClose_;
};

}  // namespace quorvane
