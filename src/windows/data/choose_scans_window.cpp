#include "windows/data/choose_scans_window.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "base/quiet_host.h"
#include "core/settings/settings.h"
#include "windows/controls/child_window.h"
#include "windows/controls/control_names.h"
#include "windows/controls/push_button.h"
#include "windows/controls/warning_ink.h"
#include "windows/data/scan_pictures.h"
#include "windows/data/source_files_tab.h"

namespace quorvane {

namespace {

constexpr const char* kSizeKey = "ChooseScansSize";
constexpr const char* kColumnsKey = "ChooseScansColumns";

QLabel* PlainLabel(const char* name) {
  auto* label = Named(new QLabel, name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

bool IsEnter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

ChooseScansWindow::ChooseScansWindow(Session& session, SourceFilesTab& source, QWidget* parent)
    : QWidget(parent), session_(session), source_(source) {
  BuildWidgets();
  ConnectSignals();
  ConnectLister();
}

void ChooseScansWindow::BuildWidgets() {
  setObjectName("frmChooseScans");
  setWindowTitle(tr("Choose Scans"));
  showTimer_ = new QTimer(this);
  showTimer_->setSingleShot(true);
  parts_ = Named(new QSplitter(Qt::Horizontal), "spltScans");
  parts_->setChildrenCollapsible(false);
  parts_->addWidget(BuildTable());
  pictures_ = new ScanPictures;
  parts_->addWidget(pictures_);
  parts_->setStretchFactor(1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addLayout(BuildFolderLine());
  layout->addWidget(parts_, 1);
  layout->addLayout(BuildStateLine());
  layout->addLayout(BuildButtons());
  const std::array<QWidget*, 9> order = {cmdScanFolder_, txtScanFilter_, cmdRefreshScans_,
                                         treeScans_,     cmdForeign_,    cmdLastOfEach_,
                                         cmdCheckNone_,  cmdMatchGroup_, cmdLoadChecked_};
  for (std::size_t k = 1; k < order.size(); ++k) setTabOrder(order[k - 1], order[k]);
}

QHBoxLayout* ChooseScansWindow::BuildFolderLine() {
  cmdScanFolder_ = MakeButton("cmdScanFolder", tr("Change Folder"), tr("Select another folder"));
  lblScanFolder_ = PlainLabel("lblScanFolder");
  lblScanFolder_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  txtScanFilter_ = Named(new QLineEdit, "txtScanFilter");
  txtScanFilter_->setPlaceholderText(tr("Words of a row, such as 280 10000"));
  txtScanFilter_->setToolTip(tr("Only scans in whose row each of these words stands"));
  txtScanFilter_->setClearButtonEnabled(true);
  txtScanFilter_->setMinimumWidth(fontMetrics().averageCharWidth() * 44);
  auto* filter = new QLabel(tr("F&ilter:"));
  filter->setBuddy(txtScanFilter_);
  cmdRefreshScans_ = MakeButton("cmdRefreshScans", tr("Refresh"), tr("Read the folder again (F5)"));
  auto* line = new QHBoxLayout;
  line->addWidget(cmdScanFolder_);
  line->addWidget(lblScanFolder_, 1);
  line->addWidget(filter);
  line->addWidget(txtScanFilter_);
  line->addWidget(cmdRefreshScans_);
  return line;
}

QWidget* ChooseScansWindow::BuildTable() {
  rows_.setSourceModel(&scans_);
  treeScans_ = Named(new QTreeView, "treeScans");
  treeScans_->setAccessibleName(tr("Scans of the folder"));
  treeScans_->setModel(&rows_);
  treeScans_->setUniformRowHeights(true);
  treeScans_->setAlternatingRowColors(true);
  treeScans_->setSortingEnabled(true);
  treeScans_->setExpandsOnDoubleClick(false);
  treeScans_->setIndentation(fontMetrics().averageCharWidth() * 3);
  treeScans_->header()->setStretchLastSection(false);
  treeScans_->header()->setFirstSectionMovable(false);
  treeScans_->installEventFilter(this);
  treeScans_->sortByColumn(ScanTreeModel::kHours, Qt::AscendingOrder);
  return treeScans_;
}

QHBoxLayout* ChooseScansWindow::BuildStateLine() {
  lblScanState_ = PlainLabel("lblScanState");
  barScans_ = Named(new QProgressBar, "barScans");
  barScans_->setMaximumWidth(fontMetrics().averageCharWidth() * 24);
  barScans_->setMaximumHeight(fontMetrics().height());
  barScans_->setAccessibleName(tr("Share of the folder that has been read"));
  cmdForeign_ = Named(new QToolButton, "cmdForeign");
  cmdForeign_->setAccessibleName(tr("Files that are no scans"));
  cmdForeign_->setAutoRaise(true);
  auto* line = new QHBoxLayout;
  line->addWidget(lblScanState_);
  line->addWidget(barScans_);
  line->addStretch();
  line->addWidget(cmdForeign_);
  return line;
}

QHBoxLayout* ChooseScansWindow::BuildButtons() {
  lblLoadAs_ = PlainLabel("lblLoadAs");
  lblLoadAs_->setToolTip(tr("File type, centerpiece and channels of the tab \"Source Files\""));
  lblKindWarning_ = PlainLabel("lblKindWarning");
  lblKindWarning_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  cmdLastOfEach_ =
      MakeButton("cmdLastOfEach", tr("&Last of Each"),
                 tr("Check the last scan of each cell, wavelength and speed alone: what "
                    "a global fit wants"));
  cmdCheckNone_ = MakeButton("cmdCheckNone", tr("Check None"), tr("Take all check marks away"));
  cmdMatchGroup_ =
      MakeButton("cmdMatchGroup", tr("Ma&tch Group"),
                 tr("Compare the scans of this cell, wavelength and speed with the last "
                    "of them, in the window \"Match\""));
  cmdLoadChecked_ = MakeButton("cmdLoadChecked", tr("Load Chec&ked"),
                               tr("Load the checked scans as \"Load Multiple\" does (Enter)"));
  auto* line = new QHBoxLayout;
  line->addWidget(lblLoadAs_);
  line->addWidget(lblKindWarning_, 1);
  for (QPushButton* button : {cmdLastOfEach_, cmdCheckNone_, cmdMatchGroup_, cmdLoadChecked_}) {
    line->addWidget(button);
  }
  return line;
}

void ChooseScansWindow::ConnectSignals() {
  connect(showTimer_, &QTimer::timeout, this, &ChooseScansWindow::ShowCurrent);
  connect(cmdScanFolder_, &QPushButton::clicked, this, &ChooseScansWindow::ChangeFolder);
  connect(cmdRefreshScans_, &QPushButton::clicked, this, &ChooseScansWindow::Refresh);
  connect(txtScanFilter_, &QLineEdit::textChanged, this, &ChooseScansWindow::Filter);
  connect(treeScans_->selectionModel(), &QItemSelectionModel::currentChanged, showTimer_,
          [this] { showTimer_->start(0); });
  connect(&scans_, &ScanTreeModel::ChecksChanged, this, &ChooseScansWindow::ShowState);
  connect(cmdForeign_, &QToolButton::clicked, this, &ChooseScansWindow::TellForeign);
  connect(cmdLastOfEach_, &QPushButton::clicked, &scans_, &ScanTreeModel::CheckLastOfEach);
  connect(cmdCheckNone_, &QPushButton::clicked, &scans_, &ScanTreeModel::CheckNone);
  connect(cmdMatchGroup_, &QPushButton::clicked, this, &ChooseScansWindow::MatchSeries);
  connect(cmdLoadChecked_, &QPushButton::clicked, this, &ChooseScansWindow::LoadChecked);
  connect(&source_, &SourceFilesTab::SettingsChanged, this, &ChooseScansWindow::ShowSettings);
  connect(&source_, &SourceFilesTab::FolderChanged, this, [this] {
    if (isVisible()) Refresh();
  });
  connect(&source_, &SourceFilesTab::ScanChoiceRequested, this, &ChooseScansWindow::Open);
}

void ChooseScansWindow::ConnectLister() {
  connect(&lister_, &ScanLister::Progress, barScans_, &QProgressBar::setValue);
  connect(&lister_, &ScanLister::Listed, this, &ChooseScansWindow::ShowList);
  connect(&lister_, &ScanLister::ChangesFound, this, [this](const std::vector<ScanSeries>& series) {
    scans_.ShowChanges(series);
    barScans_->hide();
    ShowCurrent();
  });
  connect(&lister_, &ScanLister::Failed, this, &ChooseScansWindow::ShowFailure);
}

QSize ChooseScansWindow::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 200, fontMetrics().height() * 42};
}

void ChooseScansWindow::Open() {
  ShowChild(*this);
  if (!arranged_) Arrange();
  ShowSettings();
  Refresh();
  treeScans_->setFocus();
}

void ChooseScansWindow::Refresh() {
  if (listed_ != session_.CurrentFolder) {
    scans_.Show({});
    ShowForeign({});
    pictures_->Clear();
  }
  listed_ = session_.CurrentFolder;
  lblScanFolder_->setText(ToQString(listed_));
  lblScanFolder_->setToolTip(ToQString(listed_));
  barScans_->setValue(0);
  barScans_->show();
  lblScanState_->setText(tr("Reading the folder ..."));
  lister_.List(listed_);
}

void ChooseScansWindow::ShowList(const ScanList& list) {
  const ListedScan* current = scans_.ScanAt(Current());
  const std::filesystem::path chosen = current != nullptr ? current->facts.path : "";
  const bool first = scans_.Series().empty();
  scans_.Show(list.series);
  if (first) scans_.CheckLastOfEach();  // what most are after; an update keeps the user's checks
  ShowForeign(list.foreign);
  ShowAllRows();
  if (first) FitColumns();
  QModelIndex shown = scans_.index(0, 0, scans_.index(0, 0));
  for (int place = 0; place < scans_.rowCount(); ++place) {
    const QModelIndex parent = scans_.index(place, 0);
    for (int k = 0; k < scans_.rowCount(parent); ++k) {
      const QModelIndex row = scans_.index(k, 0, parent);
      if (scans_.ScanAt(row)->facts.path == chosen) shown = row;
    }
  }
  treeScans_->setCurrentIndex(rows_.mapFromSource(shown));
  pictures_->ReadAgain();
  ShowState();
  ShowCurrent();
}

// All columns in sight, unless the user has set them before; the pictures get the rest.
void ChooseScansWindow::FitColumns() {
  if (LoadArrangement(session_.Settings, kColumnsKey).empty()) {
    for (int k = 0; k < ScanTreeModel::kColumns; ++k) treeScans_->resizeColumnToContents(k);
  }
  constexpr int kLeastPictures = 320;
  const int bar = treeScans_->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  const int table = treeScans_->header()->length() + bar + 2 * treeScans_->frameWidth();
  const int pictures = std::max(kLeastPictures, parts_->width() - table);
  parts_->setSizes({parts_->width() - pictures, pictures});
}

void ChooseScansWindow::ShowForeign(const std::vector<ForeignFile>& foreign) {
  foreign_ = foreign;
  cmdForeign_->setVisible(!foreign.empty());
  cmdForeign_->setText(foreign.size() == 1 ? tr("1 file is no scan")
                                           : tr("%1 files are no scans").arg(foreign.size()));
  cmdForeign_->setToolTip(tr("Which, and why"));
}

void ChooseScansWindow::TellForeign() {
  constexpr std::size_t kMost = 20;
  QStringList lines;
  for (const ForeignFile& file : foreign_) {
    if (lines.size() == kMost) {
      lines << tr("and %1 more").arg(foreign_.size() - kMost);
      break;
    }
    lines << QString::fromStdString(file.reason);
  }
  session_.Ask.ShowMessage(this, tr("These files are no scans"), lines.join('\n'),
                           MessageIcon::kInformation);
}

void ChooseScansWindow::ShowFailure(const QString& reason) {
  scans_.Show({});
  ShowForeign({});
  barScans_->hide();
  lblScanState_->setText(reason);
}

void ChooseScansWindow::ShowState() {
  const std::size_t checked = scans_.Checked().size();
  std::size_t count = 0;
  for (const ScanSeries& series : scans_.Series()) count += series.scans.size();
  lblScanState_->setText(count == 0 ? tr("There are no scans in this folder.")
                                    : tr("%1 scans in %2 groups, %3 checked")
                                          .arg(count)
                                          .arg(scans_.Series().size())
                                          .arg(checked));
  cmdLastOfEach_->setEnabled(count > 0);
  cmdCheckNone_->setEnabled(checked > 0);
  cmdLoadChecked_->setEnabled(checked > 0);
  ShowSettings();
}

void ChooseScansWindow::ShowSettings() {
  lblLoadAs_->setText(tr("Loads as %1.").arg(source_.SettingsText()));
  showTimer_->start(0);  // the channels in the picture
  const FileKind kind = source_.Settings().kind;
  const std::vector<const ListedScan*> checked = scans_.Checked();
  const auto others = std::count_if(checked.begin(), checked.end(), [kind](const ListedScan* scan) {
    return scan->facts.kind != kind;
  });
  const QString warning = others == 0 ? QString()
                                      : tr("%1 of the checked files have the extension of another "
                                           "file type.")
                                            .arg(others);
  lblKindWarning_->setText(warning);
  lblKindWarning_->setToolTip(warning);
  QPalette ink = palette();
  ink.setColor(QPalette::WindowText, WarningInk(ink));
  lblKindWarning_->setPalette(ink);
}

QModelIndex ChooseScansWindow::Current() const {
  return rows_.mapToSource(treeScans_->currentIndex());
}

// A series shows its last scan.
void ChooseScansWindow::ShowCurrent() {
  if (!isVisible()) return;
  const QModelIndex current = rows_.mapToSource(treeScans_->currentIndex());
  const ScanSeries* series = scans_.SeriesAt(current);
  pictures_->Show(series, scans_.ScanAt(current), source_.Settings());
  cmdMatchGroup_->setEnabled(series != nullptr && series->scans.size() > 1);
}

// Series alone are expanded: a view that remembers every scan takes a minute to sort 10,000.
void ChooseScansWindow::ShowAllRows() {
  for (int row = 0; row < rows_.rowCount(); ++row) {
    treeScans_->setExpanded(rows_.index(row, 0), true);
    treeScans_->setFirstColumnSpanned(row, {}, true);
  }
}

void ChooseScansWindow::Filter() {
  rows_.SetWords(txtScanFilter_->text());
  ShowAllRows();
}

void ChooseScansWindow::ChangeFolder() {
  const QString chosen =
      session_.Ask.ChooseFolder(this, tr("Select A Directory"), ToQString(session_.CurrentFolder));
  if (!chosen.isEmpty()) source_.GoToFolder(chosen);
}

void ChooseScansWindow::LoadChecked() {
  std::vector<std::filesystem::path> paths;
  for (const ListedScan* scan : scans_.Checked()) paths.push_back(scan->facts.path);
  if (!paths.empty() && source_.LoadScans(paths)) CloseChild(*this);
}

void ChooseScansWindow::MatchSeries() {
  const ScanSeries* series = scans_.SeriesAt(Current());
  if (series == nullptr) return;
  std::vector<std::filesystem::path> paths;
  for (const ListedScan& scan : series->scans) paths.push_back(scan.facts.path);
  emit MatchRequested(paths);
}

// Space is that of the row, whatever its current column.
bool ChooseScansWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == treeScans_ && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space && Current().isValid()) {
    scans_.Toggle(Current());
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

// F5 is that of another window otherwise.
bool ChooseScansWindow::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_F5) {
    event->accept();
    return true;
  }
  return QWidget::event(event);
}

// What table and filter line leave.
void ChooseScansWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F5) {
    Refresh();
  } else if (IsEnter(event->key()) && qobject_cast<QAbstractButton*>(focusWidget()) == nullptr) {
    LoadChecked();
  } else if (event->key() == Qt::Key_Escape) {
    CloseChild(*this);
  } else {
    QWidget::keyPressEvent(event);
  }
}

void ChooseScansWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  lister_.Stop();
  if (arranged_) SaveArrangement();
}

// As it was left, as far as there is room.
void ChooseScansWindow::Arrange() {
  arranged_ = true;
  treeScans_->header()->restoreState(QByteArray::fromBase64(
      QByteArray::fromStdString(LoadArrangement(session_.Settings, kColumnsKey))));
  auto* child = qobject_cast<QMdiSubWindow*>(parentWidget());
  if (child == nullptr) return;
  const QStringList sides =
      QString::fromStdString(LoadArrangement(session_.Settings, kSizeKey)).split(' ');
  QSize size = child->sizeHint();
  if (sides.size() == 2) size = QSize(sides[0].toInt(), sides[1].toInt());
  const QSize room = child->mdiArea()->viewport()->size();
  child->resize(size.expandedTo(child->minimumSizeHint()).boundedTo(room));
  child->move((room.width() - child->width()) / 2, 0);
}

// What cannot be kept is no loss that needs a word.
void ChooseScansWindow::SaveArrangement() const {
  QuietHost quiet;
  const auto* child = qobject_cast<const QMdiSubWindow*>(parentWidget());
  if (child != nullptr && !child->isMaximized() && !child->isMinimized()) {
    const QString size = QStringLiteral("%1 %2").arg(child->width()).arg(child->height());
    quorvane::SaveArrangement(kSizeKey, size.toStdString(), session_.Settings, quiet);
  }
  quorvane::SaveArrangement(kColumnsKey, treeScans_->header()->saveState().toBase64().toStdString(),
                            session_.Settings, quiet);
}

}  // namespace quorvane
