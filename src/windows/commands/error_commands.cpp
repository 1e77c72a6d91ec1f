#include "windows/commands/error_commands.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTextEdit>

#include "base/arithmetic.h"
#include "stats/correlation.h"
#include "windows/commands/fit_commands.h"
#include "windows/controls/child_window.h"
#include "windows/data/data_window.h"
#include "windows/errors/confidence_window.h"
#include "windows/errors/correlation_window.h"
#include "windows/errors/error_analysis_window.h"
#include "windows/errors/minima_window.h"
#include "windows/errors/quality_window.h"
#include "windows/log/log_window.h"
#include "windows/page/fit_control_tab.h"
#include "windows/session/session.h"
#include "windows/session/window_host.h"

namespace quorvane {

ErrorCommands::ErrorCommands(WindowSet windows, FitCommands& fits, CorrelationWindow& coefficients,
                             QualityWindow& quality, ErrorAnalysisWindow& analysis, QObject* parent)
    : QObject(parent),
      windows_(windows),
      fits_(fits),
      coefficients_(coefficients),
      quality_(quality),
      analysis_(analysis) {
  connect(&analysis_, &ErrorAnalysisWindow::CalculateRequested, this, &ErrorCommands::Analyse);
  connect(&analysis_, &ErrorAnalysisWindow::StopRequested, &fits_, &FitCommands::Stop);
  connect(&windows_.host, &WindowHost::ShareReported, &analysis_, &ErrorAnalysisWindow::ShowShare);
}

// An entry that was pending may have outdated the fit.
bool ErrorCommands::MayAnalyse() {
  return !windows_.session.Calculating && windows_.session.CommitPending() &&
         windows_.data.FitControl().FitDone();
}

void ErrorCommands::OpenConfidence() {
  if (!MayAnalyse()) return;
  CloseForFit();
  confidence_ = new ConfidenceWindow(windows_.session, &windows_.frame);
  connect(confidence_, &ConfidenceWindow::CalculateRequested, this, &ErrorCommands::Search);
  confidence_->setAttribute(Qt::WA_DeleteOnClose);
  confidence_->show();
  windows_.log.Editor()->setFocus();
}

// The window is hidden while its search runs and goes for good afterwards.
void ErrorCommands::Search(const ConfidenceRequest& request) {
  if (!MayAnalyse()) return;
  const QPointer<ConfidenceWindow> window = confidence_;
  window->hide();
  fits_.RunConfidence(request);
  if (window) window->deleteLater();
}

void ErrorCommands::OpenMinima() {
  if (!MayAnalyse()) return;
  CloseForFit();
  minima_ = new MinimaWindow(&windows_.frame);
  connect(minima_, &MinimaWindow::CheckRequested, this, &ErrorCommands::CheckMinima);
  connect(minima_, &MinimaWindow::StopRequested, &fits_, &FitCommands::Stop);
  connect(minima_, &MinimaWindow::UseRequested, &fits_, &FitCommands::UseAsStart);
  minima_->setAttribute(Qt::WA_DeleteOnClose);
  minima_->show();
}

void ErrorCommands::CheckMinima(const MinimumRequest& request) {
  if (!MayAnalyse()) return;
  const QPointer<MinimaWindow> window = minima_;
  checking_ = true;
  window->SetRunning(true);
  const MinimumOutcome outcome = fits_.RunMinimumCheck(request);
  checking_ = false;
  if (!window) return;
  window->SetRunning(false);
  window->ShowOutcome(windows_.session.Module.LastFit, request, outcome);
}

void ErrorCommands::CloseForFit() {
  if (confidence_ && confidence_->isVisible()) confidence_->close();
  if (minima_ && !checking_) minima_->close();
}

void ErrorCommands::ShowCoefficients() {
  if (!MayAnalyse()) return;
  const QuorvaneModule& module = windows_.session.Module;
  try {
    coefficients_.ShowFit(module.LastFit, module.Preferences.CriticalCCCValue);
  } catch (const ArithmeticFault& fault) {
    windows_.host.ShowMessage(coefficients_.windowTitle().toStdString(), fault.what(),
                              MessageIcon::kExclamation);
    return;
  }
  coefficients_.show();
  auto* child = qobject_cast<QMdiSubWindow*>(coefficients_.parentWidget());
  if (child == nullptr) return;
  if (child->isMinimized()) child->showNormal();
  child->show();
  child->mdiArea()->setActiveSubWindow(child);
}

void ErrorCommands::LogCoefficients() {
  if (const FinishedFit* fit = coefficients_.Fit()) LogCrossCorrelation(fit->state, windows_.host);
}

void ErrorCommands::ShowQuality() {
  ShowChild(quality_);
}

void ErrorCommands::ShowErrorAnalysis() {
  ShowChild(analysis_);
}

void ErrorCommands::Analyse(const ErrorRequest& request) {
  if (!MayAnalyse()) return;
  analysis_.SetRunning(true);
  const ErrorAnalysis found = fits_.RunErrorAnalysis(request);
  analysis_.SetRunning(false);
  analysis_.ShowErrors(found);
}

void ErrorCommands::FollowFit() {
  analysis_.TakeFit();
  quality_.ShowFit(windows_.session.Module);
}

void ErrorCommands::RefreshQuality() {
  if (quality_.HasFit()) quality_.ShowFit(windows_.session.Module);
}

}  // namespace quorvane
