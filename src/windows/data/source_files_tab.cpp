#include "windows/data/source_files_tab.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "core/settings/settings.h"
#include "plot/chart_widget.h"
#include "scan/file_check.h"
#include "scan/file_list.h"
#include "scan/preview.h"
#include "windows/controls/control_names.h"
#include "windows/controls/push_button.h"
#include "windows/data/channel_bands.h"
#include "windows/data/file_check_pane.h"
#include "windows/data/load_settings_box.h"

namespace quorvane {

namespace {

// Filters of "Load Multiple" by kind. That of "FI" asks for other files than the list shows: kept
// on purpose.
constexpr std::array<const char*, 4> kFilters = {
    QT_TRANSLATE_NOOP("QObject", "XL-A/XL-I Files (*.IP* *.RA*)"),
    QT_TRANSLATE_NOOP("QObject", "DAT Files (*.DAT)"),
    QT_TRANSLATE_NOOP("QObject", "FL Files (*.FL*)"),
    QT_TRANSLATE_NOOP("QObject", "EL Files (*.EL*)")};

}  // namespace

SourceFilesTab::SourceFilesTab(Session& session, SessionHost& host, QWidget* parent)
    : QWidget(parent), session_(session), host_(host), settings_(new LoadSettingsBox(session)) {
  BuildWidgets();
  ConnectSignals();
  ShowFileNames({});  // until the first RefreshDirectory
}

void SourceFilesTab::BuildWidgets() {
  lblCurrentDir_ = Named(new QLabel, "lblCurrentDir");
  lblCurrentDir_->setTextFormat(Qt::PlainText);
  btnChangeDir_ = MakeButton("btnChangeDir", tr("Change Folder"), tr("Select another folder"));
  cmdChooseScans_ =
      MakeButton("cmdChooseScans", tr("Choose Scans..."),
                 tr("All scans of the folder as a table, to choose those to load or to match"));
  lblPreview_ = Named(new QLabel, "lblPreview");
  lblPreview_->setTextFormat(Qt::PlainText);
  // A long name has its tool tip; it does not widen the page.
  lblPreview_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  TChartPreview_ = Named(new ChartWidget, "TChartPreview");
  OfferAxes();

  auto* settings = new QVBoxLayout;
  settings->addWidget(settings_);
  settings->addWidget(BuildFileBox(), 1);
  auto* folder = new QHBoxLayout;
  folder->addWidget(btnChangeDir_);
  folder->addWidget(cmdChooseScans_);
  folder->addWidget(lblCurrentDir_, 1);
  auto* layout = new QGridLayout(this);
  layout->addLayout(folder, 0, 0, 1, 2);
  layout->addLayout(settings, 1, 0, 2, 1);
  layout->addWidget(lblPreview_, 1, 1);
  layout->addWidget(TChartPreview_, 2, 1);
  layout->setRowStretch(2, 1);
  layout->setColumnStretch(1, 1);
}

// The preview is a look at a shape; its axes come on demand, and are there the next time too.
void SourceFilesTab::OfferAxes() {
  auto* axes = Named(new QAction(tr("Show Axes"), TChartPreview_), "mnuShowAxes");
  axes->setCheckable(true);
  axes->setChecked(session_.Module.Preferences.PreviewAxes);
  TChartPreview_->SetAxesShown(session_.Module.Preferences.PreviewAxes);
  TChartPreview_->addAction(axes);
  TChartPreview_->setContextMenuPolicy(Qt::ActionsContextMenu);
  connect(axes, &QAction::toggled, this, [this](bool on) {
    session_.Module.Preferences.PreviewAxes = on;
    TChartPreview_->SetAxesShown(on);
    SaveOwnSettings(session_.Module, session_.Settings, host_);
  });
}

QGroupBox* SourceFilesTab::BuildFileBox() {
  comboDataFile_ = Named(new QComboBox, "comboDataFile");
  comboDataFile_->setView(Named(new QListView, "lbDataFile"));
  comboDataFile_->view()->setAccessibleName(tr("Files of the folder"));
  comboDataFile_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  comboDataFile_->setMinimumContentsLength(16);
  comboDataFile_->setMaxVisibleItems(24);
  cmdRefreshLB_ = MakeButton("cmdRefreshLB", tr("Refresh"), tr("Read the folder again"));
  txtFileComment_ = Named(new QPlainTextEdit, "txtFileComment");
  txtFileComment_->setReadOnly(true);
  txtFileComment_->setTabChangesFocus(true);
  const int line = QFontMetrics(txtFileComment_->font()).lineSpacing();
  txtFileComment_->setFixedHeight(3 * line + 10);  // two comment lines, one of them wrapped
  paneFileCheck_ = new FileCheckPane;
  checkTimer_ = new QTimer(this);
  checkTimer_->setSingleShot(true);
  cmdPreviewIt_ = MakeButton("cmdPreviewIt", tr("Preview"), tr("Preview selected file"));
  cmdLoadFile_ = MakeButton("cmdLoadFile", tr("Load"), tr("Load selected file"));
  cmdLoadBlank_ = MakeButton("cmdLoadBlank", tr("Load Blank"), tr("Load selected file as a blank"));
  cmdMultiLoad_ =
      MakeButton("cmdMultiLoad", tr("Load Multiple"),
                 tr("Load multiple files using current centerpiece type and selected channels"));

  auto* box = new QGroupBox(tr("File"));
  auto* layout = new QGridLayout(box);
  layout->addWidget(comboDataFile_, 0, 0);
  layout->addWidget(cmdRefreshLB_, 0, 1);
  layout->addWidget(txtFileComment_, 1, 0, 1, 2);
  auto* buttons = new QGridLayout;
  buttons->addWidget(cmdPreviewIt_, 0, 0);
  buttons->addWidget(cmdLoadBlank_, 0, 1);
  buttons->addWidget(cmdLoadFile_, 1, 0);
  buttons->addWidget(cmdMultiLoad_, 1, 1);
  layout->addWidget(paneFileCheck_, 2, 0, 1, 2);
  layout->addLayout(buttons, 3, 0, 1, 2);
  layout->setRowStretch(2, 1);
  return box;
}

void SourceFilesTab::ConnectSignals() {
  connect(settings_, &LoadSettingsBox::KindChanged, this, &SourceFilesTab::FillFileList);
  connect(settings_, &LoadSettingsBox::CenterpieceChanged, this,
          [this] { ShowPreview(Chart(TChartPreview_->GetChart()), lblPreview_->text()); });
  connect(settings_, &LoadSettingsBox::ChannelsChanged, this, &SourceFilesTab::CheckSoon);
  connect(settings_, &LoadSettingsBox::AllFilesToggled, this, &SourceFilesTab::FillFileList);
  connect(settings_, &LoadSettingsBox::SettingsChanged, this, &SourceFilesTab::SettingsChanged);
  connect(checkTimer_, &QTimer::timeout, this, &SourceFilesTab::ShowCheck);
  connect(btnChangeDir_, &QPushButton::clicked, this, &SourceFilesTab::ChangeFolder);
  connect(cmdRefreshLB_, &QPushButton::clicked, this, &SourceFilesTab::FillFileList);
  connect(comboDataFile_, &QComboBox::currentIndexChanged, this, &SourceFilesTab::ShowComments);
  connect(cmdPreviewIt_, &QPushButton::clicked, this, &SourceFilesTab::Preview);
  connect(cmdLoadFile_, &QPushButton::clicked, this, &SourceFilesTab::LoadOne);
  connect(cmdLoadBlank_, &QPushButton::clicked, this, &SourceFilesTab::LoadBlank);
  connect(cmdMultiLoad_, &QPushButton::clicked, this, &SourceFilesTab::LoadMany);
  connect(cmdChooseScans_, &QPushButton::clicked, this, &SourceFilesTab::ScanChoiceRequested);
}

const ScanLoadSettings& SourceFilesTab::Settings() const {
  return session_.Module.LoadSettings;
}

void SourceFilesTab::ShowSettings() {
  settings_->ShowSettings();
}

QString SourceFilesTab::SettingsText() const {
  return settings_->SettingsText();
}

std::filesystem::path SourceFilesTab::SelectedPath() const {
  const QString name = comboDataFile_->currentText();
  return name.isEmpty() ? std::filesystem::path() : session_.CurrentFolder / ToPath(name);
}

void SourceFilesTab::RefreshDirectory() {
  ShowFolder(32, 29);
  FillFileList();
}

void SourceFilesTab::FollowSave() {
  std::error_code error;
  if (!std::filesystem::equivalent(session_.CurrentFolder, listed_, error)) {
    RefreshDirectory();
    return;
  }
  const QString selected = comboDataFile_->currentText();
  std::vector<std::string> names;
  try {
    names = NamesIn(listed_);
  } catch (const FileFault& fault) {
    host_.ReportFailure(fault.what());
    return;
  }
  if (std::find(names.begin(), names.end(), selected.toStdString()) == names.end()) {
    ShowFileNames(names);
    return;
  }
  SetNames(names);
  const QSignalBlocker quiet(comboDataFile_);
  comboDataFile_->setCurrentText(selected);
  CheckSoon();  // the file may be the one that was written
}

void SourceFilesTab::ShowFolder(qsizetype longest, qsizetype kept) {
  const QString folder = ToQString(session_.CurrentFolder);
  const QString shown = folder.size() > longest ? "..." + folder.right(kept) : folder;
  lblCurrentDir_->setText(tr("Current Directory:: %1").arg(shown));
  lblCurrentDir_->setToolTip(folder);
}

void SourceFilesTab::ChangeFolder() {
  const QString chosen =
      session_.Ask.ChooseFolder(this, tr("Select A Directory"), ToQString(session_.CurrentFolder));
  if (!chosen.isEmpty()) GoToFolder(chosen);
}

bool SourceFilesTab::GoToFolder(const QString& folder) {
  std::vector<std::string> names;
  try {
    names = NamesIn(ToPath(folder));
  } catch (const FileFault& fault) {
    host_.ShowMessage("", fault.what(), MessageIcon::kExclamation);
    return false;
  }
  session_.CurrentFolder = listed_ = ToPath(folder);
  ShowFolder(40, 37);
  host_.PrintIt("\r\nThe current directory is " + folder.toStdString());
  ShowFileNames(names);
  emit FolderChanged();
  return true;
}

std::vector<std::string> SourceFilesTab::NamesIn(const std::filesystem::path& folder) const {
  return ListScanFiles(folder,
                       settings_->AllFiles() ? std::nullopt : std::optional(Settings().kind));
}

void SourceFilesTab::FillFileList() {
  session_.Remark({});
  listed_ = session_.CurrentFolder;
  std::vector<std::string> names;
  try {
    names = NamesIn(listed_);
  } catch (const FileFault& fault) {
    host_.ReportFailure(fault.what());
  }
  ShowFileNames(names);
}

void SourceFilesTab::ShowFileNames(const std::vector<std::string>& names) {
  ShowPreview({}, {});
  SetNames(names);
  if (names.empty()) txtFileComment_->clear();
  ShowComments();
}

void SourceFilesTab::SetNames(const std::vector<std::string>& names) {
  QStringList list;
  for (const std::string& name : names) list << QString::fromStdString(name);
  const QSignalBlocker quiet(comboDataFile_);
  comboDataFile_->clear();
  comboDataFile_->addItems(list);
  for (QPushButton* button : {cmdPreviewIt_, cmdLoadFile_, cmdLoadBlank_}) {
    button->setEnabled(!list.isEmpty());
  }
}

void SourceFilesTab::ShowComments() {
  CheckSoon();
  comboDataFile_->setToolTip(ToQString(SelectedPath()));  // the name may have no room
  if (SelectedPath().empty()) return;
  session_.Remark({});  // what was wrong with another file
  const std::string lines = GetCommentLines(session_.Module.Store, SelectedPath(), host_);
  if (!lines.empty()) txtFileComment_->setPlainText(QString::fromStdString(lines));
}

void SourceFilesTab::CheckSoon() {
  checkTimer_->start(0);
}

void SourceFilesTab::ShowCheck() {
  const std::filesystem::path path = SelectedPath();
  if (path.empty()) {
    paneFileCheck_->Clear();
    return;
  }
  FileCheck check = CheckFile(path, Settings());
  std::string drift = TemperatureDrift(session_.Module.Store.Datasets, check.columns.temperature);
  paneFileCheck_->ShowCheck(std::move(check), std::move(drift));
}

void SourceFilesTab::Preview() {
  if (SelectedPath().empty()) return;
  const std::optional<Chart> chart = PreviewFile(SelectedPath(), host_);
  if (chart) ShowPreview(*chart, tr("Preview of %1").arg(comboDataFile_->currentText()));
}

void SourceFilesTab::ShowPreview(const Chart& chart, const QString& fileName) {
  lblPreview_->setText(fileName);
  lblPreview_->setToolTip(fileName);
  TChartPreview_->SetChart(chart);
  if (!chart.panels.empty()) MarkChannels();
}

void SourceFilesTab::MarkChannels() {
  const std::vector<ChartBand> bands = ChannelBands(Settings().centerpiece);
  if (!bands.empty()) TChartPreview_->SetBands(bands);
}

bool SourceFilesTab::SomeChannelChosen() {
  const auto& channels = Settings().chkChannel;
  if (std::find(channels.begin(), channels.end(), true) != channels.end()) return true;
  host_.ReportFailure(tr("No channel is checked: nothing was loaded").toStdString());
  return false;
}

template <class Load>
bool SourceFilesTab::RunLoad(FileKind kind, Load&& load) {
  session_.Remark({});
  host_.GoToEndOfLog();
  DatasetStore& store = session_.Module.Store;
  const int before = store.NumDatasets();
  load(store);
  if (store.NumDatasets() == before) return false;
  session_.Remark(QString::fromStdString(TakenForText(store, before, kind)));
  emit DatasetsChanged();
  return true;
}

void SourceFilesTab::LoadOne() {
  if (SelectedPath().empty() || !SomeChannelChosen()) return;
  RunLoad(Settings().kind, [this](DatasetStore& store) {
    LoadSelectedFile(store, Settings(), SelectedPath(), host_);
  });
}

void SourceFilesTab::LoadBlank() {
  if (SelectedPath().empty()) return;
  RunLoad(Settings().kind, [this](DatasetStore& store) {
    LoadBlankFile(store, Settings().kind, SelectedPath(), host_);
  });
}

void SourceFilesTab::LoadMany() {
  if (!SomeChannelChosen()) return;
  const QString filter =
      QObject::tr(kFilters[static_cast<std::size_t>(Settings().kind)]) + ";;" + tr("All files (*)");
  const QStringList chosen = session_.Ask.OpenFiles(
      this, {tr("Load Multiple Files"), ToQString(session_.CurrentFolder), filter, {}});
  if (chosen.isEmpty()) return;
  std::vector<std::filesystem::path> paths;
  for (const QString& path : chosen) paths.push_back(ToPath(path));
  LoadScans(paths);
}

bool SourceFilesTab::LoadScans(const std::vector<std::filesystem::path>& paths) {
  if (session_.Calculating || !SomeChannelChosen()) return false;
  return RunLoad(Settings().kind,
                 [&](DatasetStore& store) { LoadNamedFiles(store, Settings(), paths, host_); });
}

void SourceFilesTab::LoadFiles(const QStringList& paths) {
  if (session_.Calculating || !SomeChannelChosen()) return;
  std::vector<std::filesystem::path> dropped;
  for (const QString& path : paths) dropped.push_back(ToPath(path));
  RunLoad(Settings().kind,
          [&](DatasetStore& store) { LoadDroppedFiles(store, Settings(), dropped, host_); });
}

// Names of the kind "FI" come from the memory of the selected file, which stays as it is.
void SourceFilesTab::LoadWritten(const QStringList& paths, ScanLoadSettings settings) {
  for (const FileKind kind : {FileKind::kIpRa, FileKind::kFi}) {
    settings.kind = kind;
    std::vector<std::filesystem::path> ofKind;
    for (const QString& path : paths) {
      const std::filesystem::path file = ToPath(path);
      if (IsNameOfKind(PathText(file.filename()), kind)) ofKind.push_back(file);
    }
    if (ofKind.empty()) continue;
    RunLoad(kind, [&](DatasetStore& store) {
      if (kind == FileKind::kIpRa) {
        LoadNamedFiles(store, settings, ofKind, host_);
        return;
      }
      const std::string selected = store.HeaderLine;
      for (const std::filesystem::path& path : ofKind) {
        GetCommentLines(store, path, host_);
        LoadNamedFile(store, settings, path, host_);
      }
      store.HeaderLine = selected;
    });
  }
}

void SourceFilesTab::LoadImported(const QStringList& paths) {
  if (!session_.Calculating && SomeChannelChosen()) LoadWritten(paths, Settings());
}

void SourceFilesTab::LoadWhole(const QStringList& paths) {
  if (!session_.Calculating) LoadWritten(paths, {});
}

}  // namespace quorvane
