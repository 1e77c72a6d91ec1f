#include "windows/sim/series_window.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>
#include <limits>

#include "windows/controls/busy_pointer.h"
#include "windows/controls/control_names.h"
#include "windows/controls/push_button.h"
#include "windows/session/save_folder.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

struct ListBox {
  SimBox box;
  const char* name;
  const char* label;
};

constexpr std::array<ListBox, 3> kLists = {
    {{SimBox::kSpeed, "txtSeriesSpeeds", QT_TRANSLATE_NOOP("QObject", "Speeds, rpm")},
     {SimBox::kLoadC, "txtSeriesLoads", QT_TRANSLATE_NOOP("QObject", "Loads, molar")},
     {SimBox::kLoadCB, "txtSeriesLoadsB", QT_TRANSLATE_NOOP("QObject", "Loads of B, molar")}}};

}  // namespace

SeriesWindow::SeriesWindow(Session& session, Host& host, SimInputs inputs, QWidget* parent)
    : QDialog(parent),
      session_(session),
      host_(host),
      inputs_(std::move(inputs)),
      // Apart from the scans of an instrument, which have the same names.
      folder_(ToPath(SaveFolder(ToQString(session.CurrentFolder))) / "series") {
  BuildWidgets();
  ConnectSignals();
  ShowPlan();
}

void SeriesWindow::BuildWidgets() {
  setObjectName("frmSimSeries");
  setWindowTitle(tr("Series of Scans"));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  auto* intro = Named(new QLabel(tr("A scan for each speed and load, all else as entered. Each "
                                    "load has a cell of its own; the files of a speed have one "
                                    "number.")),
                      "lblSeriesIntro");
  intro->setWordWrap(true);
  layout->addWidget(intro);
  auto* grid = new QGridLayout;
  layout->addLayout(grid);
  for (std::size_t k = 0; k < kLists.size(); ++k) {
    lists_[k] =
        Named(new QLineEdit(QString::fromStdString(inputs_.Text(kLists[k].box))), kLists[k].name);
    lists_[k]->setToolTip(tr("Numbers between commas or blanks, such as 10000, 14000, 20000"));
    auto* label = new QLabel(QObject::tr(kLists[k].label));
    label->setBuddy(lists_[k]);
    const bool used = UsesBox(inputs_.model, kLists[k].box);
    label->setVisible(used);
    lists_[k]->setVisible(used);
    grid->addWidget(label, static_cast<int>(k), 0);
    grid->addWidget(lists_[k], static_cast<int>(k), 1);
  }
  if (UsesBox(inputs_.model, SimBox::kLoadCB)) {
    lists_[2]->setToolTip(tr("As many as of A, or one for all cells"));
  }
  spnSeed_ = Named(new QSpinBox, "spnSeriesSeed");
  spnSeed_->setRange(0, std::numeric_limits<int>::max());
  spnSeed_->setValue(1);
  spnSeed_->setToolTip(tr("The same seed gives the same noise"));
  auto* seedLabel = new QLabel(tr("Seed of the noise"));
  seedLabel->setBuddy(spnSeed_);
  grid->addWidget(seedLabel, 3, 0);
  grid->addWidget(spnSeed_, 3, 1, Qt::AlignLeft);
  gridSeries_ = Named(new QTableWidget, "gridSeries");
  gridSeries_->setAccessibleName(tr("Scans of the series"));
  gridSeries_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  gridSeries_->setSelectionMode(QAbstractItemView::NoSelection);
  gridSeries_->setTabKeyNavigation(false);
  gridSeries_->verticalHeader()->hide();
  gridSeries_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  layout->addWidget(gridSeries_, 1);
  BuildFoot(*layout);
  resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 26);
}

void SeriesWindow::BuildFoot(QLayout& layout) {
  lblSeries_ = Named(new QLabel, "lblSeries");
  lblSeries_->setWordWrap(true);
  cmdFolder_ = MakeButton("cmdSeriesFolder", tr("&Folder..."), tr("Where the scans are written"));
  lblFolder_ = Named(new QLabel, "lblSeriesFolder");
  lblFolder_->setTextFormat(Qt::PlainText);
  lblFolder_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* folder = new QWidget;
  auto* folderRow = new QHBoxLayout(folder);
  folderRow->setContentsMargins(0, 0, 0, 0);
  folderRow->addWidget(cmdFolder_);
  folderRow->addWidget(lblFolder_, 1);
  cmdMake_ =
      MakeButton("cmdMakeSeries", tr("&Simulate"), tr("Simulate and write all scans, or none"));
  cmdMakeLoad_ = MakeButton("cmdMakeLoadSeries", tr("Simulate and &Load"),
                            tr("Write the scans and load each as one dataset"));
  cmdMakeLoad_->setDefault(true);
  auto* cmdClose = MakeButton("cmdCloseSeries", tr("Close"), {});
  connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch();
  for (QPushButton* button : {cmdMake_, cmdMakeLoad_, cmdClose}) row->addWidget(button);
  layout.addWidget(lblSeries_);
  layout.addWidget(folder);
  layout.addWidget(buttons);
}

