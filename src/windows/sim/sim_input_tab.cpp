#include "windows/sim/sim_input_tab.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <string>

#include "windows/controls/control_names.h"
#include "windows/controls/page_controls.h"
#include "windows/controls/value_box.h"
#include "windows/session/box_entry.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

constexpr int kRowGap = 8;  // pixels

QString ToText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// "lblMW" beside "txtMW".
QString LabelName(SimBox box) {
  return QStringLiteral("lbl") + ToText(InfoOf(box).control.substr(3));
}

// Room for every caption that a label can have: the boxes of all groups stand in line.
int LabelWidth(const QFontMetrics& metrics) {
  int width = 0;
  for (int k = 0; k < kSimBoxes * kSimModels; ++k) {
    const auto box = static_cast<SimBox>(k % kSimBoxes);
    for (const KDisplay display : {KDisplay::kLn, KDisplay::kLog10, KDisplay::kPlain}) {
      const QString caption = QString::fromStdString(LabelOf(box, k / kSimBoxes, display));
      width = std::max(width, metrics.horizontalAdvance(caption));
    }
  }
  return width;
}

// The numbers that a box takes.
std::string TakenBy(SimBox box) {
  const Bounds& bounds = InfoOf(box).bounds;
  if (std::isinf(bounds.low)) return kTakesAnyNumber;
  const auto text = [](double value) { return QString::number(value, 'g', 10); };
  const bool whole = box == SimBox::kN1mer || box == SimBox::kN2mer;
  const QString number = whole ? QObject::tr("a whole number") : QObject::tr("a number");
  if (!bounds.lowIncluded) {
    return QObject::tr("%1 above %2").arg(number, text(bounds.low)).toStdString();
  }
  if (std::isinf(bounds.high)) {
    return QObject::tr("%1 or a number above it").arg(text(bounds.low)).toStdString();
  }
  const QString range = bounds.highIncluded ? QObject::tr("%1 from %2 to %3")
                                            : QObject::tr("%1 from %2 up to, but not, %3");
  return range.arg(number, text(bounds.low), text(bounds.high)).toStdString();
}

// A hidden control keeps its room, so that nothing moves when the model changes.
void KeepRoom(QWidget& widget) {
  QSizePolicy policy = widget.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(policy);
}

}  // namespace

SimInputTab::SimInputTab(Session& session, Simulator& simulator, QWidget* parent)
    : QWidget(parent),
      session_(session),
      simulator_(simulator),
      optSimModel_(new QButtonGroup(this)),
      optSaveAs_(new QButtonGroup(this)),
      labelWidth_(LabelWidth(fontMetrics())) {
  BuildWidgets();
  ConnectSignals();
  ShowInputs();
}

