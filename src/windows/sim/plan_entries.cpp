#include "windows/sim/plan_entries.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "job/load_words.h"
#include "sim/sim_series.h"
#include "windows/controls/control_names.h"

namespace quorvane {

namespace {

QString ToText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString NumberText(double value) {
  return QString::fromStdString(ShortestText(value));
}

QString ListText(const std::vector<double>& values) {
  QStringList texts;
  for (const double value : values) texts << NumberText(value);
  return texts.join(QStringLiteral(", "));
}

// "txtPlanLnK1" of the parameter "LnK1".
QString NameFor(const char* kind, const SharedParameter& shared) {
  return QLatin1String(kind) + ToText(shared.name);
}

}  // namespace

PlanEntries::PlanEntries(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(BuildSample());
  layout->addWidget(BuildRun());
  layout->addWidget(BuildCell());
  layout->addStretch(1);
  AlignLabels();
  ShowModel();
  ShowChoices();
}

QLineEdit* PlanEntries::AddBox(QFormLayout& form, const char* name, const QString& label,
                               const QString& tip) {
  auto* box = Named(new QLineEdit, name);
  box->setToolTip(tip);
  form.addRow(label, box);
  connect(box, &QLineEdit::textChanged, this, [this] {
    if (!showing_) emit Changed();
  });
  return box;
}

void PlanEntries::AddRow(std::size_t place) {
  const SharedParameter& shared = SharedParameters[place];
  Row& row = rows_[place];
  row.label = Named(new QLabel(ToText(shared.label)), NameFor("lblPlan", shared));
  row.value = Named(new QLineEdit, NameFor("txtPlan", shared));
  row.fitted = Named(new QCheckBox(tr("fit")), NameFor("chkPlan", shared));
  row.fitted->setToolTip(tr("Not checked: the value is known from elsewhere"));
  row.label->setBuddy(row.value);
  auto* both = new QHBoxLayout;
  both->addWidget(row.value, 1);
  both->addWidget(row.fitted);
  row.both = both;
  sample_->addRow(row.label, both);
  const auto changed = [this] {
    if (!showing_) emit Changed();
  };
  connect(row.value, &QLineEdit::textChanged, this, changed);
  connect(row.fitted, &QCheckBox::toggled, this, changed);
}

QGroupBox* PlanEntries::BuildSample() {
  auto* group = new QGroupBox(tr("Expected Sample"));
  sample_ = new QFormLayout(group);
  cmbModel_ = Named(new QComboBox, "cmbPlanModel");
  for (const std::string_view name : ModelNames()) cmbModel_->addItem(ToText(name));
  cmbModel_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  sample_->addRow(tr("Model"), cmbModel_);
  for (std::size_t k = 0; k < rows_.size(); ++k) AddRow(k);
  txtVbar_ = AddBox(*sample_, "txtPlanVbar", tr("vbar, ml/g"), tr("Partial specific volume"));
  txtDensity_ = AddBox(*sample_, "txtPlanDensity", tr("Density, g/ml"), tr("Of the buffer"));
  txtTemperature_ = AddBox(*sample_, "txtPlanTemperature", tr("Temperature, deg C"), {});
  connect(cmbModel_, &QComboBox::currentIndexChanged, this, [this] {
    ShowModel();
    if (!showing_) emit Changed();
  });
  return group;
}

QGroupBox* PlanEntries::BuildRun() {
  auto* group = new QGroupBox(tr("Speeds and Loads"));
  run_ = new QFormLayout(group);
  txtSpeeds_ = AddBox(*run_, "txtPlanSpeeds", tr("Spee&ds, rpm"),
                      tr("Numbers between commas or blanks, such as 10000, 14000, 20000"));
  chkChoose_ = Named(new QCheckBox(tr("Choose the &best")), "chkPlanChoose");
  chkChoose_->setToolTip(tr("The speeds are candidates: the best few of them are looked for"));
  spnChoose_ = Named(new QSpinBox, "spnPlanChoose");
  spnChoose_->setRange(1, 99);
  spnChoose_->setValue(3);
  spnChoose_->setAccessibleName(tr("How many speeds are chosen"));
  auto* choose = new QHBoxLayout;
  choose->addWidget(chkChoose_);
  choose->addWidget(spnChoose_);
  choose->addStretch(1);
  run_->addRow(QString(), choose);
  const QString list = tr("A column each; numbers between commas or blanks");
  txtLoads_ = AddBox(*run_, "txtPlanLoads", tr("&Loads, molar"), list);
  txtLoadsB_ = AddBox(*run_, "txtPlanLoadsB", tr("Loads of B, molar"),
                      tr("As many as of A, or one for all columns"));
  const QString light = tr("Signal units/mole; several numbers are a wavelength each");
  txtExtCoeff_ = AddBox(*run_, "txtPlanExtCoeff", tr("Ext. coeff."), light);
  txtExtCoeffB_ = AddBox(*run_, "txtPlanExtCoeffB", tr("Ext. coeff. of B"), light);
  const auto changed = [this] {
    ShowChoices();
    if (!showing_) emit Changed();
  };
  connect(chkChoose_, &QCheckBox::toggled, this, &PlanEntries::OfferAgain);
  connect(chkChoose_, &QCheckBox::toggled, this, changed);
  connect(spnChoose_, &QSpinBox::valueChanged, this, changed);
  return group;
}

QGroupBox* PlanEntries::BuildCell() {
  auto* group = new QGroupBox(tr("Cell and Detector"));
  cell_ = new QFormLayout(group);
  cmbCell_ = Named(new QComboBox, "cmbPlanCell");
  cmbCell_->addItem(tr("from meniscus to base"));
  for (const Centerpiece piece :
       {Centerpiece::kTwoChannels, Centerpiece::kSixChannels, Centerpiece::kEightChannels}) {
    cmbCell_->addItem(QString::fromUtf8(WordOf(piece)));
  }
  cmbCell_->setToolTip(tr("The loads fill the channels of a centerpiece one after the other"));
  cell_->addRow(tr("Col&umn"), cmbCell_);
  txtMeniscus_ = AddBox(*cell_, "txtPlanMeniscus", tr("Meniscus, cm"), {});
  txtBase_ = AddBox(*cell_, "txtPlanBase", tr("Base, cm"), {});
  spnPoints_ = Named(new QSpinBox, "spnPlanPoints");
  spnPoints_->setRange(kMinPoints, kMaxPoints);
  spnPoints_->setToolTip(tr("Points of a scan"));
  cell_->addRow(tr("Points"), spnPoints_);
  txtNoise_ = AddBox(*cell_, "txtPlanNoise", tr("&Noise, rms"), tr("In signal units"));
  txtMostSignal_ = AddBox(*cell_, "txtPlanMostSignal", tr("Signal up to"),
                          tr("Points above are lost to the detector; empty: there is no limit"));
  const auto changed = [this] {
    ShowChoices();
    if (!showing_) emit Changed();
  };
  connect(cmbCell_, &QComboBox::currentIndexChanged, this, changed);
  connect(spnPoints_, &QSpinBox::valueChanged, this, changed);
  return group;
}

// The boxes of all groups stand in line, whatever captions the model has.
void PlanEntries::AlignLabels() {
  int width = 0;
  for (const Model& model : Models()) {
    for (const ModelParameter& parameter : model.parameters) {
      width = std::max(width, fontMetrics().horizontalAdvance(ToText(Trim(parameter.caption))));
    }
  }
  const QFormLayout* const forms[] = {sample_, run_, cell_};
  for (const QFormLayout* form : forms) {
    for (int row = 0; row < form->rowCount(); ++row) {
      const QLayoutItem* label = form->itemAt(row, QFormLayout::LabelRole);
      if (label != nullptr) width = std::max(width, label->widget()->sizeHint().width());
    }
  }
  for (const QFormLayout* form : forms) {
    for (int row = 0; row < form->rowCount(); ++row) {
      const QLayoutItem* label = form->itemAt(row, QFormLayout::LabelRole);
      if (label != nullptr) label->widget()->setMinimumWidth(width);
    }
  }
}

// The boxes that the model has, under its own captions.
void PlanEntries::ShowModel() {
  const Model& model = Models()[static_cast<std::size_t>(cmbModel_->currentIndex())];
  for (std::size_t k = 0; k < rows_.size(); ++k) {
    const ModelParameter* parameter = FindParameter(model, SharedParameters[k]);
    const bool used = parameter != nullptr;
    if (used) rows_[k].label->setText(ToText(Trim(parameter->caption)));
    sample_->setRowVisible(rows_[k].both, used);
  }
  run_->setRowVisible(txtLoadsB_, model.secondComponent);
  run_->setRowVisible(txtExtCoeffB_, model.secondComponent);
}

void PlanEntries::ShowChoices() {
  spnChoose_->setEnabled(chkChoose_->isChecked());
  const bool ends = cmbCell_->currentIndex() == 0;
  cell_->setRowVisible(txtMeniscus_, ends);
  cell_->setRowVisible(txtBase_, ends);
}

void PlanEntries::ShowPlan(const ExperimentPlan& plan) {
  showing_ = true;
  cmbModel_->setCurrentIndex(plan.model->index);
  for (std::size_t k = 0; k < rows_.size(); ++k) {
    rows_[k].value->setText(NumberText(plan.truth.*SharedParameters[k].field));
    rows_[k].fitted->setChecked(plan.fitted[k]);
  }
  txtVbar_->setText(NumberText(plan.truth.Vbar));
  txtDensity_->setText(NumberText(plan.truth.Density));
  txtTemperature_->setText(NumberText(plan.temperature));
  txtSpeeds_->setText(ListText(Chooses(plan) ? plan.candidates : plan.speeds));
  chkChoose_->setChecked(Chooses(plan));
  if (Chooses(plan)) spnChoose_->setValue(plan.choose);
  txtLoads_->setText(ListText(plan.loads));
  txtExtCoeff_->setText(ListText(plan.extCoeff));
  if (plan.TwoComponents()) {  // else what stands there waits for the next such model
    txtLoadsB_->setText(ListText(plan.loadsB));
    txtExtCoeffB_->setText(ListText(plan.extCoeffB));
  }
  txtNoise_->setText(NumberText(plan.noise));
  txtMostSignal_->setText(std::isfinite(plan.mostSignal) ? NumberText(plan.mostSignal) : QString());
  cmbCell_->setCurrentIndex(plan.centerpiece ? static_cast<int>(*plan.centerpiece) + 1 : 0);
  txtMeniscus_->setText(NumberText(plan.meniscus));
  txtBase_->setText(NumberText(plan.base));
  spnPoints_->setValue(plan.points);
  ShowModel();
  ShowChoices();
  for (QLineEdit* box : findChildren<QLineEdit*>()) box->setCursorPosition(0);
  showing_ = false;
}

void PlanEntries::TakeChoice(const std::vector<double>& speeds) {
  showing_ = true;
  candidates_ = txtSpeeds_->text();
  chosen_ = ListText(speeds);
  chkChoose_->setChecked(false);
  txtSpeeds_->setText(chosen_);
  txtSpeeds_->setCursorPosition(0);
  showing_ = false;
}

void PlanEntries::OfferAgain(bool choose) {
  if (showing_ || !choose || txtSpeeds_->text() != chosen_) return;
  const QSignalBlocker quiet(txtSpeeds_);
  txtSpeeds_->setText(candidates_);
  txtSpeeds_->setCursorPosition(0);
}

void PlanEntries::Refuse(const QLineEdit& box, const QString& why) {
  if (!refusal_.isEmpty()) return;
  const QString text = box.text().trimmed();
  refusal_ = text.isEmpty() ? why : tr("%1: %2").arg(text, why);
}

double PlanEntries::Number(const QLineEdit& box) {
  const std::optional<double> value = ParseNumeric(box.text().trimmed().toStdString());
  if (!value) Refuse(box, tr("a number is wanted"));
  return value.value_or(0.0);
}

std::vector<double> PlanEntries::Numbers(const QLineEdit& box) {
  std::vector<double> values;
  for (const std::string& entry : ListedEntries(box.text().toStdString())) {
    const std::optional<double> value = ParseNumeric(entry);
    if (!value) Refuse(box, tr("numbers between commas or blanks are wanted"));
    values.push_back(value.value_or(0.0));
  }
  return values;
}

void PlanEntries::ReadSample(ExperimentPlan& plan) {
  plan.model = &Models()[static_cast<std::size_t>(cmbModel_->currentIndex())];
  for (std::size_t k = 0; k < rows_.size(); ++k) {
    const SharedParameter& shared = SharedParameters[k];
    plan.fitted[k] = rows_[k].fitted->isChecked();
    if (FindParameter(*plan.model, shared) == nullptr) continue;
    plan.truth.*shared.field = Number(*rows_[k].value);
  }
  plan.truth.Vbar = Number(*txtVbar_);
  plan.truth.Density = Number(*txtDensity_);
  plan.temperature = Number(*txtTemperature_);
}

void PlanEntries::ReadRun(ExperimentPlan& plan) {
  const bool choose = chkChoose_->isChecked();
  (choose ? plan.candidates : plan.speeds) = Numbers(*txtSpeeds_);
  plan.choose = choose ? spnChoose_->value() : 0;
  plan.loads = Numbers(*txtLoads_);
  plan.extCoeff = Numbers(*txtExtCoeff_);
  if (!plan.TwoComponents()) return;
  plan.loadsB = Numbers(*txtLoadsB_);
  plan.extCoeffB = Numbers(*txtExtCoeffB_);
}

void PlanEntries::ReadCell(ExperimentPlan& plan) {
  const int cell = cmbCell_->currentIndex();
  if (cell > 0) {
    plan.centerpiece = static_cast<Centerpiece>(cell - 1);
  } else {
    plan.meniscus = Number(*txtMeniscus_);
    plan.base = Number(*txtBase_);
  }
  plan.points = spnPoints_->value();
  plan.noise = Number(*txtNoise_);
  if (!txtMostSignal_->text().trimmed().isEmpty()) plan.mostSignal = Number(*txtMostSignal_);
}

std::optional<ExperimentPlan> PlanEntries::Plan() {
  refusal_.clear();
  ExperimentPlan plan;
  ReadSample(plan);
  ReadRun(plan);
  ReadCell(plan);
  if (!refusal_.isEmpty()) return std::nullopt;
  if (const std::optional<PlanRefusal> refusal = RefusalOf(plan)) {
    refusal_ = QString::fromStdString(refusal->message);
    return std::nullopt;
  }
  return plan;
}

}  // namespace quorvane