void SeriesWindow::ConnectSignals() {
  for (QLineEdit* list : lists_)
    connect(list, &QLineEdit::textChanged, this, &SeriesWindow::ShowPlan);
  connect(cmdFolder_, &QPushButton::clicked, this, &SeriesWindow::ChooseFolder);
  connect(cmdMake_, &QPushButton::clicked, this, [this] { Run(false); });
  connect(cmdMakeLoad_, &QPushButton::clicked, this, [this] { Run(true); });
}

void SeriesWindow::ShowLists(const SeriesLists& lists) {
  const std::array<const std::vector<std::string>*, 3> entries = {&lists.speeds, &lists.loads,
                                                                  &lists.loadsB};
  for (std::size_t k = 0; k < lists_.size(); ++k) {
    if (entries[k]->empty()) continue;
    QStringList texts;
    for (const std::string& entry : *entries[k]) texts << QString::fromStdString(entry);
    lists_[k]->setText(texts.join(QStringLiteral(", ")));
  }
}

void SeriesWindow::ShowPlan() {
  const auto entries = [this](std::size_t k) {
    return ListedEntries(lists_[k]->text().toStdString());
  };
  const bool two = UsesBox(inputs_.model, SimBox::kLoadCB);
  plan_ =
      PlanSeries(inputs_, {entries(0), entries(1), two ? entries(2) : std::vector<std::string>()});
  QStringList heads = {tr("File"), tr("Cell"), tr("Speed"), tr("Load")};
  if (two) heads << tr("Load of B");
  gridSeries_->setColumnCount(static_cast<int>(heads.size()));
  gridSeries_->setHorizontalHeaderLabels(heads);
  gridSeries_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  gridSeries_->setRowCount(static_cast<int>(plan_.scans.size()));
  int row = 0;
  for (const SeriesScan& scan : plan_.scans) FillRow(row++, scan);
  lblSeries_->setText(plan_.box ? QString::fromStdString(plan_.refusal)
                                : tr("Scans: %1").arg(plan_.scans.size()));
  cmdMake_->setEnabled(!plan_.scans.empty());
  cmdMakeLoad_->setEnabled(!plan_.scans.empty());
  lblFolder_->setText(ToQString(folder_));
  lblFolder_->setToolTip(ToQString(folder_));
}

void SeriesWindow::FillRow(int row, const SeriesScan& scan) {
  QStringList cells = {QString::fromStdString(scan.file), QString::number(scan.cell)};
  for (const ListBox& list : kLists) cells << QString::fromStdString(scan.inputs.Text(list.box));
  for (int column = 0; column < gridSeries_->columnCount(); ++column) {
    auto* cell = new QTableWidgetItem(cells[column]);
    cell->setTextAlignment((column == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    gridSeries_->setItem(row, column, cell);
  }
}

void SeriesWindow::ChooseFolder() {
  const QString chosen =
      session_.Ask.ChooseFolder(this, tr("Folder of the scans"), ToQString(folder_));
  if (chosen.isEmpty()) return;
  folder_ = ToPath(chosen);
  ShowPlan();
}

bool SeriesWindow::MayReplace() {
  const std::vector<std::string> standing = StandingFiles(plan_, folder_);
  if (standing.empty()) return true;
  constexpr std::size_t kNamed = 10;
  QString names;
  for (std::size_t k = 0; k < std::min(standing.size(), kNamed); ++k) {
    names += (k > 0 ? ", " : "") + QString::fromStdString(standing[k]);
  }
  if (standing.size() > kNamed) names += ", ...";
  return session_.Ask.AskYesNo(
      this, tr("Series of Scans"),
      tr("These files already exist in %1: %2.  Overwrite?").arg(ToQString(folder_), names));
}

QString SeriesWindow::Make() {
  std::vector<SeriesFile> files;
  const std::string fault =
      RunSeries(plan_, static_cast<std::uint64_t>(spnSeed_->value()), host_,
                [&files](const SeriesScan& scan, const Simulator& run, const SimReference&) {
                  files.push_back({scan.file, run.Text});
                });
  if (!fault.empty()) return QString::fromStdString(fault);
  try {
    WriteSeries(folder_, files);
  } catch (const FileFault& writing) {
    return QString::fromUtf8(writing.what());
  }
  return {};
}

void SeriesWindow::Run(bool load) {
  if (session_.Calculating || running_ || plan_.scans.empty() || !MayReplace()) return;
  running_ = session_.Calculating = true;
  setEnabled(false);
  QString fault;
  {
    const BusyPointer busy;
    fault = Make();
  }
  running_ = session_.Calculating = false;
  setEnabled(true);
  if (!fault.isEmpty()) {
    session_.Ask.ShowMessage(this, tr("Series of Scans"), tr("%1. Nothing was written.").arg(fault),
                             MessageIcon::kExclamation);
    return;
  }
  QStringList written;
  for (const SeriesScan& scan : plan_.scans) {
    written << ToQString(folder_ / PathFromText(scan.file));
  }
  session_.Remark(tr("%1 scans were written to %2.").arg(written.size()).arg(ToQString(folder_)));
  accept();
  emit Written(written, load);
}

void SeriesWindow::done(int result) {
  if (!running_) QDialog::done(result);
}

}  // namespace quorvane