// The tab order is the order in which the controls are made.
void SimInputTab::BuildWidgets() {
  QGroupBox* models = BuildModelBox();
  componentA_ = BuildGroup("fraComponentA", tr("Component A"),
                           {{SimBox::kMW, 0, 0},
                            {SimBox::kVbar, 1, 0},
                            {SimBox::kExtCoeff, 2, 0},
                            {SimBox::kLoadC, 3, 0}});
  componentB_ = BuildGroup("fraComponentB", tr("Component B"),
                           {{SimBox::kMWB, 0, 0},
                            {SimBox::kVbarB, 1, 0},
                            {SimBox::kExtCoeffB, 2, 0},
                            {SimBox::kLoadCB, 3, 0}});
  // Two boxes that no model has together share a place.
  interactions_ = BuildGroup("fraInteractions", tr("Interactions"),
                             {{SimBox::kNonId, 0, 0},
                              {SimBox::kLnK1, 0, 0},
                              {SimBox::kLnK2, 1, 0},
                              {SimBox::kLnK3, 2, 0},
                              {SimBox::kN1mer, 0, 2},
                              {SimBox::kN2mer, 1, 2},
                              {SimBox::kAlpha, 1, 2}});
  QGroupBox* column = BuildGroup("fraColumn", tr("Solution, Rotor and Column"),
                                 {{SimBox::kDensity, 0, 0},
                                  {SimBox::kTemp, 1, 0},
                                  {SimBox::kSpeed, 2, 0},
                                  {SimBox::kRmen, 3, 0},
                                  {SimBox::kRbase, 4, 0},
                                  {SimBox::kRMS, 5, 0}});
  QGroupBox* saveAs = BuildSaveAsBox();
  cmdSimulate_ = Named(new QPushButton(tr("&Calculate")), "cmdSimulate");
  cmdSimulate_->setToolTip(tr("Simulate a scan with these parameters"));

  cmdSimSeries_ = Named(new QPushButton(tr("S&eries...")), "cmdSimSeries");
  cmdSimSeries_->setToolTip(tr("Simulate scans of all combinations of speeds and loads at once"));
  cmdSimPlan_ = Named(new QPushButton(tr("Plan E&xperiment...")), "cmdSimPlan");
  cmdSimPlan_->setToolTip(tr("How well an experiment would determine its parameters"));

  auto* right = new QVBoxLayout;
  right->addWidget(column);
  right->addWidget(saveAs);
  right->addStretch();
  right->addWidget(cmdSimulate_);
  right->addWidget(cmdSimSeries_);
  right->addWidget(cmdSimPlan_);
  auto* grid = new QGridLayout(this);
  grid->addWidget(models, 0, 0, 2, 1);
  grid->addWidget(componentA_, 0, 1);
  grid->addWidget(componentB_, 0, 2);
  grid->addWidget(interactions_, 1, 1, 1, 2);
  grid->addLayout(right, 0, 3, 2, 1);
  grid->setRowStretch(2, 1);
  grid->setColumnStretch(4, 1);
}

QGroupBox* SimInputTab::BuildModelBox() {
  auto* group = Named(new QGroupBox(tr("Model")), "fraSimModel");
  auto* layout = new QVBoxLayout(group);
  layout->setSpacing(kRowGap);
  for (int model = 0; model < kSimModels; ++model) {
    auto* button = new QRadioButton(ToText(SimModelOf(model).caption));
    optSimModel_->addButton(Named(button, ElementName("optSimModel", model)), model);
    layout->addWidget(button);
  }
  layout->addStretch();
  return group;
}

QGroupBox* SimInputTab::BuildSaveAsBox() {
  auto* group = Named(new QGroupBox(tr("Save As")), "frmSaveAs");
  auto* grid = new QGridLayout(group);
  grid->setVerticalSpacing(kRowGap);
  int kind = 0;
  for (const QString& caption : {tr("IP8 file"), tr("RA8 file")}) {
    auto* button = Named(new QRadioButton(caption), ElementName("optSaveAs", kind));
    optSaveAs_->addButton(button, kind);
    grid->addWidget(button, 0, kind++);
  }
  AddEntry(*grid, {SimBox::kWaveL, 1, 0});
  grid->setColumnStretch(0, 1);
  return group;
}

QGroupBox* SimInputTab::BuildGroup(const char* name, const QString& title,
                                   std::initializer_list<Place> places) {
  auto* group = Named(new QGroupBox(title), name);
  auto* grid = new QGridLayout(group);
  grid->setVerticalSpacing(kRowGap);
  for (const Place& place : places) AddEntry(*grid, place);
  grid->setColumnStretch(grid->columnCount() - 2, 1);  // the last labels
  grid->setRowStretch(grid->rowCount(), 1);
  KeepRoom(*group);
  return group;
}

void SimInputTab::AddEntry(QGridLayout& grid, const Place& place) {
  Entry& entry = entries_[static_cast<std::size_t>(place.box)];
  entry.label = Named(new QLabel, LabelName(place.box));
  entry.label->setTextFormat(Qt::PlainText);
  entry.label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  entry.label->setMinimumWidth(labelWidth_);
  entry.box = Named(new ValueBox, ToText(InfoOf(place.box).control));
  entry.label->setBuddy(entry.box);
  ShapeNumberBox(*entry.box);
  KeepRoom(*entry.label);
  KeepRoom(*entry.box);
  grid.addWidget(entry.label, place.row, place.column);
  grid.addWidget(entry.box, place.row, place.column + 1);
}

