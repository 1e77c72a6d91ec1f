// The tab "Source Files" of the data window: a folder, the kind of its files, a look at one, and
// loading.
#pragma once

#include <QWidget>
#include <array>
#include <filesystem>
#include <vector>

#include "scan/loading.h"
#include "windows/session/session.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTimer;

namespace quorvane {

class ChartWidget;
class FileCheckPane;
class LoadSettingsBox;

class SourceFilesTab : public QWidget {
  Q_OBJECT
 public:
  SourceFilesTab(Session& session, SessionHost& host,
                 QWidget* parent = nullptr);  // both outlive it

  // Shows session.CurrentFolder and lists its files anew.
  void RefreshDirectory();

  // The settings of a load as the session has them.
  void ShowSettings();

  // After a file was saved: the same if session.CurrentFolder is another one. Otherwise new files
  // join the list, and the selected one stays selected as it was looked at.
  void FollowSave();

  // Loads dropped files with the current settings; what is no scan is named in a message.
  void LoadFiles(const QStringList& paths);

  // Loads scan files that the program has written, each as the kind that its name says, with the
  // channels that are set; or whole, whatever is set.
  void LoadImported(const QStringList& paths);
  void LoadWhole(const QStringList& paths);

  // The selected file, the settings or the loaded scans have changed: checks the file again, once
  // for all changes until then.
  void CheckSoon();

  // Loads scans with the current settings as "Load Multiple" does. True if that added datasets.
  bool LoadScans(const std::vector<std::filesystem::path>& paths);

  // Makes `folder` the current one. False, with a message, if it cannot be read.
  bool GoToFolder(const QString& folder);

  // What loading goes by now, and in words: "IP,RA, 6 channels, A B C".
  const ScanLoadSettings& Settings() const;
  QString SettingsText() const;

  QPushButton& LoadButton() { return *cmdMultiLoad_; }  // of all selected files

 signals:
  void DatasetsChanged();  // datasets were loaded
  void FolderChanged();    // session.CurrentFolder is another one
  void SettingsChanged();
  void ScanChoiceRequested();

 private:
  void BuildWidgets();
  void OfferAxes();
  QGroupBox* BuildFileBox();
  void ConnectSignals();

  std::filesystem::path SelectedPath() const;  // empty if no file is selected

  void ChangeFolder();
  void ShowFolder(qsizetype longest, qsizetype kept);
  void FillFileList();
  std::vector<std::string> NamesIn(const std::filesystem::path& folder) const;
  void SetNames(const std::vector<std::string>& names);
  void ShowFileNames(const std::vector<std::string>& names);
  void ShowComments();
  void ShowCheck();
  void Preview();
  void ShowPreview(const Chart& chart, const QString& fileName);
  void MarkChannels();

  bool SomeChannelChosen();
  void LoadOne();
  void LoadMany();
  void LoadBlank();
  // Loads by `load`. If that added datasets it emits DatasetsChanged, and a remark says which kind
  // their files were taken for. Whether it did.
  template <class Load>
  bool RunLoad(FileKind kind, Load&& load);
  void LoadWritten(const QStringList& paths, ScanLoadSettings settings);

  Session& session_;
  SessionHost& host_;
  LoadSettingsBox* settings_;
  QLabel* lblCurrentDir_;
  QPushButton* btnChangeDir_;
  QComboBox* comboDataFile_;
  QPushButton* cmdRefreshLB_;
  QPlainTextEdit* txtFileComment_;
  FileCheckPane* paneFileCheck_;
  QTimer* checkTimer_;
  QPushButton* cmdPreviewIt_;
  QPushButton* cmdLoadFile_;
  QPushButton* cmdLoadBlank_;
  QPushButton* cmdMultiLoad_;
  QPushButton* cmdChooseScans_;
  QLabel* lblPreview_;
  ChartWidget* TChartPreview_;
  std::filesystem::path listed_;  // the folder whose files the list shows
};

}  // namespace quorvane
