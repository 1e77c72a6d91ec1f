// frmData: the datasets from their files to the fit, a tab for each step.
#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

#include "base/k_display.h"
#include "windows/session/printable.h"

class QLabel;
class QTabWidget;

namespace quorvane {

class EditTab;
class FitControlTab;
class HintWindow;
class LoadedDataTab;
class PageScroll;
class ResultPanel;
class SourceFilesTab;
class SessionHost;
struct Session;

class DataWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  DataWindow(Session& session, SessionHost& host, QWidget* parent = nullptr);

  SourceFilesTab& SourceFiles() { return *source_; }
  LoadedDataTab& LoadedData() { return *loaded_; }
  FitControlTab& FitControl() { return *control_; }
  EditTab& Editing() { return *edit_; }
  ResultPanel& Results() { return *results_; }

  // Rows and tabs after the store was filled or emptied as a whole; shows the first tab, or the
  // parameter page if the session brought one.
  void ShowNewStore();

  // The same after a job, or a fit that was restored, has changed datasets, and set up the page
  // anew if `setUp`.
  void ShowChangedPage(bool setUp);

  // The constants, the display of K or MW, or the plot options have changed.
  void RefreshDisplay();

  // Stores the entry that is being edited. False if it was refused.
  bool CommitPending();

  // While a calculation runs nothing here can be changed.
  void SetCalculating(bool on);

  // At which no tab needs to scroll.
  QSize WholeSize() const;

  // Lets go what adjusts values of the page. Comes before the store is replaced, when the values
  // can still go back to their datasets.
  void ClosePage() { emit PageClosing(); }

  PrintContent Printed() const override;  // the chart of the tab "Edit"

 signals:
  void FitRequested();
  void FitToRestRequested();
  void CalcCIRequested();
  void ShowCCCsRequested();
  void FitOutdated();
  void DatasetsChanged();
  // The datasets of the parameter page are about to change, or the page is set up anew.
  void PageClosing();
  void KDisplayChosen(KDisplay display);
  void MwDisplayChosen(bool buoyant);

 private:
  void ConnectTabs();
  void ConnectKeys();
  void UpdateTabs();
  void AfterLoad();
  void AfterStoreChange();
  void EditDataset(int dataset);
  void FollowTab(int tab);
  void ShowHint();
  void SetUpFit();
  void OpenPage();
  void GrowToPage();
  PageScroll* Page(int tab) const;

  Session& session_;
  SessionHost& host_;
  QTabWidget* dataTab_;
  SourceFilesTab* source_;
  LoadedDataTab* loaded_;
  FitControlTab* control_;
  ResultPanel* results_;
  EditTab* edit_;
  QLabel* status_;
  QPointer<HintWindow> hint_;  // until it is closed
  std::vector<bool> blanks_;   // of the datasets that the tabs were set for: which are blanks
  bool hintShown_ = false;     // in this run
};

}  // namespace quorvane
