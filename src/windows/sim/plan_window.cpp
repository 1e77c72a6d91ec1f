#include "windows/sim/plan_window.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "base/files.h"
#include "base/quiet_host.h"
#include "core/settings/settings.h"
#include "job/plan_file.h"
#include "job/toml_reader.h"
#include "plot/chart_widget.h"
#include "sim/plan_chart.h"
#include "sim/plan_series.h"
#include "windows/controls/child_window.h"
#include "windows/controls/control_names.h"
#include "windows/controls/page_scroll.h"
#include "windows/controls/push_button.h"
#include "windows/controls/result_grid.h"
#include "windows/session/save_folder.h"
#include "windows/session/session.h"
#include "windows/sim/plan_entries.h"
#include "windows/sim/plan_tables.h"
#include "windows/sim/series_window.h"

namespace quorvane {

namespace {

constexpr const char* kPlanKey = "Plan";
constexpr char kLineEnd = ';';  // of a plan kept on one line; no plan holds one

// What the window begins with: the example of the guide.
constexpr std::string_view kFirstPlan =
    "model = \"Monomer-Nmer\";speeds = [14000, 20000, 26000];loads = [2e-6, 5e-6, 1.5e-5];"
    "ext_coeff = 40000.0;noise = 0.004;most_signal = 1.5;centerpiece = \"6 channels\";"
    "[parameters];MW = { value = 8100.0 };N1 = { value = 2.0, fit = false };"
    "LnK1 = { value = 11.5 };";

// With its head, so that no row has to be scrolled to.
int HeightOfRows(const QTableWidget& grid, int rows) {
  return grid.horizontalHeader()->sizeHint().height() +
         rows * grid.verticalHeader()->defaultSectionSize() + 2 * grid.frameWidth();
}

std::string OnOneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', kLineEnd);
  return text;
}

// The plan kept on one line; nothing if it is damaged.
std::optional<ExperimentPlan> KeptPlan(std::string line) {
  std::replace(line.begin(), line.end(), kLineEnd, '\n');
  try {
    return ParsePlan(line, "plan");
  } catch (const JobFault&) {
    return std::nullopt;
  }
}

}  // namespace

PlanWindow::PlanWindow(Session& session, Host& host, QWidget* parent)
    : QWidget(parent), session_(session), host_(host), worker_(new PlanWorker(this)) {
  BuildWidgets();
  ConnectSignals();
}

void PlanWindow::BuildWidgets() {
  setObjectName("frmPlan");
  setWindowTitle(tr("Plan Experiment"));
  auto* parts = new QSplitter(Qt::Horizontal);
  parts->setChildrenCollapsible(false);
  parts->addWidget(BuildSide());
  parts->addWidget(BuildResults());
  parts->setStretchFactor(0, 0);
  parts->setStretchFactor(1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(parts);
}

QWidget* PlanWindow::BuildSide() {
  entries_ = new PlanEntries;
  auto* scroll = new PageScroll(entries_);
  cmdOpen_ = MakeButton("cmdPlanOpen", tr("Op&en..."), tr("Reads a plan from a file"));
  cmdSave_ = MakeButton("cmdPlanSave", tr("Sa&ve..."),
                        tr("Writes the plan as a file, for quorvane-cli plan too"));
  cmdSeries_ = MakeButton("cmdPlanSeries", tr("Ma&ke Series..."),
                          tr("Hands the plan to the simulator, which makes its scans"));
  mnuSeries_ = Named(new QMenu(this), "mnuPlanSeries");
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {cmdOpen_, cmdSave_, cmdSeries_}) buttons->addWidget(button);
  auto* side = new QWidget;
  side->setMinimumWidth(fontMetrics().averageCharWidth() * 56);
  auto* layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(scroll, 1);
  layout->addLayout(buttons);
  return side;
}

