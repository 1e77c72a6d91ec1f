#include "windows/solution/solution_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QTableView>
#include <QVBoxLayout>

#include "base/number_format.h"
#include "base/text.h"
#include "core/page/constants.h"
#include "core/page/page_weights.h"
#include "solution/buffer_density.h"
#include "solution/solution_fault.h"
#include "windows/controls/control_names.h"
#include "windows/controls/push_button.h"
#include "windows/controls/warning_ink.h"
#include "windows/session/session.h"
#include "windows/solution/sequence_box.h"

namespace quorvane {

namespace {

constexpr double kLongestPath = 10.0;  // cm

struct LineOfConstants {
  const char* name;
  const char* label;
};

// By SolutionWindow::Line.
constexpr std::array<LineOfConstants, 7> kLabels = {
    {{"lblSolutionMass", QT_TRANSLATE_NOOP("QObject", "Mass")},
     {"lblSolutionVbar", QT_TRANSLATE_NOOP("QObject", "vbar")},
     {"lblSolutionExtinction", QT_TRANSLATE_NOOP("QObject", "Extinction at 280 nm")},
     {"lblSolutionDensity", QT_TRANSLATE_NOOP("QObject", "Density")},
     {"lblSolutionBuoyancy", QT_TRANSLATE_NOOP("QObject", "1 - vbar density")},
     {"lblSolutionBuoyant", QT_TRANSLATE_NOOP("QObject", "Buoyant mass")},
     {"lblSolutionWeight", QT_TRANSLATE_NOOP("QObject", "Weight of the fit")}}};

QString Number(double value, const char* pattern) {
  return QString::fromStdString(FormatNumber(value, pattern));
}

// Whether a text tells amounts, not only a part of a name.
bool IsRecipe(const QString& text) {
  return text.contains('=') || LengthOfAmount(text.trimmed().toStdString()) > 0;
}

}  // namespace

SolutionWindow::SolutionWindow(Session& session, QWidget* parent)
    : QDialog(parent), session_(session) {
  BuildWidgets();
  ShowEntry();
  ConnectSignals();
  Recompute();
}

void SolutionWindow::BuildWidgets() {
  setObjectName("frmSolution");
  setWindowTitle(tr("Solution"));
  setModal(true);
  protein_ = new SequenceBox(session_);
  auto* entries = new QHBoxLayout;
  entries->addWidget(protein_, 4);
  entries->addWidget(BuildBuffer(), 5);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(entries, 1);
  layout->addWidget(BuildConstants());
  layout->addWidget(BuildUse());
  const QSize wanted(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 44);
  resize(wanted.boundedTo(screen()->availableSize() * 0.95));
}

QGroupBox* SolutionWindow::BuildBuffer() {
  auto* group = Named(new QGroupBox(tr("Buffer")), "grpSolutionBuffer");
  txtFindComponent_ = Named(new QLineEdit, "txtFindComponent");
  txtFindComponent_->setPlaceholderText(tr("NaCl, or 20 mM Tris, 5 % v/v glycerol ..."));
  txtFindComponent_->setClearButtonEnabled(true);
  txtFindComponent_->setToolTip(
      tr("Part of a name: Return goes to the amount of the first found.\n"
         "A recipe, such as 20 mM Tris, 0.1 M NaCl: Return takes it into the buffer."));
  auto* find = new QLabel(tr("&Find"));
  find->setBuddy(txtFindComponent_);
  gridComponents_ = Named(new QTableView, "gridComponents");
  gridComponents_->setAccessibleName(tr("Components of the buffer"));
  gridComponents_->setModel(&components_);
  gridComponents_->verticalHeader()->hide();
  gridComponents_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  gridComponents_->setTabKeyNavigation(false);
  gridComponents_->setEditTriggers(
      QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
      QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
  gridComponents_->setSelectionMode(QAbstractItemView::SingleSelection);
  const int unit = fontMetrics().averageCharWidth();
  QHeaderView* heads = gridComponents_->horizontalHeader();
  heads->setSectionResizeMode(ComponentModel::kName, QHeaderView::Stretch);
  gridComponents_->setColumnWidth(ComponentModel::kShortNames, unit * 18);
  gridComponents_->setColumnWidth(ComponentModel::kRange, unit * 12);
  gridComponents_->setColumnWidth(ComponentModel::kAmount, unit * 12);
  lblBuffer_ = Named(new QLabel, "lblBuffer");
  lblBuffer_->setTextFormat(Qt::PlainText);
  lblBuffer_->setWordWrap(true);
  lblBuffer_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* search = new QHBoxLayout;
  search->addWidget(find);
  search->addWidget(txtFindComponent_, 1);
  auto* layout = new QVBoxLayout(group);
  layout->addLayout(search);
  layout->addWidget(gridComponents_, 1);
  layout->addWidget(lblBuffer_);
  return group;
}

QGroupBox* SolutionWindow::BuildConstants() {
  auto* group = Named(new QGroupBox(tr("Constants")), "grpSolutionConstants");
  auto* form = new QFormLayout;
  txtSolutionTemp_ = Named(new QLineEdit, "txtSolutionTemp");
  txtSolutionTemp_->setMaximumWidth(fontMetrics().averageCharWidth() * 12);
  txtSolutionTemp_->setToolTip(tr("That of the experiment unless another one is typed"));
  form->addRow(tr("&Temperature, deg C"), txtSolutionTemp_);
  for (std::size_t k = 0; k < kLabels.size(); ++k) {
    lines_[k] = Named(new QLabel, kLabels[k].name);
    lines_[k]->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lines_[k]->setTextFormat(Qt::PlainText);
    form->addRow(QObject::tr(kLabels[k].label), lines_[k]);
  }
  lblSolutionRemarks_ = Named(new QLabel, "lblSolutionRemarks");
  lblSolutionRemarks_->setTextFormat(Qt::PlainText);
  lblSolutionRemarks_->setWordWrap(true);
  lblSolutionRemarks_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  lblSolutionRemarks_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblSolutionRemarks_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(lblSolutionRemarks_);
  scroll->viewport()->setAutoFillBackground(false);
  lblSolutionRemarks_->setAutoFillBackground(false);
  auto* layout = new QHBoxLayout(group);
  layout->addLayout(form, 4);
  layout->addWidget(scroll, 5);
  return group;
}

QWidget* SolutionWindow::BuildUse() {
  chkUseVbar_ = Named(new QCheckBox(tr("&vbar")), "chkUseVbar");
  chkUseVbar_->setChecked(true);
  cmbUseComponent_ = Named(new QComboBox, "cmbUseComponent");
  cmbUseComponent_->addItems({tr("of A"), tr("of B")});
  cmbUseComponent_->setAccessibleName(tr("Component of the protein"));
  cmbUseComponent_->setVisible(session_.Module.Setup.TwoComponentModel);
  chkUseDensity_ = Named(new QCheckBox(tr("d&ensity")), "chkUseDensity");
  chkUseDensity_->setChecked(true);
  chkUseExtinction_ =
      Named(new QCheckBox(tr("e&xtinction of scans at 280 nm, in a path of")), "chkUseExtinction");
  const std::size_t rows = RowsAt280(session_.Module).size();
  chkUseExtinction_->setEnabled(rows > 0);
  chkUseExtinction_->setToolTip(rows > 0 ? tr("Datasets on the page at 280 nm: %1").arg(rows)
                                         : tr("No dataset of the page was scanned at 280 nm"));
  txtSolutionPath_ = Named(new QLineEdit, "txtSolutionPath");
  txtSolutionPath_->setAccessibleName(tr("Optical path, cm"));
  txtSolutionPath_->setMaximumWidth(fontMetrics().averageCharWidth() * 9);
  cmdUseSolution_ = MakeButton("cmdUseSolution", tr("&Use"));
  cmdUseSolution_->setToolTip(tr("Take what is checked for this experiment"));
  auto* cmdClose = MakeButton("cmdCloseSolution", tr("Close"));
  connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
  auto* bar = new QWidget;
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(new QLabel(tr("Take")));
  row->addWidget(chkUseVbar_);
  row->addWidget(cmbUseComponent_);
  row->addWidget(chkUseDensity_);
  row->addWidget(chkUseExtinction_);
  row->addWidget(txtSolutionPath_);
  row->addWidget(new QLabel(tr("cm")));
  row->addStretch();
  row->addWidget(cmdUseSolution_);
  row->addWidget(cmdClose);
  return bar;
}

void SolutionWindow::ConnectSignals() {
  connect(protein_, &SequenceBox::Changed, this, &SolutionWindow::Recompute);
  connect(txtFindComponent_, &QLineEdit::textChanged, this, &SolutionWindow::Find);
  connect(txtFindComponent_, &QLineEdit::returnPressed, this, &SolutionWindow::TakeTyped);
  connect(&components_, &ComponentModel::Changed, this, &SolutionWindow::Recompute);
  connect(&components_, &ComponentModel::Refused, this, &SolutionWindow::Refuse);
  for (QLineEdit* box : {txtSolutionTemp_, txtSolutionPath_}) {
    connect(box, &QLineEdit::textChanged, this, &SolutionWindow::Recompute);
  }
  for (QCheckBox* check : {chkUseVbar_, chkUseDensity_, chkUseExtinction_}) {
    connect(check, &QCheckBox::toggled, this, &SolutionWindow::Recompute);
  }
  connect(cmbUseComponent_, &QComboBox::currentIndexChanged, this, &SolutionWindow::Recompute);
  connect(cmdUseSolution_, &QPushButton::clicked, this, &SolutionWindow::Use);
}

void SolutionWindow::ShowEntry() {
  const SolutionEntry entry = session_.Module.Solution;
  protein_->ShowEntry(entry);
  components_.SetRecipe(entry.buffer);
  txtSolutionTemp_->setText(Number(SolutionDegC(session_.Module), "0.0##"));
  txtSolutionPath_->setText(Number(entry.path, "0.0##"));
}

// Says what to do for a name that nothing is found for.
void SolutionWindow::Find(const QString& text) {
  components_.Search(text);
  ShowBuffer();
  if (components_.FirstFound() >= 0 || IsRecipe(text)) return;
  try {
    FindComponent(text.trimmed().toStdString());
  } catch (const SolutionFault& fault) {
    lblBuffer_->setText(QString::fromStdString(fault.what()));
  }
}

// The Return of the search box. "Use" is no default button, which would take every Return.
void SolutionWindow::TakeTyped() {
  const QString text = txtFindComponent_->text();
  if (!IsRecipe(text)) {
    EditFirstFound();
    return;
  }
  try {
    const BufferRecipe parts = ReadBuffer(text.toStdString());
    txtFindComponent_->clear();
    components_.Add(parts);
  } catch (const SolutionFault& fault) {
    Refuse(QString::fromStdString(fault.what()));
  }
}

void SolutionWindow::EditFirstFound() {
  const int row = components_.FirstFound();
  if (row < 0) return;
  const QModelIndex amount = components_.index(row, ComponentModel::kAmount);
  gridComponents_->setCurrentIndex(amount);
  gridComponents_->setFocus();
  gridComponents_->edit(amount);
}

void SolutionWindow::Refuse(const QString& why) {
  lblBuffer_->setText(why);
  QPalette ink = palette();
  ink.setColor(QPalette::WindowText, WarningInk(palette()));
  lblBuffer_->setPalette(ink);
}

bool SolutionWindow::TakeNumber(const QLineEdit& box, const QString& name, double lowest,
                                double highest, double& number) {
  const std::optional<double> entered = ParseNumeric(box.text().toStdString());
  if (entered && *entered >= lowest && *entered <= highest) {
    number = *entered;
    return true;
  }
  fault_ = tr("%1: a number from %2 to %3 is wanted").arg(name).arg(lowest).arg(highest);
  return false;
}

bool SolutionWindow::TakeEntry() {
  fault_ = protein_->Fault();
  QuorvaneModule& module = session_.Module;
  SolutionEntry entry = module.Solution;
  double degC = 0.0;
  const bool taken =
      protein_->Take(entry) &&
      TakeNumber(*txtSolutionTemp_, tr("Temperature"), kColdest, kHottest, degC) &&
      TakeNumber(*txtSolutionPath_, tr("Optical path"), 0.001, kLongestPath, entry.path);
  if (!taken) return false;
  entry.buffer = components_.Recipe();
  const bool own = Number(degC, "0.0##") != Number(ExperimentDegC(module), "0.0##");
  entry.degC = own ? std::optional(degC) : std::nullopt;
  module.Solution = std::move(entry);
  return true;
}

void SolutionWindow::Recompute() {
  constants_ = {};
  if (TakeEntry()) {
    const QuorvaneModule& module = session_.Module;
    try {
      constants_ = CalcSolution(RequestOf(module.Solution, SolutionDegC(module)));
    } catch (const SolutionFault& fault) {
      fault_ = QString::fromStdString(fault.what());
    }
  }
  ShowBuffer();
  ShowConstants();
  ShowWeights();
  ShowRemarks();
  const SolutionUse use = Chosen();
  const bool some = (use.vbar && constants_.protein) || (use.density && constants_.density) ||
                    (use.extinction && constants_.protein);
  cmdUseSolution_->setEnabled(fault_.isEmpty() && some);
}

void SolutionWindow::ShowBuffer() {
  lblBuffer_->setPalette(palette());
  lblBuffer_->setText(QString::fromStdString(BufferText(components_.Recipe())));
}

void SolutionWindow::ShowConstants() {
  for (QLabel* line : lines_) line->setText(QStringLiteral("\u2013"));
  if (constants_.protein) {
    const ProteinConstants& protein = *constants_.protein;
    lines_[kMass]->setText(tr("%1 Da").arg(Number(protein.mass, "#,##0.0")));
    lines_[kVbar]->setText(tr("%1 ml/g").arg(Number(protein.vbar, "0.0000")));
    lines_[kExtinction]->setText(
        tr("%1 1/(M cm), %2 of 1 mg/ml")
            .arg(Number(protein.extinction280, "#,##0"), Number(protein.a280, "0.000")));
  }
  if (constants_.density) {
    lines_[kDensity]->setText(tr("%1 g/ml").arg(Number(*constants_.density, "0.00000")));
  }
  if (!constants_.buoyancy) return;
  lines_[kBuoyancy]->setText(Number(*constants_.buoyancy, "0.0000"));
  lines_[kBuoyantMass]->setText(tr("%1 Da").arg(Number(*constants_.buoyantMass, "#,##0.0")));
}

// Those of the last fit, or of the page before there is one.
void SolutionWindow::ShowWeights() {
  const QuorvaneModule& module = session_.Module;
  const FinishedFit* fit = module.LastFit.get();
  if (fit == nullptr && module.Setup.NumFitSets == 0) return;
  const FitSetup& setup = fit == nullptr ? module.Setup : fit->setup;
  const FitPage& page = fit == nullptr ? module.FitPage : fit->page;
  const std::vector<PageWeight> now = PageWeights(setup, page);
  const std::vector<PageWeight> then = PageWeights(setup, PageWith(page, Chosen(), constants_));
  QString text;
  for (std::size_t k = 0; k < now.size(); ++k) {
    if (k > 0) text += '\n';
    text += now[k].text == then[k].text ? QString::fromStdString(now[k].text)
                                        : tr("%1, then %2")
                                              .arg(QString::fromStdString(now[k].text),
                                                   QString::fromStdString(then[k].text));
  }
  if (!text.isEmpty()) lines_[kWeight]->setText(text);
}

void SolutionWindow::ShowRemarks() {
  QString text = fault_;
  for (const std::string& remark : constants_.remarks) {
    text += (text.isEmpty() ? QStringLiteral("\u2022 ") : QStringLiteral("\n\u2022 ")) +
            QString::fromStdString(remark);
  }
  lblSolutionRemarks_->setText(text);
  QPalette ink = palette();
  if (!fault_.isEmpty()) ink.setColor(QPalette::WindowText, WarningInk(palette()));
  lblSolutionRemarks_->setPalette(ink);
}

// What is checked and there: without a sequence the density alone.
SolutionUse SolutionWindow::Chosen() const {
  SolutionUse use;
  use.vbar = chkUseVbar_->isChecked() && constants_.protein;
  use.ofB = session_.Module.Setup.TwoComponentModel && cmbUseComponent_->currentIndex() == 1;
  use.density = chkUseDensity_->isChecked() && constants_.density;
  use.extinction = chkUseExtinction_->isChecked() && constants_.protein;
  return use;
}

void SolutionWindow::Use() {
  QuorvaneModule& module = session_.Module;
  const SolutionUse use = Chosen();
  const double oldVbar = ValueOf(module, use.ofB ? Constant::kVbarB : Constant::kVbar);
  const double oldDensity = ValueOf(module, Constant::kDensity);
  if (const Refusal refusal = UseSolution(module, use, constants_)) {
    session_.Ask.ShowMessage(this, tr("Solution"), QString::fromStdString(refusal.text),
                             MessageIcon::kExclamation);
    return;
  }
  QStringList taken;
  if (use.vbar) {
    taken << tr("vbar %1 (was %2)")
                 .arg(Number(constants_.protein->vbar, "0.0000"), Number(oldVbar, "0.00##"));
  }
  if (use.density) {
    taken << tr("density %1 (was %2)")
                 .arg(Number(*constants_.density, "0.00000"), Number(oldDensity, "0.00###"));
  }
  if (use.extinction) taken << tr("extinction of %1 datasets").arg(RowsAt280(module).size());
  session_.Remark(tr("Taken from the solution: %1.").arg(taken.join(QStringLiteral(", "))));
  accept();
  emit Used();
}

}  // namespace quorvane