void SimInputTab::ConnectSignals() {
  connect(optSimModel_, &QButtonGroup::idClicked, this, &SimInputTab::ChooseModel);
  connect(optSaveAs_, &QButtonGroup::idClicked, this, &SimInputTab::ChooseKind);
  connect(cmdSimulate_, &QPushButton::clicked, this, &SimInputTab::SimulateRequested);
  connect(cmdSimSeries_, &QPushButton::clicked, this, &SimInputTab::SeriesRequested);
  connect(cmdSimPlan_, &QPushButton::clicked, this, &SimInputTab::PlanRequested);
  for (int k = 0; k < kSimBoxes; ++k) {
    const auto box = static_cast<SimBox>(k);
    const auto enter = [this, box](const std::string& text) {
      const auto message = EnterText(simulator_, box, text);
      if (!message && box == SimBox::kWaveL) emit HeaderChanged();
      return message ? Refusal{std::string(*message)} : Refusal{};
    };
    const Entry& entry = entries_[static_cast<std::size_t>(box)];
    BindEntry(*entry.box, session_,
              {.enter = enter,
               .shown = [this, box] { return simulator_.Inputs.Text(box); },
               .name = [label = entry.label] { return label->text(); },
               .taken = [box] { return TakenBy(box); }});
  }
}

void SimInputTab::ShowInputs() {
  const SimInputs& inputs = simulator_.Inputs;
  optSimModel_->button(inputs.model)->setChecked(true);
  optSaveAs_->button(static_cast<int>(inputs.saveAs))->setChecked(true);
  for (int k = 0; k < kSimBoxes; ++k) {
    const auto box = static_cast<SimBox>(k);
    const Entry& entry = entries_[static_cast<std::size_t>(k)];
    const bool shown = box == SimBox::kWaveL || UsesBox(inputs.model, box);
    entry.label->setText(QString::fromStdString(LabelOf(box, inputs.model, inputs.kDisplay)));
    const QString tip = QString::fromStdString(ToolTipOf(box, inputs.model, inputs.kDisplay));
    entry.box->setToolTip(tip);
    entry.box->ShowStored(QString::fromStdString(inputs.Text(box)));
    entry.label->setVisible(shown);
    entry.box->setVisible(shown);
  }
  ShowGroups();
}

// A frame without an entry is hidden with its title.
void SimInputTab::ShowGroups() {
  const SimModel& model = SimModelOf(simulator_.Inputs.model);
  componentA_->setTitle(model.secondComponent ? tr("Component A") : tr("Component"));
  componentB_->setVisible(model.secondComponent);
  interactions_->setVisible(model.boxes != 0);
}

bool SimInputTab::CommitPending() {
  return std::all_of(entries_.begin(), entries_.end(),
                     [](const Entry& entry) { return entry.box->Commit(); });
}

bool SimInputTab::CheckEntries() {
  const std::optional<EntryRefusal> refusal = FirstRefusal(simulator_.Inputs);
  if (!refusal) return true;
  TellEntryError(session_, window(), Refusal{std::string(refusal->message)});
  entries_[static_cast<std::size_t>(refusal->box)].box->setFocus(Qt::OtherFocusReason);
  return false;
}

// An entry that is being typed belongs to the old model; a refused one keeps it.
void SimInputTab::ChooseModel(int model) {
  if (CommitPending()) simulator_.Inputs.model = model;
  ShowInputs();
  emit ModelChosen();
}

void SimInputTab::ChooseKind(int kind) {
  if (CommitPending()) ChooseFileKind(simulator_, static_cast<SimFileKind>(kind));
  ShowInputs();
  emit HeaderChanged();
}

}  // namespace quorvane
