// frmChooseScans: the scans of a folder as a table of series, to choose those to load or to match.
#pragma once

#include <QWidget>
#include <filesystem>
#include <vector>

#include "windows/data/scan_lister.h"
#include "windows/data/scan_tree_model.h"
#include "windows/session/session.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSplitter;
class QTimer;
class QToolButton;
class QTreeView;

namespace quorvane {

class ScanPictures;
class SourceFilesTab;

class ChooseScansWindow : public QWidget {
  Q_OBJECT
 public:
  // Lists the current folder of the session, and loads through the tab; all outlive it.
  ChooseScansWindow(Session& session, SourceFilesTab& source, QWidget* parent = nullptr);

  void Open();

  // The current folder, or a file in it, may be another one.
  void Refresh();

  QSize sizeHint() const override;

 signals:
  void MatchRequested(const std::vector<std::filesystem::path>& paths);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void BuildWidgets();
  QWidget* BuildTable();
  QHBoxLayout* BuildFolderLine();
  QHBoxLayout* BuildStateLine();
  QHBoxLayout* BuildButtons();
  void ConnectSignals();
  void ConnectLister();

  void ShowList(const ScanList& list);
  void FitColumns();
  void ShowForeign(const std::vector<ForeignFile>& foreign);
  void ShowFailure(const QString& reason);
  void ShowState();
  void ShowSettings();
  void ShowCurrent();
  void ShowAllRows();
  void Filter();
  void ChangeFolder();
  void LoadChecked();
  void MatchSeries();
  void TellForeign();
  void Arrange();
  void SaveArrangement() const;

  QModelIndex Current() const;  // of the model

  Session& session_;
  SourceFilesTab& source_;
  ScanTreeModel scans_;
  ScanTreeFilter rows_;
  ScanLister lister_;
  std::filesystem::path listed_;  // the folder whose scans are shown
  std::vector<ForeignFile> foreign_;
  bool arranged_ = false;
  QTimer* showTimer_;  // once for all that changes at a time
  QLabel* lblScanFolder_;
  QPushButton* cmdScanFolder_;
  QPushButton* cmdRefreshScans_;
  QLineEdit* txtScanFilter_;
  QSplitter* parts_;
  QTreeView* treeScans_;
  ScanPictures* pictures_;
  QLabel* lblScanState_;
  QProgressBar* barScans_;
  QToolButton* cmdForeign_;
  QLabel* lblLoadAs_;
  QLabel* lblKindWarning_;
  QPushButton* cmdLastOfEach_;
  QPushButton* cmdCheckNone_;
  QPushButton* cmdMatchGroup_;
  QPushButton* cmdLoadChecked_;
};

}  // namespace quorvane
