#include "windows/page/fit_control_tab.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

#include "base/arithmetic.h"
#include "fit/models.h"
#include "windows/controls/page_controls.h"
#include "windows/controls/push_button.h"
#include "windows/controls/value_box.h"
#include "windows/page/fit_rows.h"
#include "windows/page/model_block.h"
#include "windows/page/ni_warning.h"
#include "windows/page/page_steps.h"
#include "windows/page/rest_line.h"
#include "windows/page/weight_line.h"
#include "windows/session/session.h"

namespace quorvane {

FitControlTab::FitControlTab(Session& session, SessionHost& host, QWidget* parent)
    : QWidget(parent), session_(session), host_(host), top_(new QWidget) {
  auto* marker = new FocusMarker(this);
  block_ = new ModelBlock(session, *marker);
  rows_ = new FitRows(session, *marker);
  BuildWidgets();
  ConnectSignals();
  SetFitDone(false);
  block_->ShowAll();
}

void FitControlTab::BuildWidgets() {
  cmdFitMe_ = MakeButton("cmdFitMe", tr("F&it"), tr("Fit the checked parameters"));
  cmdFitToRest_ =
      MakeButton("cmdFitToRest", tr("Fit to Res&t"),
                 tr("Go on until the sum of squares stands still, then fit and report from there"));
  cmdPreviewFit_ = MakeButton("cmdPreviewFit", tr("Pre&view Fit"),
                              tr("Show all datasets with the curves of the present values"));
  cmdCalcCI_ = MakeButton("cmdCalcCI", tr("&Confidence Intervals..."),
                          tr("Confidence intervals of the shared parameters"));
  cmdShowCCCs_ = MakeButton("cmdShowCCCs", tr("C&ross-Correlation..."),
                            tr("Cross-correlation coefficients of the fitted parameters"));
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : Buttons()) buttons->addWidget(button);
  rest_ = new RestLine;
  buttons->addSpacing(fontMetrics().averageCharWidth());
  buttons->addWidget(rest_, 1);
  auto* top = new QVBoxLayout(top_);
  top->setContentsMargins(0, 0, 0, 0);
  top->addLayout(buttons);
  top->addWidget(block_);
  weights_ = new WeightLine(session_);
  steps_ = new PageSteps(session_, *this);
  auto* line = new QHBoxLayout;
  line->addWidget(weights_, 1);
  line->addWidget(steps_);
  top->addLayout(line);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(top_);
  layout->addWidget(rows_, 1);
}

std::array<QPushButton*, 5> FitControlTab::Buttons() const {
  return {cmdFitMe_, cmdFitToRest_, cmdPreviewFit_, cmdCalcCI_, cmdShowCCCs_};
}

void FitControlTab::ConnectSignals() {
  connect(cmdFitMe_, &QPushButton::clicked, this, [this] {
    if (CommitPending()) emit FitRequested();
  });
  connect(cmdFitToRest_, &QPushButton::clicked, this, [this] {
    if (CommitPending()) emit FitToRestRequested();
  });
  connect(cmdPreviewFit_, &QPushButton::clicked, this, [this] {
    if (CommitPending()) emit PreviewRequested();
  });
  connect(cmdCalcCI_, &QPushButton::clicked, this, &FitControlTab::CalcCIRequested);
  connect(cmdShowCCCs_, &QPushButton::clicked, this, &FitControlTab::ShowCCCsRequested);
  connect(block_, &ModelBlock::PartsChanged, this, [this] {
    CommitPending();  // a click on the text beside a box leaves the focus where it is
    rows_->ShowParts();
  });
  connect(block_, &ModelBlock::RatiosSwitched, this, [this] { SetFitDone(false); });
  connect(block_, &ModelBlock::KDisplayChosen, this, [this](KDisplay display) {
    if (CommitPending()) emit KDisplayChosen(display);
  });
  connect(block_, &ModelBlock::MwDisplayChosen, this, [this](bool buoyant) {
    if (CommitPending()) emit MwDisplayChosen(buoyant);
  });
  connect(steps_, &PageSteps::Stepped, this, &FitControlTab::ShowStep);
  connect(block_, &ModelBlock::ValuesChanged, weights_, &WeightLine::ShowWeights);
  connect(weights_, &WeightLine::ConstantRequested, this, [this](Constant constant) {
    if (CommitPending()) emit ConstantRequested(constant);
  });
  connect(rows_, &FitRows::RefConcRequested, this, [this](int row) {
    if (CommitPending()) emit RefConcRequested(row);
  });
}

