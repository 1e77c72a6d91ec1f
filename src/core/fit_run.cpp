#include "core/fit_run.h"

#include <algorithm>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/quiet_host.h"
#include "base/text.h"
#include "core/graph_store.h"
#include "core/page/fit_checks.h"
#include "fit/assembly.h"
#include "fit/fit_log.h"
#include "fit/levmarq.h"
#include "fit/mass_conservation.h"
#include "fit/model_pass.h"
#include "fit/models.h"
#include "fit/settled_fit.h"
#include "stats/quantiles.h"

namespace quorvane {

namespace {

const std::string kShortRule(39, '=');

FitOutcome RefusedFit(std::string title, std::string text) {
  return {.ending = FitEnding::kRefused, .error = std::move(text), .where = std::move(title)};
}

void LogFitHead(const QuorvaneModule& module, Host& host) {
  host.PrintIt(" ");
  host.PrintIt(kRule);
  host.PrintIt("Model :: " + std::string(module.Setup.FitModel->name) + "\r\n" + DateAndTimeText());
}

void LogStop(Host& host) {
  host.PrintIt("\r\n" + kShortRule);
  host.PrintIt("** User  Terminated Fitting Process  **");
  host.PrintIt(kShortRule + "\r\n");
}

// The variance ratios, which the confidence search uses as well.
CIRatios LogRatios(const QuorvaneModule& module, const FitStatistics& statistics, Host& host) {
  CIRatios ratios;
  const double level = module.ConfidenceLevels[1];
  const double p = level / 100.0;
  const double f = FSTAT(statistics.fitted, statistics.freedom, p, host);
  CheckArithmetic([&] {
    ratios.VarianceRatio = static_cast<double>(statistics.fitted) / statistics.freedom * f + 1.0;
  });
  ratios.FRatio = FSTAT(statistics.freedom, statistics.freedom, p, host);
  host.PrintIt("\r\nVariance Ratio at the " + FormatNumber(level, "##.0#") + "% confidence level:");
  host.PrintIt("F(NDF,NDF,1-P) = " + FormatParam(ratios.FRatio) + "\r\n");
  return ratios;
}

void SendGraphs(const FitState& fit, QuorvaneModule& module, Host& host) {
  if (!module.Preferences.SaveGraphs && !module.Preferences.LogGraphs) return;
  for (int set = 0; set < fit.NumFitSets; ++set) {
    SendGraphToLog(module, PlotDataFit(fit, module.Store.Datasets, set, module.Preferences.Plots),
                   host);
    host.RunPendingEvents();  // a hundred pictures take a second
  }
}

// What follows a finished minimisation: the values go back, the report into the log.
void Report(FinishedFit& run, QuorvaneModule& module, const Stopwatch& watch, Host& host) {
  FitState& fit = run.state;
  CalcModelValues(fit);
  UpdateParameters(fit, module.FitPage, module.Store.Datasets);
  const FitStatistics statistics = CalcFitStatistics(fit);
  const ReportSource source{fit,
                            statistics,
                            module.FitPage,
                            module.Store.Datasets,
                            module.CellGeometries,
                            module.Setup.SetCellChannel};
  LogDatasetTable(source, host);
  LogModelLines(source, host);
  if (!fit.TwoComponentModel && fit.CalcLoadingConcs) {
    CalcLoadConcs(fit, module.Store.Datasets);
    LogLoadingConcs(source, host);
  }
  LogFitCounts(source, run.iterations, host);
  run.ratios = LogRatios(module, statistics, host);
  SendGraphs(fit, module, host);
  host.PrintIt(" ");
  host.PrintIt(kRule);
  host.PrintIt(" ");
  host.PrintIt("Fitting Time: " + FormatNumber(watch.Seconds(), "###.#0 secs"));
  host.PrintIt(" ");
}

void ReportFailure(const FitState& fit, const std::string& description, Host& host) {
  host.ShowMessage("", FittingErrorText(fit, description), MessageIcon::kNone);
  host.SetStatus(" ");
  host.PrintIt("\r\nFitting Error in " + fit.CurrentProc + ".  \r\n" + description);
  host.PrintIt(" ");
  host.PrintIt(kRule);
}

// Session and page as they are now, with the values of the fit, beside the state.
void CompleteRecord(FinishedFit& run, const QuorvaneModule& module) {
  run.page = module.FitPage;
  run.constantsSet = module.ConstantsSet;
  run.datasets = module.Store.Datasets;
  for (const std::int16_t channel : run.setup.SetCellChannel) {
    const auto place = static_cast<std::size_t>(channel);
    const bool known = place < module.CellGeometries.size();
    run.cells.emplace_back(known ? Trim(module.CellGeometries[place].name) : "");
  }
}

// What a viewer may look at when the run is over: the stop flag belongs to the session.
std::shared_ptr<const FitState> StateOf(const std::shared_ptr<FinishedFit>& run) {
  run->state.Stop = nullptr;
  return {run, &run->state};
}

// Puts the last fit, of which more is known now, in its own place.
void ReplaceLastFit(QuorvaneModule& module, FinishedFit known) {
  const std::shared_ptr<const FinishedFit> before = module.LastFit;
  module.LastFit = std::make_shared<const FinishedFit>(std::move(known));
  module.Fits.Replace(before, module.LastFit);
}

// The arrays of the run. False, with a message, if no parameter is to be fitted.
bool Assemble(FitState& fit, const QuorvaneModule& module, Host& host) {
  SetupDataArrays(fit, FitSourceOf(module), host);
  fit.CurrentProc = "cmdFit_Me";
  bool anyFitted = false;
  SetupParameterArray(fit, module.Setup, module.FitPage, module.Store.Datasets, anyFitted);
  fit.CurrentProc = "cmdFit_Me";
  return anyFitted;
}

// Assembly, minimisation and report; errors go up to the handler.
FitOutcome FitAndReport(const std::shared_ptr<FinishedFit>& run, QuorvaneModule& module,
                        Host& host) {
  FitState& fit = run->state;
  const Stopwatch watch;
  fit.CurrentProc = "cmdFit_Me";
  host.RunPendingEvents();
  host.RunPendingEvents();
  const Stopwatch assembly;
  const bool anyFitted = Assemble(fit, module, host);
  const double assemblySeconds = assembly.Seconds();
  if (!anyFitted) {
    host.ShowMessage("Parameter Choice Error", "No Parameters Chosen for Fitting!",
                     MessageIcon::kNone);
    return RefusedFit("Parameter Choice Error", "No Parameters Chosen for Fitting!");
  }
  host.SetStatus("Click anywhere in log window to halt fitting.");
  LogFitHead(module, host);
  host.RunPendingEvents();
  host.RunPendingEvents();
  FitOutcome outcome;
  const Stopwatch minimisation;
  FitData(fit, host, outcome.iterations);
  outcome.seconds = assemblySeconds + minimisation.Seconds();
  if (outcome.iterations == 0) {
    LogStop(host);
    host.SetStatus(" ");
    outcome.ending = FitEnding::kStopped;
    outcome.state = StateOf(run);
    return outcome;
  }
  host.SetStatus(" ");
  run->iterations = outcome.iterations;
  Report(*run, module, watch, host);
  CompleteRecord(*run, module);
  outcome.ending = FitEnding::kFinished;
  outcome.state = StateOf(run);
  module.LastFit = run;
  module.Fits.Add(run);
  return outcome;
}

// What follows the checks of a run.
FitOutcome FitChecked(QuorvaneModule& module, Host& host) {
  const auto run = std::make_shared<FinishedFit>();
  run->setup = module.Setup;
  run->state.Stop = &module.Stop;
  std::string description;
  try {
    return FitAndReport(run, module, host);
  } catch (const ArithmeticFault& fault) {
    description = fault.what();
  } catch (const SubscriptFault& fault) {
    description = fault.what();
  }
  module.LastFit.reset();
  ReportFailure(run->state, description, host);
  return {.ending = FitEnding::kFailed, .error = description, .where = run->state.CurrentProc};
}

// Goes through to `host` but for the log and the boxes: the fit that follows says these itself.
class SearchHost : public QuietHost {
 public:
  explicit SearchHost(Host& host) : host_(host) {}
  void RunPendingEvents() override { host_.RunPendingEvents(); }
  void ReportProgress(const Progress& progress) override { host_.ReportProgress(progress); }