QWidget* PlanWindow::BuildResults() {
  constexpr int kRemarkLines = 5;
  constexpr int kErrorRows = 4;  // few models have more parameters to be fitted
  gridErrors_ = ResultGrid("gridPlanErrors", tr("Expected standard errors and correlations"));
  gridSpeeds_ = ResultGrid("gridPlanSpeeds", tr("The best choices of speeds"));
  gridSpeeds_->setToolTip(tr("A double click plans these speeds"));
  gridScans_ = ResultGrid("gridPlanScans", tr("Planned scans"));
  gridErrors_->setMinimumHeight(HeightOfRows(*gridErrors_, kErrorRows));
  tabPlan_ = Named(new QTabWidget, "tabPlan");
  tabPlan_->addTab(gridErrors_, tr("Errors"));
  tabPlan_->addTab(gridSpeeds_, tr("Best Speeds"));
  tabPlan_->addTab(gridScans_, tr("Scans"));
  txtRemarks_ = Named(new QTextEdit, "txtPlanRemarks");
  txtRemarks_->setReadOnly(true);
  txtRemarks_->setTabChangesFocus(true);
  txtRemarks_->setAccessibleName(tr("What stands in the way"));
  txtRemarks_->setFixedHeight(fontMetrics().lineSpacing() * kRemarkLines);
  auto* top = new QWidget;
  auto* above = new QVBoxLayout(top);
  above->setContentsMargins(0, 0, 0, 0);
  above->addWidget(tabPlan_, 1);
  above->addWidget(txtRemarks_);
  above->addWidget(BuildCheck());
  auto* parts = new QSplitter(Qt::Vertical);
  parts->setChildrenCollapsible(false);
  parts->addWidget(top);
  parts->addWidget(BuildPicture());
  parts->setStretchFactor(0, 5);
  parts->setStretchFactor(1, 6);
  return parts;
}

QWidget* PlanWindow::BuildCheck() {
  constexpr int kUsual = 200;
  cmdCheck_ =
      MakeButton("cmdPlanCheck", tr("&Check"),
                 tr("Simulates and fits so many experiments, and compares their scatter with "
                    "the errors"));
  spnCheck_ = Named(new QSpinBox, "spnPlanCheck");
  spnCheck_->setRange(2, kMostChecks);
  spnCheck_->setValue(kUsual);
  spnCheck_->setAccessibleName(tr("Experiments"));
  cmdStop_ = MakeButton("cmdPlanStop", tr("S&top"), tr("Ends the check with what is done"));
  prgCheck_ = Named(new QProgressBar, "prgPlanCheck");
  prgCheck_->setValue(0);
  prgCheck_->setFormat(QString());
  auto* box = new QWidget;
  auto* row = new QHBoxLayout(box);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(cmdCheck_);
  row->addWidget(spnCheck_);
  row->addWidget(new QLabel(tr("experiments")));
  row->addWidget(cmdStop_);
  row->addWidget(prgCheck_, 1);
  return box;
}

QWidget* PlanWindow::BuildPicture() {
  cmbPicture_ = Named(new QComboBox, "cmbPlanPicture");
  cmbPicture_->setAccessibleName(tr("Picture"));
  teePlan_ = Named(new ChartWidget, "teePlan");
  auto* box = new QWidget;
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(cmbPicture_);
  layout->addWidget(teePlan_, 1);
  return box;
}

void PlanWindow::ConnectSignals() {
  connect(entries_, &PlanEntries::Changed, this, &PlanWindow::Follow);
  connect(worker_, &PlanWorker::Answered, this, &PlanWindow::TakeAnswer);
  connect(worker_, &PlanWorker::Progressed, this, [this](int done, int all) {
    prgCheck_->setRange(0, all);
    prgCheck_->setValue(done);
    prgCheck_->setFormat(tr("%1 of %2").arg(done).arg(all));
  });
  connect(cmbPicture_, &QComboBox::currentIndexChanged, this, &PlanWindow::Ask);
  connect(cmdCheck_, &QPushButton::clicked, this, &PlanWindow::BeginCheck);
  connect(cmdStop_, &QPushButton::clicked, worker_, &PlanWorker::StopCheck);
  connect(cmdOpen_, &QPushButton::clicked, this, &PlanWindow::Open);
  connect(cmdSave_, &QPushButton::clicked, this, &PlanWindow::Save);
  connect(cmdSeries_, &QPushButton::clicked, this, [this] { MakeSeries(0); });
  connect(gridSpeeds_, &QTableWidget::cellDoubleClicked, this, &PlanWindow::TakeChosenSpeeds);
}

QSize PlanWindow::sizeHint() const {
  return FromTwips(*this, {16400, 10500});
}

void PlanWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (choicesTaken_) return;
  choicesTaken_ = true;
  std::optional<ExperimentPlan> kept = KeptPlan(LoadArrangement(session_.Settings, kPlanKey));
  if (!kept) kept = KeptPlan(std::string(kFirstPlan));
  if (kept->check > 0) spnCheck_->setValue(kept->check);
  entries_->ShowPlan(*kept);
  Follow();
}

// What cannot be kept is no loss that needs a word.
void PlanWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  QuietHost quiet;
  if (!choicesTaken_ || !plan_) return;
  SaveArrangement(kPlanKey, OnOneLine(PlanText(*plan_)), session_.Settings, quiet);
}

