#include "windows/fit_commands.h"

#include <QTextEdit>

#include "core/fit_run.h"
#include "stats/confidence.h"
#include "windows/busy_pointer.h"
#include "windows/data_window.h"
#include "windows/fit_control_tab.h"
#include "windows/graphs_window.h"
#include "windows/log_window.h"
#include "windows/result_panel.h"
#include "windows/session.h"
#include "windows/window_host.h"

FitCommands::FitCommands(WindowSet windows, QObject* parent) : QObject(parent), windows_(windows) {}

template <class Work>
void FitCommands::Calculate(Work&& work) {
  Session& session = windows_.session;
  session.Calculating = true;
  session.StopRequested = false;
  emit CalculatingChanged(true);
  {
    const BusyPointer busy;
    work();
  }
  session.Calculating = false;
  emit CalculatingChanged(false);
}

void FitCommands::RunFit() {
  QuorvaneModule& module = windows_.session.Module;
  if (windows_.session.Calculating || !windows_.data.CommitPending()) return;
  FitState last = module.Fit;
  FitRecord record = std::move(module.LastFit);
  FitOutcome outcome;
  Calculate([&] { outcome = ::RunFit(module, windows_.host); });
  // The values stay those of the last fit, and so does what its error analysis works on.
  if (outcome.ending == FitEnding::kStopped || outcome.ending == FitEnding::kRefused) {
    module.Fit = std::move(last);
    module.LastFit = std::move(record);
  }
  ShowOutcome(outcome);
  emit CalculationEnded();
}

void FitCommands::ShowOutcome(const FitOutcome& outcome) {
  // A fault in the report comes after the values were taken over.
  windows_.data.FitControl().ShowValues();
  if (outcome.ending == FitEnding::kFailed) windows_.data.FitControl().SetFitDone(false);
  if (outcome.ending != FitEnding::kFinished) return;
  windows_.data.FitControl().SetFitDone(true);
  windows_.data.Results().ShowFit();
  emit FitFinished();
  windows_.graphs.Refresh();
  windows_.log.MoveToEnd();
}

void FitCommands::RunConfidence(const ConfidenceRequest& request) {
  if (windows_.session.Calculating) return;
  Calculate([&] {
    windows_.frame.activateWindow();
    windows_.log.Editor()->setFocus();
    SearchIntervals(windows_.session.Module, request, windows_.host);
  });
  emit CalculationEnded();
}

void FitCommands::Stop() {
  windows_.session.StopRequested = true;
  windows_.session.Module.Fit.FitKeepGoing = false;
}