 private:
  Host& host_;
};

// The rest from the start values of page and datasets: `state` holds its values. Nothing in
// `module` changes.
FitOutcome SearchRest(const QuorvaneModule& module, Host& host) {
  const auto run = std::make_shared<FinishedFit>();
  run->setup = module.Setup;
  FitState& fit = run->state;
  fit.Stop = &module.Stop;
  const Stopwatch watch;
  FitOutcome outcome{.ending = FitEnding::kNoRest, .error = {}, .where = "Fit to Rest"};
  const auto faulted = [&](const char* what) {
    outcome.error = "The start values are no place to begin: " + std::string(what) + " in " +
                    fit.CurrentProc + ".";
  };
  host.SetStatus("Click anywhere in log window to halt fitting.");
  SearchHost quiet(host);
  try {
    RestEnd end;
    end.rest = FitRest::kSettled;  // with nothing to fit, which the fit refuses by itself
    if (Assemble(fit, module, quiet)) end = BringToRest(fit, quiet, kMostRestSteps);
    outcome.error = NoRestText(fit, end);
    if (end.rest == FitRest::kSettled) outcome.ending = FitEnding::kFinished;
    if (end.rest == FitRest::kStopped) outcome.ending = FitEnding::kStopped;
  } catch (const ArithmeticFault& fault) {
    faulted(fault.what());
  } catch (const SubscriptFault& fault) {
    faulted(fault.what());
  }
  host.SetStatus(" ");
  outcome.seconds = watch.Seconds();
  if (outcome.ending != FitEnding::kNoRest) outcome.state = StateOf(run);
  return outcome;
}

}  // namespace

FitOutcome FitToRest(QuorvaneModule& module, Host& host) {
  if (const auto refusal = CheckCellEnds(module, 0, module.Setup.NumFitSets, host)) {
    return RefusedFit(refusal->title, refusal->text);
  }
  FitOutcome search = SearchRest(module, host);
  if (search.ending != FitEnding::kFinished) return search;
  const struct FitPage page = module.FitPage;
  const std::vector<Dataset> datasets = module.Store.Datasets;
  FitState rest = *search.state;
  UpdateParameters(rest, module.FitPage, module.Store.Datasets);
  FitOutcome outcome = FitChecked(module, host);
  outcome.seconds += search.seconds;
  if (outcome.ending != FitEnding::kFinished) {
    module.FitPage = page;
    module.Store.Datasets = datasets;
  }
  return outcome;
}

bool ShareVerdict(QuorvaneModule& module, const FinishedFit& judged, RestVerdict verdict) {
  if (!module.LastFit) return false;
  const FitState& now = module.LastFit->state;
  const FitState& then = judged.state;
  const bool same = now.FitModel == then.FitModel && now.FitR == then.FitR &&
                    now.FitY == then.FitY && now.FitIA == then.FitIA && now.FitA == then.FitA;
  if (!same) return false;
  FinishedFit known = *module.LastFit;
  known.rest = std::move(verdict);
  ReplaceLastFit(module, std::move(known));
  return true;
}

FitOutcome RunFit(QuorvaneModule& module, Host& host) {
  if (const auto refusal = CheckCellEnds(module, 0, module.Setup.NumFitSets, host)) {
    return RefusedFit(refusal->title, refusal->text);
  }
  return FitChecked(module, host);
}

ConfidenceOutcome SearchIntervals(QuorvaneModule& module, const ConfidenceRequest& request,
                                  Host& host) {
  const std::shared_ptr<const FinishedFit> last = module.LastFit;  // a verdict may replace it
  ConfidenceOutcome outcome = CalcConfidence(last->state, request, module.Stop, host);
  if (!outcome.intervals.empty()) {
    FinishedFit known = *module.LastFit;
    known.intervals = {request, outcome};
    ReplaceLastFit(module, std::move(known));
  }
  return outcome;
}

ErrorAnalysis SearchErrors(QuorvaneModule& module, const ErrorRequest& request, Host& host) {
  const std::shared_ptr<const FinishedFit> last = module.LastFit;
  ErrorAnalysis analysis = AnalyseErrors(last->state, request, module.Stop, host);
  analysis.derived = DerivedQuantities(last->state, last->page, analysis);
  analysis.scaleRemark = ScaleRemark(last->state, analysis);
  if (!analysis.parameters.empty() || !analysis.surfaces.empty()) {
    FinishedFit known = *module.LastFit;
    known.errors = analysis;
    ReplaceLastFit(module, std::move(known));
  }
  return analysis;
}

void TakeAsStart(QuorvaneModule& module, const Array1<double>& values) {
  FitState other = module.LastFit->state;
  other.FitA = values;
  UpdateParameters(other, module.FitPage, module.Store.Datasets);
}

}  // namespace quorvane