// The entries are others: what was found of the plan before is of no use.
void PlanWindow::Follow() {
  check_.reset();
  checking_ = current_ = false;
  prgCheck_->reset();
  prgCheck_->setFormat(QString());
  plan_ = entries_->Plan();
  if (!plan_) {
    worker_->GiveUp();
    ShowFault(entries_->Refusal());
    return;
  }
  OfferWavelengths();
  UpdateButtons();
  Ask();
}

// The plan whose speeds are known: of candidates the best choice.
ExperimentPlan PlanWindow::ShownPlan() const {
  ExperimentPlan plan = *shown_;
  plan.speeds = answer_.result.speeds;
  plan.candidates.clear();
  plan.choose = 0;
  return plan;
}

std::optional<PlanAxis> PlanWindow::ChosenAxis() const {
  if (!plan_ || cmbPicture_->currentIndex() < 1) return std::nullopt;
  const std::vector<PlanAxis> axes = AxesOf(*plan_);
  const auto place = static_cast<std::size_t>(cmbPicture_->currentIndex() - 1);
  if (place >= axes.size()) return std::nullopt;
  return axes[place];
}

void PlanWindow::Ask() {
  if (!plan_ || checking_) return;
  worker_->Begin({.plan = *plan_, .axis = ChosenAxis()});
}

void PlanWindow::TakeAnswer(const PlanTask& task, const PlanAnswer& answer) {
  if (answer.check) {
    TakeCheck(*answer.check);
    return;
  }
  if (!answer.fault.empty()) {
    checking_ = false;
    ShowFault(
        tr("This plan leads beyond all numbers: %1.").arg(QString::fromStdString(answer.fault)));
    return;
  }
  shown_ = task.plan;
  answer_ = answer;
  current_ = true;
  FillErrors();
  ShowScans(*gridScans_, *shown_, answer_.result);
  FillRanking();
  ListPictures();
  ShowPicture();
  ShowRemarks();
  UpdateButtons();
}

void PlanWindow::TakeCheck(const PlanCheck& check) {
  checking_ = false;
  check_ = check;
  prgCheck_->setFormat(check.stopped ? tr("stopped after %1").arg(check.experiments)
                                     : tr("%1 fitted").arg(check.experiments));
  if (!check.stopped) prgCheck_->setValue(prgCheck_->maximum());
  FillErrors();
  ShowRemarks();
  tabPlan_->setCurrentWidget(gridErrors_);
  UpdateButtons();
}

void PlanWindow::ShowFault(const QString& text) {
  shown_.reset();
  answer_ = {};
  for (QTableWidget* grid : {gridErrors_, gridSpeeds_, gridScans_}) grid->setRowCount(0);
  teePlan_->SetChart({});
  txtRemarks_->setPlainText(text);
  UpdateButtons();
}

void PlanWindow::ShowRemarks() {
  QStringList lines;
  if (check_ && check_->experiments == 0 && !check_->stopped) {
    lines << tr("Not checked: no scan has points for a fit.");
  } else if (check_) {
    lines << tr("%1 simulated experiments were fitted; %2 came to no rest or did not determine "
                "every parameter.")
                 .arg(check_->experiments)
                 .arg(check_->failed);
  }
  for (const std::string& remark : answer_.result.remarks) {
    lines << QString::fromStdString(remark);
  }
  if (lines.isEmpty()) lines << tr("Nothing stands in the way of this plan.");
  txtRemarks_->setPlainText(lines.join('\n'));
}

void PlanWindow::FillErrors() {
  ShowErrors(*gridErrors_, answer_.result, check_);
}

void PlanWindow::FillRanking() {
  ShowRanking(*gridSpeeds_, answer_.result);
  const bool ranked = !answer_.result.ranking.empty();
  const int tab = tabPlan_->indexOf(gridSpeeds_);
  tabPlan_->setTabEnabled(tab, ranked);
  tabPlan_->setTabToolTip(tab, ranked ? tr("The best of %1 choices").arg(answer_.result.choices)
                                      : tr("Check \"Choose the best\" for candidates"));
}

// The choice stays where it was as far as there is still such a picture.
void PlanWindow::ListPictures() {
  const QSignalBlocker quiet(cmbPicture_);
  const int before = cmbPicture_->currentIndex();
  cmbPicture_->clear();
  cmbPicture_->addItem(tr("Planned scans"));
  for (const PlanAxis& axis : AxesOf(*shown_)) {
    cmbPicture_->addItem(tr("Errors along %1").arg(QString::fromStdString(NameOf(*shown_, axis))));
  }
  cmbPicture_->setCurrentIndex(before > 0 && before < cmbPicture_->count() ? before : 0);
}

void PlanWindow::ShowPicture() {
  const std::optional<PlanAxis> axis = ChosenAxis();
  if (axis && !answer_.values.empty()) {
    teePlan_->UpdateChart(ErrorsOfPlan(*shown_, *axis, answer_.values, answer_.along));
  } else {
    teePlan_->UpdateChart(ScansOfPlan(ShownPlan(), answer_.result));
  }
}

