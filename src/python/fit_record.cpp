#include "python/fit_record.h"

#include "core/fit_run.h"
#include "job/job_run.h"
#include "job/job_steps.h"
#include "job/json_errors.h"
#include "job/json_records.h"

namespace quorvane {

namespace {

// Why the run has no result. Throws.
[[noreturn]] void Refuse(const FitOutcome& outcome, const PythonHost& host) {
  const std::string told = host.FailureText();
  if (outcome.ending == FitEnding::kRefused) throw JobFault(outcome.error);
  if (host.Late()) throw FitFault("The fit was stopped: its time limit is over.");
  if (outcome.ending == FitEnding::kStopped) throw FitFault("The fit was stopped.");
  throw FitFault(told.empty() ? outcome.error : told);
}

// What the caller's job must have.
template <class Part>
const Part& Wanted(const std::optional<Part>& part, const char* name) {
  if (!part) throw JobFault(std::string(name) + " is missing");
  return *part;
}

// The fit itself would only run into an empty table.
void RequireGeometries(const JobFit& fit, const QuorvaneModule& module) {
  const bool two = fit.model->secondComponent;
  if (!(two ? fit.useMassConservation : fit.calcLoadingConcs).value_or(false)) return;
  if (!module.CellGeometries.empty()) return;
  throw JobFault(std::string(two ? "use_mass_conservation" : "calc_loading_concs") +
                 " needs cell geometries: name their file as channels_file");
}

}  // namespace

FitRecord FitScans(const std::vector<Dataset>& scans, const Job& job,
                   const std::filesystem::path& programFolder, PythonHost& host,
                   QuorvaneModule& module) {
  const JobFit& wanted = Wanted(job.fit, "the table [fit]");
  module.Preferences.SaveGraphs = false;
  module.Preferences.LogGraphs = false;
  module.Store.Datasets = scans;
  for (const Dataset& scan : scans) module.Store.UseData.push_back(!IsBlank(scan));
  LoadGeometries(job, programFolder, module);
  ApplyConstants(job, module);
  RequireGeometries(wanted, module);
  const std::vector<ChosenDataset> datasets = ApplyDatasets(job, module, host);
  TakeTemperature(job, module);
  const FitOutcome outcome = RunJobFit(job, datasets, module, host, host.Limit());
  if (outcome.ending != FitEnding::kFinished) Refuse(outcome, host);
  return {module.LastFit, module.CellGeometries, host.Log(), host.Failures()};
}

void BeginAround(const FitRecord& record, QuorvaneModule& module) {
  const FinishedFit& fit = *record.fit;
  module.Store.Datasets = fit.datasets;
  module.Store.UseData.assign(fit.datasets.size(), false);
  for (const std::int16_t place : fit.setup.FitSetList) {
    module.Store.UseData[static_cast<std::size_t>(place)] = true;
  }
  module.CellGeometries = record.geometries;
  module.FitPage = fit.page;
  module.ConstantsSet = fit.constantsSet;
  module.Preferences.MCTolerance = fit.state.MCTolerance;
  module.Setup = fit.setup;
  module.ChosenModel = fit.setup.FitModel;
  module.LastFit = record.fit;
  module.Fits.Add(record.fit);
}

Json FindErrors(FitRecord& record, const Job& job, PythonHost& host, QuorvaneModule& module) {
  const FinishedFit& fit = *record.fit;
  const ErrorRequest request =
      RequestOf(Wanted(job.errors, "the table [errors]"), fit.setup, fit.state);
  module.LastFit = record.fit;
  const ErrorAnalysis found = SearchErrors(module, request, host);
  if (!found.error.empty()) throw FitFault(found.error);
  Json json = ErrorsJson(found, module.LastFit->state);
  json["remarks"] = Json::array();
  if (found.better) json["remarks"].push_back(BetterSumText(found));
  if (!found.scaleRemark.empty()) json["remarks"].push_back(found.scaleRemark);
  record.fit = module.LastFit;
  return json;
}

Json FindIntervals(FitRecord& record, const Job& job, PythonHost& host, QuorvaneModule& module) {
  Wanted(job.confidence, "the table [confidence]");
  const ConfidenceRequest request = ConfidenceOf(job, record.fit->setup);
  module.LastFit = record.fit;
  const ConfidenceOutcome found = SearchIntervals(module, request, host);
  if (!found.error.empty()) throw FitFault("The confidence search failed: " + found.error);
  const FitState& state = record.fit->state;
  Json json = ConfidenceJson(state, request, found);
  json["remarks"] = Json::array();
  if (found.better) json["remarks"].push_back(BetterFitText(state, *found.better));
  const std::string missing = MissingLimitsText(found);
  if (!missing.empty()) json["remarks"].push_back(missing);
  record.fit = module.LastFit;
  return json;
}

Json FindMinima(const FitRecord& record, const Job& job, PythonHost& host, QuorvaneModule& module) {
  const FitState& state = record.fit->state;
  const auto& request = Wanted(Wanted(job.fit, "the table [fit]").minima, "starts in [fit]");
  const MinimumOutcome outcome = CheckMinimum(state, request, module.Stop, host);
  Json json = MinimaJson(state, request, outcome);
  json["summary"] = MinimumSummary(outcome, request);
  return json;
}

}  // namespace quorvane
