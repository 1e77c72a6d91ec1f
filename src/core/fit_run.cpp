#include "core/fit_run.h"

#include <algorithm>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/text.h"
#include "core/graph_store.h"
#include "core/page/fit_checks.h"
#include "fit/assembly.h"
#include "fit/fit_log.h"
#include "fit/levmarq.h"
#include "fit/mass_conservation.h"
#include "fit/model_pass.h"
#include "fit/models.h"
#include "stats/quantiles.h"

namespace quorvane {

namespace {

const std::string kShortRule(39, '=');

FitOutcome Refusal(std::string title, std::string text) {
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
void LogRatios(QuorvaneModule& module, const FitStatistics& statistics, Host& host) {
  const double level = module.ConfidenceLevels[1];
  const double p = level / 100.0;
  const double f = FSTAT(statistics.fitted, statistics.freedom, p, host);
  CheckArithmetic([&] {
    module.CIRatios.VarianceRatio =
        static_cast<double>(statistics.fitted) / statistics.freedom * f + 1.0;
  });
  module.CIRatios.FRatio = FSTAT(statistics.freedom, statistics.freedom, p, host);
  host.PrintIt("\r\nVariance Ratio at the " + FormatNumber(level, "##.0#") + "% confidence level:");
  host.PrintIt("F(NDF,NDF,1-P) = " + FormatParam(module.CIRatios.FRatio) + "\r\n");
}

void SendGraphs(QuorvaneModule& module, Host& host) {
  if (!module.SaveGraphs && !module.LogGraphs) return;
  for (int set = 0; set < module.Fit.NumFitSets; ++set) {
    SendGraphToLog(module, PlotDataFit(module.Fit, module.Store.Datasets, set, module.Plots), host);
    host.RunPendingEvents();  // a hundred pictures take a second
  }
}

// What follows a finished minimisation: the values go back, the report into the log.
void Report(QuorvaneModule& module, int iterations, const Stopwatch& watch, Host& host) {
  FitState& fit = module.Fit;
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
  LogFitCounts(source, iterations, host);
  LogRatios(module, statistics, host);
  SendGraphs(module, host);
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

void RememberFit(QuorvaneModule& module, int iterations) {
  FitRecord& record = module.LastFit;
  record = {.finished = true,
            .iterations = iterations,
            .datasets = module.Store.Datasets,
            .page = module.FitPage,
            .constantsSet = module.ConstantsSet,
            .cells = {},
            .intervals = {}};
  for (const std::int16_t channel : module.Setup.SetCellChannel) {
    const auto place = static_cast<std::size_t>(channel);
    const bool known = place < module.CellGeometries.size();
    record.cells.emplace_back(known ? Trim(module.CellGeometries[place].name) : "");
  }
}

// Assembly, minimisation and report; errors go up to the handler.
FitOutcome FitAndReport(QuorvaneModule& module, Host& host) {
  FitState& fit = module.Fit;
  const Stopwatch watch;
  fit.CurrentProc = "cmdFit_Me";
  host.RunPendingEvents();
  host.RunPendingEvents();
  const Stopwatch assembly;
  SetupDataArrays(fit, module.Setup, module.Store.Datasets, module.CellGeometries,
                  module.MCTolerance, host);
  fit.CurrentProc = "cmdFit_Me";
  bool anyFitted = false;
  SetupParameterArray(fit, module.Setup, module.FitPage, module.Store.Datasets, anyFitted);
  fit.CurrentProc = "cmdFit_Me";
  const double assemblySeconds = assembly.Seconds();
  if (!anyFitted) {
    host.ShowMessage("Parameter Choice Error", "No Parameters Chosen for Fitting!",
                     MessageIcon::kNone);
    return Refusal("Parameter Choice Error", "No Parameters Chosen for Fitting!");
  }
  host.SetStatus("Click anywhere in log window to halt fitting.");
  fit.FitKeepGoing = true;
  LogFitHead(module, host);
  host.RunPendingEvents();
  host.RunPendingEvents();
  FitOutcome outcome;
  const Stopwatch minimisation;
  FitData(fit, host, outcome.iterations);
  outcome.seconds = assemblySeconds + minimisation.Seconds();
  if (outcome.iterations == 0) {
    LogStop(host);
    fit.FitKeepGoing = false;
    host.SetStatus(" ");
    outcome.ending = FitEnding::kStopped;
    return outcome;
  }
  fit.FitKeepGoing = false;
  host.SetStatus(" ");
  Report(module, outcome.iterations, watch, host);
  RememberFit(module, outcome.iterations);
  outcome.ending = FitEnding::kFinished;
  return outcome;
}

}  // namespace

FitOutcome RunFit(QuorvaneModule& module, Host& host) {
  module.LastFit = {};
  if (const auto refusal = CheckCellEnds(module, 0, module.Setup.NumFitSets, host)) {
    return Refusal(refusal->title, refusal->text);
  }
  std::string description;
  try {
    return FitAndReport(module, host);
  } catch (const ArithmeticFault& fault) {
    description = fault.what();
  } catch (const SubscriptFault& fault) {
    description = fault.what();
  }
  ReportFailure(module.Fit, description, host);
  return {.ending = FitEnding::kFailed, .error = description, .where = module.Fit.CurrentProc};
}

ConfidenceOutcome SearchIntervals(QuorvaneModule& module, const ConfidenceRequest& request,
                                  Host& host) {
  ConfidenceOutcome outcome = CalcConfidence(module.Fit, request, host);
  if (module.LastFit.finished && !outcome.intervals.empty()) {
    module.LastFit.intervals = {request, outcome};
  }
  return outcome;
}

void TakeAsStart(QuorvaneModule& module, const Array1<double>& values) {
  FitState other = module.Fit;
  other.FitA = values;
  UpdateParameters(other, module.FitPage, module.Store.Datasets);
}

}  // namespace quorvane
