#include "windows/fit_commands.h"

#include "core/fit_run.h"
#include "windows/busy_pointer.h"
#include "windows/data_window.h"
#include "windows/fit_control_tab.h"
#include "windows/graphs_window.h"
#include "windows/log_window.h"
#include "windows/result_panel.h"
#include "windows/session.h"
#include "windows/window_host.h"

FitCommands::FitCommands(WindowSet windows, QObject* parent) : QObject(parent), windows_(windows) {}

void FitCommands::RunFit() {
  Session& session = windows_.session;
  if (session.Calculating || !windows_.data.CommitPending()) return;
  session.Calculating = true;
  session.StopRequested = false;
  emit CalculatingChanged(true);
  FitOutcome outcome;
  {
    const BusyPointer busy;
    outcome = ::RunFit(session.Module, windows_.host);
  }
  session.Calculating = false;
  emit CalculatingChanged(false);
  // A fault in the report comes after the values were taken over.
  windows_.data.FitControl().ShowValues();
  if (outcome.ending == FitEnding::kFinished) {
    windows_.data.FitControl().SetFitDone(true);
    windows_.data.Results().ShowFit();
    windows_.graphs.Refresh();
    windows_.log.MoveToEnd();
  }
  emit FitEnded();
}

void FitCommands::Stop() {
  windows_.session.StopRequested = true;
  windows_.session.Module.Fit.FitKeepGoing = false;
}
