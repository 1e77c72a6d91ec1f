#include "job/json_records.h"

#include <cmath>

#include "base/arithmetic.h"
#include "fit/fit_statistics.h"
#include "fit/levmarq.h"
#include "fit/mass_conservation.h"
#include "fit/models.h"
#include "stats/correlation.h"
#include "stats/fit_quality.h"
#include "stats/fit_summary.h"

namespace quorvane {

namespace {

Json DatasetJson(const Dataset& dataset, int number) {
  const auto count = static_cast<std::ptrdiff_t>(dataset.NumPoints);
  const auto list = [count](const auto& values) {
    return Json(std::vector<double>(values.begin(), values.begin() + count));
  };
  Json good = Json::array();
  for (std::ptrdiff_t k = 0; k < count; ++k) good.push_back(*(dataset.Good.begin() + k) != kFalse);
  return {{"number", number},
          {"name", NameOf(dataset)},
          {"path", PathOf(dataset)},
          {"comment1", Comment1Of(dataset)},
          {"comment2", Comment2Of(dataset)},
          {"points", dataset.NumPoints},
          {"good_points", CountGoodPoints(dataset)},
          {"speed", dataset.Speed},
          {"wavelength", dataset.Wavelength},
          {"temperature", static_cast<double>(dataset.Temperature)},
          {"ref_radius", dataset.RefRadius},
          {"ref_conc", dataset.RefConc},
          {"ref_conc_b", dataset.RefConc2},
          {"baseline", dataset.Offset},
          {"ext_coeff", dataset.ExtCoeff},
          {"ext_coeff_b", dataset.ExtCoeff2},
          {"meniscus", dataset.Rmen},
          {"base", dataset.Rbase},
          {"load_a", dataset.ALoad},
          {"load_b", dataset.BLoad},
          {"edited", dataset.Edited != 0.0},
          {"blank", IsBlank(dataset)},
          {"blanked", IsBlanked(dataset)},
          {"r", list(dataset.R)},
          {"c", list(dataset.C)},
          {"err", list(dataset.Err)},
          {"good", good}};
}

// Number of the dataset at position d (from 1) of the fit, from 1.
int DatasetNumber(const FitState& fit, int d) {
  return fit.FitSetList[static_cast<std::size_t>(d - 1)] + 1;
}

Json ParametersJson(const FitState& fit, const FitStatistics* statistics) {
  Json parameters = Json::array();
  for (int k = 1; k <= fit.FitMA; ++k) {
    Json parameter = {{"name", ParameterName(fit, k)}, {"value", fit.FitA(k)}};
    if (statistics != nullptr) parameter["sd"] = StandardError(fit, *statistics, k);
    parameter["fitted"] = fit.FitIA(k) != 0;
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

Json MatrixJson(const Matrix1<double>& matrix) {
  Json rows = Json::array();
  for (int j = 1; j <= matrix.rows(); ++j) {
    rows.push_back(std::vector<double>(matrix.Row(j), matrix.Row(j) + matrix.cols()));
  }
  return rows;
}

Json CurvesJson(const FitState& fit) {
  Json curves = Json::array();
  int d = 0;
  for (const FittedCurve& curve : FittedCurves(fit)) {
    curves.push_back({{"dataset", DatasetNumber(fit, ++d)},
                      {"r", curve.r},
                      {"y", curve.y},
                      {"y_calc", curve.calculated}});
  }
  return curves;
}

// What `compare` needs beyond counts, parameters and curves.
void AddCriteria(const FitState& fit, Json& json) {
  const FitSummary summary = Summarise(fit, std::nullopt);
  json["aicc"] = OrNull(summary.AICc());
  json["bic"] = OrNull(summary.BIC());
  json["points_digest"] = summary.digest;
  if (summary.constrainedRatios) json["constrain_k_ratios"] = true;
  Json links = Json::array();
  bool linked = false;
  for (const int target : summary.links) {
    linked = linked || target != static_cast<int>(links.size());
    links.push_back(target + 1);
  }
  if (linked) json["links"] = std::move(links);
}

void AddConcentrations(const FitState& fit, Json& json) {
  if (fit.TwoComponentModel && fit.UseMassConservation) {
    Json& list = json["mass_conservation"] = Json::array();
    for (int d = 1; d <= fit.NumFitSets; ++d) {
      list.push_back({{"dataset", DatasetNumber(fit, d)},
                      {"input_a", fit.SetALoad(d)},
                      {"calc_a", CalculatedLoad(fit, d, 1)},
                      {"input_b", fit.SetBLoad(d)},
                      {"calc_b", CalculatedLoad(fit, d, 2)}});
    }
  }
  if (!fit.TwoComponentModel && fit.CalcLoadingConcs) {
    Json& list = json["loading_concs"] = Json::array();
    for (int d = 1; d <= fit.NumFitSets; ++d) {
      list.push_back({{"dataset", DatasetNumber(fit, d)}, {"calc_a", fit.SetCalcLoad(d)}});
    }
  }
}

Json SetQualityJson(const SetQuality& set, const std::vector<Dataset>& datasets) {
  Json json = {{"dataset", set.dataset},
               {"name", NameOf(datasets[static_cast<std::size_t>(set.dataset - 1)])},
               {"points", set.points},
               {"rms", set.rms},
               {"share", set.share},
               {"positive", set.runs.positive},
               {"negative", set.runs.negative},
               {"runs", set.runs.runs},
               {"expected_runs", set.runs.expected}};
  if (set.runs.z) json["runs_z"] = *set.runs.z;
  if (set.durbinWatson) json["durbin_watson"] = *set.durbinWatson;
  return json;
}

}  // namespace

Json DocumentHead() {
  return {{"program", "Quorvane"}, {"version", ProgramVersion()}};
}

Json ValuesJson(const FitState& fit, const Array1<double>& values) {
  Json list = Json::array();
  for (int k = 1; k <= fit.FitMA; ++k) {
    list.push_back({{"name", ParameterName(fit, k)}, {"value", values(k)}});
  }
  return list;
}

Json ConstantsJson(const QuorvaneModule& module) {
  return {{"vbar", module.FitPage.Vbar},
          {"vbar_b", module.FitPage.VbarB},
          {"density", module.FitPage.Density},
          {"mc_tolerance", module.Preferences.MCTolerance},
          {"temperature", module.Setup.DegC}};
}

Json DatasetsJson(const std::vector<Dataset>& datasets) {
  Json list = Json::array();
  int number = 0;
  for (const Dataset& dataset : datasets) list.push_back(DatasetJson(dataset, ++number));
  return list;
}

Json RestJson(const RestVerdict& rest) {
  Json json = {{"at_rest", nullptr},
               {"sum", rest.sum},
               {"sum_fall", rest.sumFall},
               {"largest_move", rest.largestMove},
               {"moved", rest.moved}};
  if (rest.atRest) json["at_rest"] = *rest.atRest;
  return json;
}

Json FitJson(const FitOutcome& outcome, const FinishedFit* last) {
  const bool ended =
      outcome.ending == FitEnding::kFinished || outcome.ending == FitEnding::kStopped;
  if (!ended) {
    return {{"error", outcome.error}, {"where", outcome.where}};
  }
  const FitState& fit = *outcome.state;
  const bool stopped = outcome.ending == FitEnding::kStopped;
  const FitStatistics statistics = CalcFitStatistics(fit);
  Json json = {{"model", fit.FitModel->name},
               {"model_index", fit.FitModel->index},
               {"stopped", stopped},
               {"iterations", outcome.iterations},
               {"points", fit.FitNumPoints},
               {"fitted_parameters", statistics.fitted},
               {"degrees_of_freedom", statistics.freedom},
               {"chi_squared", fit.FitChiSq},
               {"best_sum", AcceptedSum(fit)},
               {"variance", statistics.variance},
               {"rms", std::sqrt(statistics.variance)}};
  if (!stopped) {
    json["f_ratio"] = last->ratios.FRatio;
    json["variance_ratio"] = last->ratios.VarianceRatio;
  }
  json["seconds"] = outcome.seconds;
  json["parameters"] = ParametersJson(fit, stopped ? nullptr : &statistics);
  if (stopped) return json;
  if (last->rest) json["rest"] = RestJson(*last->rest);
  AddCriteria(fit, json);
  json["covariance"] = MatrixJson(fit.FitCovar);
  json["curves"] = CurvesJson(fit);
  AddConcentrations(fit, json);
  return json;
}

Json QualityJson(const FinishedFit& last, double critical) {
  const FitQuality quality = CalcFitQuality(last.state, last.page, last.constantsSet, critical);
  Json sets = Json::array();
  for (const SetQuality& set : quality.sets) sets.push_back(SetQualityJson(set, last.datasets));
  Json pairs = Json::array();
  for (const StrongCorrelation& pair : quality.correlations) {
    pairs.push_back(
        {{"first", pair.first}, {"second", pair.second}, {"coefficient", pair.coefficient}});
  }
  Json implausible = Json::array();
  for (const ImplausibleValue& value : quality.implausible) {
    implausible.push_back({{"name", value.name}, {"value", value.value}, {"reason", value.reason}});
  }
  return {{"datasets", sets},
          {"critical", critical},
          {"strong_correlations", pairs},
          {"implausible", implausible},
          {"at_default", quality.atDefault},
          {"remarks", QualityRemarks(quality, last.rest)}};
}

Json ConfidenceJson(const FitState& fit, const ConfidenceRequest& request,
                    const ConfidenceOutcome& outcome) {
  Json intervals = Json::array();
  for (const ConfidenceInterval& interval : outcome.intervals) {
    intervals.push_back({{"name", interval.name},
                         {"value", interval.value},
                         {"lower", interval.lower},
                         {"upper", interval.upper}});
  }
  Json json = {{"percent", request.percent}, {"method", static_cast<int>(request.method)},
               {"ratio", outcome.ratio},     {"stopped", outcome.stopped},
               {"seconds", outcome.seconds}, {"intervals", intervals}};
  if (outcome.better) {
    json["better_minimum"] = {{"chi_squared", outcome.better->sum},
                              {"parameters", ValuesJson(fit, outcome.better->parameters)}};
  }
  return json;
}

Json MinimaJson(const FitState& fit, const MinimumRequest& request, const MinimumOutcome& outcome) {
  Json list = Json::array();
  for (const FoundMinimum& minimum : outcome.minima) {
    list.push_back({{"chi_squared", minimum.sum},
                    {"rms", minimum.rms},
                    {"starts", minimum.starts},
                    {"current", minimum.current},
                    {"parameters", ValuesJson(fit, minimum.parameters)}});
  }
  return {{"starts", request.starts},   {"seed", request.seed},
          {"stopped", outcome.stopped}, {"ended", outcome.ended},
          {"failed", outcome.failed},   {"chi_squared", outcome.currentSum},
          {"seconds", outcome.seconds}, {"better", outcome.better.has_value()},
          {"found", std::move(list)}};
}

Json CrossCorrelationJson(const FitState& fit, double critical) {
  Json names = Json::array();
  for (int k = 1; k <= fit.FitMA; ++k) {
    names.push_back(ParameterName(fit, k));
  }
  return {{"critical", critical}, {"names", names}, {"matrix", MatrixJson(CrossCorrelation(fit))}};
}

}  // namespace quorvane
