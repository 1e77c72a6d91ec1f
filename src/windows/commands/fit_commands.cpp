#include "windows/commands/fit_commands.h"

#include <QTextEdit>

#include "base/arithmetic.h"
#include "core/fit_restore.h"
#include "core/fit_run.h"
#include "stats/confidence.h"
#include "stats/error_analysis.h"
#include "stats/minimum_check.h"
#include "windows/controls/busy_pointer.h"
#include "windows/data/data_window.h"
#include "windows/graphs/graphs_window.h"
#include "windows/log/log_window.h"
#include "windows/page/fit_control_tab.h"
#include "windows/page/result_panel.h"
#include "windows/session/session.h"
#include "windows/session/window_host.h"

namespace quorvane {

FitCommands::FitCommands(WindowSet windows, QObject* parent) : QObject(parent), windows_(windows) {}

template <class Work>
void FitCommands::Calculate(Work&& work) {
  Session& session = windows_.session;
  session.Calculating = true;
  session.Module.Stop.Lower();
  windows_.log.MoveToEnd();  // not into an older report that the user has clicked in
  emit CalculatingChanged(true);
  {
    const BusyPointer busy;
    work();
  }
  session.Calculating = false;
  emit CalculatingChanged(false);
}

FitOutcome FitCommands::Run(FitOutcome (*fit)(QuorvaneModule&, Host&)) {
  FitOutcome outcome;
  Calculate([&] { outcome = fit(windows_.session.Module, windows_.host); });
  ShowOutcome(outcome);
  emit CalculationEnded();
  return outcome;
}

void FitCommands::RunFit() {
  if (windows_.session.Module.Preferences.AlwaysFitToRest) {
    FitToRest();
  } else if (!windows_.session.Calculating && windows_.session.CommitPending()) {
    Run(&quorvane::RunFit);
  }
}

void FitCommands::FitToRest() {
  if (windows_.session.Calculating || !windows_.session.CommitPending()) return;
  const FitOutcome outcome = Run(&quorvane::FitToRest);
  if (outcome.ending == FitEnding::kStopped && !outcome.error.empty()) {
    windows_.session.Remark(QString::fromStdString(outcome.error));
  }
  if (outcome.ending != FitEnding::kNoRest) return;
  const std::string text =
      outcome.error + "\n\n" + tr("Fit from the present values all the same?").toStdString();
  if (windows_.host.AskYesNo(tr("Fit to Rest").toStdString(), text)) Run(&quorvane::RunFit);
}

void FitCommands::ShowOutcome(const FitOutcome& outcome) {
  // A fault in the report comes after the values were taken over.
  windows_.data.FitControl().ShowValues();
  if (outcome.ending == FitEnding::kFailed) {
    windows_.data.FitControl().SetFitDone(false);
    if (outcome.error == DescribeFault(FaultKind::kOverflow)) {
      windows_.session.Remark(
          tr("Overflow: the start values lie too far from the data. \"Preview Fit\" (F7) shows "
             "their curves, if they have any."));
    }
  }
  if (outcome.ending != FitEnding::kFinished) return;
  windows_.data.FitControl().SetFitDone(true);
  windows_.data.Results().ShowFit();
  emit FitFinished();
  windows_.graphs.Refresh();
  windows_.log.MoveToEnd();
}

void FitCommands::RunConfidence(const ConfidenceRequest& request) {
  if (windows_.session.Calculating) return;
  QuorvaneModule& module = windows_.session.Module;
  ConfidenceOutcome outcome;
  Calculate([&] {
    windows_.frame.activateWindow();
    windows_.log.Editor()->setFocus();
    outcome = SearchIntervals(module, request, windows_.host);
  });
  emit CalculationEnded();
  if (module.Stop.Raised()) return;
  const std::string title = tr("Confidence Intervals").toStdString();
  const std::string missing = MissingLimitsText(outcome);
  if (!missing.empty()) {
    windows_.host.ShowMessage(title, missing, MessageIcon::kInformation);
  }
  if (HasLimitOfZero(outcome)) {
    windows_.session.Remark(tr(
        "A limit of 0 was not found: \"Error Analysis...\" (Shift+F8) says how that side ends."));
  }
  if (!outcome.better) return;
  const std::string text = BetterFitText(module.LastFit->state, *outcome.better) + "\n\n" +
                           tr("Use its values as the start of a new fit?").toStdString();
  if (windows_.host.AskYesNo(title, text)) UseAsStart(outcome.better->parameters);
}

MinimumOutcome FitCommands::RunMinimumCheck(const MinimumRequest& request) {
  MinimumOutcome outcome;
  if (windows_.session.Calculating) return outcome;
  QuorvaneModule& module = windows_.session.Module;
  const std::shared_ptr<const FinishedFit> last = module.LastFit;  // a verdict may replace it
  Calculate([&] { outcome = CheckMinimum(last->state, request, module.Stop, windows_.host); });
  emit CalculationEnded();
  return outcome;
}

ErrorAnalysis FitCommands::RunErrorAnalysis(const ErrorRequest& request) {
  ErrorAnalysis found;
  if (windows_.session.Calculating) return found;
  Calculate([&] { found = SearchErrors(windows_.session.Module, request, windows_.host); });
  emit CalculationEnded();
  return found;
}

void FitCommands::UseAsStart(const Array1<double>& parameters) {
  if (!windows_.session.CommitPending()) return;
  try {
    TakeAsStart(windows_.session.Module, parameters);
  } catch (const ArithmeticFault& fault) {
    windows_.host.ShowMessage(tr("Use as Start").toStdString(), fault.what(),
                              MessageIcon::kExclamation);
    return;
  }
  windows_.data.FitControl().ShowValues();
  windows_.data.FitControl().SetFitDone(false);
}

void FitCommands::Restore(std::size_t place) {
  Session& session = windows_.session;
  if (session.Calculating || !session.CommitPending()) return;
  const HistoryEntry entry = session.Module.Fits.Entries()[place];
  windows_.data.ClosePage();
  if (const Refusal refusal = RestoreFit(session.Module, place)) {
    windows_.host.ShowMessage(tr("Restore").toStdString(), refusal.text, MessageIcon::kExclamation);
    return;
  }
  windows_.data.ShowChangedPage(true);
  const QString name = QString::fromStdString(entry.name);
  if (entry.packed == nullptr) {
    session.Remark(tr("The values of %1 stand on the page: \"Fit\" goes on from them.").arg(name));
    return;
  }
  windows_.data.FitControl().SetFitDone(true);
  windows_.data.Results().ShowFit();
  emit FitFinished();
  session.Remark(tr("%1 was restored.").arg(name));
}

void FitCommands::Stop() {
  windows_.session.Module.Stop.Raise();
}

}  // namespace quorvane