void PlanWindow::TakeChosenSpeeds() {
  const auto row = static_cast<std::size_t>(gridSpeeds_->currentRow());
  if (!plan_ || row >= answer_.result.ranking.size()) return;
  entries_->TakeChoice(answer_.result.ranking[row].speeds);
  tabPlan_->setCurrentWidget(gridErrors_);
  Follow();
}

void PlanWindow::BeginCheck() {
  if (!shown_ || !current_ || checking_) return;
  checking_ = true;
  check_.reset();
  prgCheck_->setRange(0, spnCheck_->value());
  prgCheck_->setValue(0);
  worker_->Begin({.plan = *shown_,
                  .check = PlanCheckRequest{.experiments = spnCheck_->value()},
                  .known = answer_.result});
  UpdateButtons();
  cmdStop_->setFocus();
}

void PlanWindow::Open() {
  const QString name = session_.Ask.OpenFile(this, {.title = tr("Open Plan"),
                                                    .folder = ToQString(session_.CurrentFolder),
                                                    .filter = tr("Plans (*.toml);;All files (*)"),
                                                    .defaultName = {}});
  if (name.isEmpty()) return;
  const auto tell = [&](const char* what) {
    session_.Ask.ShowMessage(this, tr("Open Plan"), QString::fromUtf8(what),
                             MessageIcon::kExclamation);
  };
  try {
    const ExperimentPlan plan = ReadPlan(ToPath(name));
    if (plan.check > 0) spnCheck_->setValue(plan.check);
    entries_->ShowPlan(plan);
    Follow();
  } catch (const JobFault& fault) {
    tell(fault.what());
  } catch (const FileFault& fault) {
    tell(fault.what());
  }
}

void PlanWindow::Save() {
  if (!plan_) return;
  const QString name =
      session_.Ask.SaveFile(this, {.title = tr("Save Plan"),
                                   .folder = SaveFolder(ToQString(session_.CurrentFolder)),
                                   .filter = tr("Plans (*.toml);;All files (*)"),
                                   .defaultName = QStringLiteral("plan.toml")});
  if (name.isEmpty()) return;
  try {
    WriteWholeFile(ToPath(name), PlanText(*plan_));
    session_.Remark(tr("The plan was written to %1.").arg(name));
  } catch (const FileFault& fault) {
    session_.Ask.ShowMessage(this, tr("Save Plan"), QString::fromUtf8(fault.what()),
                             MessageIcon::kExclamation);
  }
}

// With several wavelengths the button asks for one: the simulator makes scans of one at a time.
void PlanWindow::OfferWavelengths() {
  const std::size_t count = plan_->extCoeff.size();
  cmdSeries_->setMenu(count > 1 ? mnuSeries_ : nullptr);
  mnuSeries_->clear();
  for (std::size_t k = 0; k < count; ++k) {
    QAction* action = mnuSeries_->addAction(tr("Wavelength &%1").arg(k + 1));
    action->setObjectName(ElementName("mnuPlanSeries", static_cast<int>(k)));
    connect(action, &QAction::triggered, this, [this, k] { MakeSeries(k); });
  }
}

void PlanWindow::MakeSeries(std::size_t wavelength) {
  if (!shown_ || !current_ || session_.Calculating || !session_.CommitPending()) return;
  const PlannedSeries planned = SeriesOf(*shown_, answer_.result.speeds, wavelength);
  if (!planned.refusal.empty()) {
    session_.Ask.ShowMessage(this, tr("Make Series"), QString::fromStdString(planned.refusal),
                             MessageIcon::kExclamation);
    return;
  }
  auto* series = new SeriesWindow(session_, host_, planned.inputs, this);
  series->setAttribute(Qt::WA_DeleteOnClose);
  series->ShowLists(planned.lists);
  connect(series, &SeriesWindow::Written, this, &PlanWindow::SeriesWritten);
  series->open();
  if (!planned.remark.empty()) session_.Remark(QString::fromStdString(planned.remark));
}

void PlanWindow::UpdateButtons() {
  const bool ready = shown_.has_value() && current_ && !checking_;
  cmdCheck_->setEnabled(ready);
  spnCheck_->setEnabled(ready);
  cmdStop_->setEnabled(checking_);
  cmdSave_->setEnabled(plan_.has_value());
  cmdSeries_->setEnabled(ready);
  cmbPicture_->setEnabled(ready);
}

PrintContent PlanWindow::Printed() const {
  if (!shown_) return {};
  return teePlan_;
}

}  // namespace quorvane