bool FitControlTab::SetupFit(const Model& model) {
  if (!SetupEngine(model)) return false;
  ShowPage();
  const bool nonideal = FindParameter(model, shared::kVirialC) != nullptr;
  if (nonideal && session_.Module.Preferences.ShowNIWarning) WarnNonideal();
  return true;
}

void FitControlTab::ShowPage() {
  setUpdatesEnabled(false);
  block_->ShowAll();
  rows_->Rebuild();
  ChainTabOrder();
  SetFitDone(false);
  setUpdatesEnabled(true);
  steps_->Begin();
}

// A step across a switch of the K ratios leaves the last fit behind, as the switch itself does.
void FitControlTab::ShowStep() {
  const QuorvaneModule& module = session_.Module;
  block_->ShowAll();
  rows_->ShowValues();
  rows_->ShowParts();
  const bool otherRatios = module.LastFit != nullptr &&
                           module.LastFit->setup.ConstrainKRatios != module.Setup.ConstrainKRatios;
  if (fitDone_ && otherRatios) SetFitDone(false);
}

// On copies, so that what belongs to the page stays open when the page cannot be built.
bool FitControlTab::SetupEngine(const Model& model) {
  QuorvaneModule& module = session_.Module;
  FitSetup setup = module.Setup;
  FitPage page = module.FitPage;
  QString fault;
  try {
    if (!quorvane::SetupFit(setup, page, module.Store, model, host_)) return false;
    emit PageClosing();
    module.Setup = std::move(setup);
    module.FitPage = page;
    return true;
  } catch (const SubscriptFault& subscript) {
    fault = tr("%1.  At most %2 datasets can be fitted together.")
                .arg(QString::fromUtf8(subscript.what()))
                .arg(kMaxFitSets);
  } catch (const ArithmeticFault& arithmetic) {
    fault = QString::fromUtf8(arithmetic.what());
  }
  session_.Ask.ShowMessage(window(), tr("Setup Fit"), fault, MessageIcon::kExclamation);
  return false;
}

void FitControlTab::ChainTabOrder() {
  QWidget* previous = rows_->LastInTabOrder();
  std::vector<QWidget*> after = block_->InTabOrder();
  for (QWidget* button : weights_->Buttons()) after.push_back(button);
  after.push_back(steps_->UndoButton());
  after.push_back(steps_->RedoButton());
  for (QPushButton* button : Buttons()) after.push_back(button);
  for (QWidget* control : after) {
    setTabOrder(previous, control);
    previous = control;
  }
}

void FitControlTab::WarnNonideal() {
  auto* warning = new NIWarning(session_.Module.Preferences.ShowNIWarning, this);
  warning->setAttribute(Qt::WA_DeleteOnClose);
  warning->open();
}

void FitControlTab::ShowValues() {
  block_->ShowAll();
  rows_->ShowValues();
  steps_->Note();
}

void FitControlTab::ShowRow(int row) {
  rows_->ShowRow(row);
}

void FitControlTab::RefreshDisplay() {
  block_->ShowAll();
  rows_->ShowValues();
}

void FitControlTab::SetFitDone(bool done) {
  fitDone_ = done;
  cmdCalcCI_->setEnabled(done);
  cmdShowCCCs_->setEnabled(done);
  if (done) return;
  rest_->Clear();
  emit FitOutdated();
}

bool FitControlTab::CommitPending() {
  // A box left a moment ago may not have stored its text yet; an unchanged one stores nothing.
  const QList<ValueBox*> boxes = findChildren<ValueBox*>();
  return std::all_of(boxes.begin(), boxes.end(), [](ValueBox* box) { return box->Commit(); });
}

void FitControlTab::SetCalculating(bool on) {
  if (on) focused_ = focusWidget();
  top_->setEnabled(!on);
  rows_->SetContentEnabled(!on);
}

void FitControlTab::RestoreFocus() {
  if (focused_ != nullptr) focused_->setFocus();
}

}  // namespace quorvane
