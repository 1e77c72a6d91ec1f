#include "windows/data/import_window.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "scan/import_names.h"
#include "windows/controls/busy_pointer.h"
#include "windows/controls/control_names.h"
#include "windows/controls/push_button.h"
#include "windows/data/import_choices.h"
#include "windows/data/import_preview.h"
#include "windows/session/save_folder.h"

namespace quorvane {

namespace {

constexpr std::size_t kMostBytes = std::size_t{32} << 20U;  // of a text
constexpr std::size_t kMostTexts = 200;

enum FileColumn { kSource, kTarget, kState };

}  // namespace

ImportWindow::ImportWindow(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), timer_(new QTimer(this)) {
  timer_->setSingleShot(true);
  timer_->setInterval(120);
  BuildWidgets();
  ConnectSignals();
  Understand();
}

void ImportWindow::BuildWidgets() {
  setObjectName("frmImport");
  setWindowTitle(tr("Import Text"));
  choices_ = new ImportChoicesPane;
  preview_ = new ImportPreview;
  auto* left = new QVBoxLayout;
  left->addWidget(BuildFiles(), 1);
  left->addWidget(choices_);
  auto* body = new QHBoxLayout;
  body->addLayout(left);
  body->addWidget(preview_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addLayout(body, 1);
  layout->addLayout(BuildFoot());
}

QWidget* ImportWindow::BuildFiles() {
  auto* group = Named(new QGroupBox(tr("Texts")), "fraImportFiles");
  gridFiles_ = Named(new QTableWidget, "gridImportFiles");
  gridFiles_->setAccessibleName(tr("Texts to import"));
  gridFiles_->setColumnCount(3);
  gridFiles_->setHorizontalHeaderLabels({tr("Text"), tr("Scan file"), tr("State")});
  gridFiles_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  gridFiles_->horizontalHeader()->setSectionResizeMode(kSource, QHeaderView::ResizeToContents);
  gridFiles_->horizontalHeader()->setSectionResizeMode(kTarget, QHeaderView::ResizeToContents);
  gridFiles_->horizontalHeader()->setMaximumSectionSize(fontMetrics().averageCharWidth() * 22);
  gridFiles_->horizontalHeader()->setHighlightSections(false);
  gridFiles_->verticalHeader()->hide();
  gridFiles_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  gridFiles_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  gridFiles_->setSelectionBehavior(QAbstractItemView::SelectRows);
  gridFiles_->setTabKeyNavigation(false);
  gridFiles_->setMinimumWidth(fontMetrics().averageCharWidth() * 44);
  gridFiles_->setMinimumHeight(fontMetrics().height() * 5);
  cmdAdd_ = MakeButton("cmdImportAdd", tr("&Add..."), tr("Add texts to the list"));
  cmdRemove_ =
      MakeButton("cmdImportRemove", tr("&Remove"), tr("Take the selected texts off the list"));
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdAdd_);
  buttons->addWidget(cmdRemove_);
  buttons->addStretch();
  auto* layout = new QVBoxLayout(group);
  layout->addWidget(gridFiles_, 1);
  layout->addLayout(buttons);
  return group;
}

QLayout* ImportWindow::BuildFoot() {
  cmdFolder_ =
      MakeButton("cmdImportFolder", tr("&Folder..."), tr("Where the scan files are written"));
  lblFolder_ = Named(new QLabel, "lblImportFolder");
  lblFolder_->setTextFormat(Qt::PlainText);
  lblFolder_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  cmdImport_ =
      MakeButton("cmdImport", tr("&Import"), tr("Write a scan file of each text that is ready"));
  cmdImportLoad_ =
      MakeButton("cmdImportLoad", tr("Import and &Load"),
                 tr("Write the scan files and load them with the channels of the page"));
  auto* foot = new QHBoxLayout;
  foot->addWidget(cmdFolder_);
  foot->addWidget(lblFolder_, 1);
  foot->addWidget(cmdImport_);
  foot->addWidget(cmdImportLoad_);
  return foot;
}

void ImportWindow::ConnectSignals() {
  connect(cmdAdd_, &QPushButton::clicked, this, &ImportWindow::AddTexts);
  connect(cmdRemove_, &QPushButton::clicked, this, &ImportWindow::RemoveTexts);
  connect(cmdFolder_, &QPushButton::clicked, this, &ImportWindow::ChooseFolder);
  connect(cmdImport_, &QPushButton::clicked, this, [this] { Import(false); });
  connect(cmdImportLoad_, &QPushButton::clicked, this, [this] { Import(true); });
  connect(gridFiles_, &QTableWidget::currentCellChanged, this, &ImportWindow::ShowText);
  connect(choices_, &ImportChoicesPane::Changed, timer_, qOverload<>(&QTimer::start));
  connect(timer_, &QTimer::timeout, this, &ImportWindow::Understand);
}

void ImportWindow::Begin() {
  if (texts_.empty()) AddTexts();
}

void ImportWindow::AddTexts() {
  const QStringList chosen = session_.Ask.OpenFiles(
      this, {tr("Import Text"),
             ToQString(session_.CurrentFolder),
             tr("Texts (*.csv *.tsv *.txt *.asc *.prn *.dat)") + ";;" + tr("All files (*)"),
             {}});
  if (!chosen.isEmpty()) Take(chosen);
}

void ImportWindow::Take(const QStringList& paths) {
  if (texts_.size() + static_cast<std::size_t>(paths.size()) > kMostTexts) {
    session_.Ask.ShowMessage(this, tr("Import Text"),
                             tr("At most %1 texts can be imported together.").arg(kMostTexts),
                             MessageIcon::kExclamation);
    return;
  }
  const BusyPointer busy;
  for (const QString& path : paths) {
    Text text{ToPath(path), {}, {}, {}};
    try {
      text.bytes = ReadWholeFile(text.source, kMostBytes);
    } catch (const FileFault& fault) {
      text.fault = QString::fromUtf8(fault.what());
    }
    texts_.push_back(std::move(text));
  }
  if (folder_.empty()) {
    folder_ = ToPath(SaveFolder(ToQString(texts_.front().source.parent_path())));
  }
  Understand();
  if (gridFiles_->currentRow() < 0) gridFiles_->setCurrentCell(0, kSource);
}

void ImportWindow::RemoveTexts() {
  std::vector<Text> kept;
  for (int row = 0; row < gridFiles_->rowCount(); ++row) {
    if (gridFiles_->item(row, kSource)->isSelected()) continue;
    kept.push_back(std::move(texts_[static_cast<std::size_t>(row)]));
  }
  texts_ = std::move(kept);
  Understand();
}

void ImportWindow::ChooseFolder() {
  const QString chosen =
      session_.Ask.ChooseFolder(this, tr("Folder of the scan files"), ToQString(folder_));
  if (chosen.isEmpty()) return;
  folder_ = ToPath(chosen);
  Understand();
}

// All texts with the present choices, and the names that they get.
void ImportWindow::Understand() {
  timer_->stop();
  const ImportChoices choices = choices_->Choices();
  std::vector<NamedText> named;
  for (Text& text : texts_) {
    if (text.fault.isEmpty()) {
      text.import = UnderstandText(text.bytes, choices, text.source, text.source.filename());
    }
    text.written.clear();
    named.push_back({text.source, text.import.header});
  }
  const std::vector<std::filesystem::path> names = ScanNamesFor(named, folder_);
  for (std::size_t k = 0; k < texts_.size(); ++k) texts_[k].name = names[k];
  ShowFiles();
  ShowText();
}

QString ImportWindow::StateOf(const Text& text) const {
  if (!text.written.isEmpty()) return text.written;
  if (!text.fault.isEmpty()) return text.fault;
  QString fault = choices_->Fault();
  if (!fault.isEmpty()) return fault;
  if (text.import.state != ImportState::kReady) return QString::fromStdString(text.import.fault);
  QString rows = tr("%1 rows").arg(text.import.rows.size());
  if (text.import.unreadable.empty()) return rows;
  return tr("%1, %2 cannot be read").arg(rows).arg(text.import.unreadable.size());
}

void ImportWindow::ShowFiles() {
  const QSignalBlocker quiet(gridFiles_);
  const int current = gridFiles_->currentRow();
  gridFiles_->setRowCount(static_cast<int>(texts_.size()));
  bool ready = false;
  for (std::size_t k = 0; k < texts_.size(); ++k) {
    const Text& text = texts_[k];
    const bool makes = text.fault.isEmpty() && text.import.state == ImportState::kReady;
    ready = ready || makes;
    const QString cells[] = {ToQString(text.source.filename()), makes ? ToQString(text.name) : "",
                             StateOf(text)};
    int column = 0;
    for (const QString& cell : cells) {
      auto* item = new QTableWidgetItem(cell);
      item->setToolTip(column == kSource ? ToQString(text.source) : cell);
      gridFiles_->setItem(static_cast<int>(k), column++, item);
    }
  }
  if (!texts_.empty()) {
    gridFiles_->setCurrentCell(std::clamp(current, 0, static_cast<int>(texts_.size()) - 1),
                               kSource);
  }
  lblFolder_->setText(folder_.empty() ? "" : tr("Scan files go to %1").arg(ToQString(folder_)));
  lblFolder_->setToolTip(ToQString(folder_));
  const bool may = ready && choices_->Fault().isEmpty();
  cmdImport_->setEnabled(may);
  cmdImportLoad_->setEnabled(may);
  cmdRemove_->setEnabled(!texts_.empty());
}

const ImportWindow::Text* ImportWindow::Current() const {
  const int row = gridFiles_->currentRow();
  const bool some = row >= 0 && static_cast<std::size_t>(row) < texts_.size();
  return some ? &texts_[static_cast<std::size_t>(row)] : nullptr;
}

void ImportWindow::ShowText() {
  const Text* text = Current();
  if (text == nullptr) {
    preview_->Clear();
    return;
  }
  choices_->ShowFound(text->import);
  QString fault = text->fault.isEmpty() ? choices_->Fault() : text->fault;
  if (fault.isEmpty()) fault = QString::fromStdString(text->import.fault);
  preview_->Show(text->bytes, text->import, fault);
}

bool ImportWindow::MayReplace(const std::vector<Text*>& ready) {
  QStringList standing;
  for (const Text* text : ready) {
    std::error_code error;
    if (std::filesystem::exists(folder_ / text->name, error)) standing << ToQString(text->name);
  }
  if (standing.isEmpty()) return true;
  constexpr int kNamed = 10;
  const QString names =
      QStringList(standing.mid(0, kNamed)).join(", ") + (standing.size() > kNamed ? ", ..." : "");
  return session_.Ask.AskYesNo(
      this, tr("Import Text"),
      tr("These files already exist in %1: %2.  Overwrite?").arg(ToQString(folder_), names));
}

// Each file whole or not at all; one that cannot be written does not keep the others back.
void ImportWindow::Import(bool load) {
  if (session_.Calculating || !session_.CommitPending()) return;
  Understand();  // a choice may have been made a moment ago
  std::vector<Text*> ready;
  for (Text& text : texts_) {
    if (text.fault.isEmpty() && text.import.state == ImportState::kReady) ready.push_back(&text);
  }
  if (ready.empty() || !choices_->Fault().isEmpty() || !MayReplace(ready)) return;
  QStringList written;
  {
    const BusyPointer busy;
    for (Text* text : ready) {
      try {
        WriteWholeFile(folder_ / text->name, ScanFileOf(text->import));
        written << ToQString(folder_ / text->name);
        text->written = tr("written");
      } catch (const FileFault& fault) {
        text->written = QString::fromUtf8(fault.what());
      }
    }
  }
  ShowFiles();
  session_.Remark(tr("%1 of %2 texts were written as scan files to %3.")
                      .arg(written.size())
                      .arg(texts_.size())
                      .arg(ToQString(folder_)));
  if (!written.isEmpty()) emit Imported(written, load);
}

}  // namespace quorvane
