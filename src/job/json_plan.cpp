#include "job/json_plan.h"

namespace quorvane {

namespace {

Json ListOf(const std::vector<std::optional<double>>& values) {
  Json list = Json::array();
  for (const std::optional<double>& value : values) list.push_back(OrNull(value));
  return list;
}

Json ScansJson(const ExperimentPlan& plan, const PlanResult& result) {
  Json list = Json::array();
  for (const PlannedScan& scan : result.scans) {
    Json entry = {{"speed", scan.speed}, {"load", scan.load}};
    if (scan.loadB) entry["load_b"] = *scan.loadB;
    if (plan.extCoeff.size() > 1) entry["wavelength"] = scan.wavelength + 1;
    entry["lowest"] = scan.points > 0 ? Json(scan.lowest) : Json(nullptr);
    entry["highest"] = scan.points > 0 ? Json(scan.highest) : Json(nullptr);
    entry["points"] = scan.points;
    list.push_back(std::move(entry));
  }
  return list;
}

Json ParametersJson(const PlanResult& result) {
  Json list = Json::array();
  for (const ExpectedError& error : result.errors) {
    list.push_back({{"name", error.parameter->shared->name},
                    {"value", error.value},
                    {"sd", OrNull(error.sd)},
                    {"relative", OrNull(error.relative)}});
  }
  return list;
}

Json CheckJson(const PlanCheck& check) {
  Json ratio = Json::array();
  Json bias = Json::array();
  for (const CheckedError& error : check.parameters) {
    ratio.push_back(OrNull(error.ratio));
    bias.push_back(OrNull(error.bias));
  }
  return {{"experiments", check.experiments},
          {"failed", check.failed},
          {"ratio", std::move(ratio)},
          {"bias", std::move(bias)}};
}

Json RankingJson(const PlanResult& result) {
  Json list = Json::array();
  for (const SpeedChoice& choice : result.ranking) {
    list.push_back(
        {{"speeds", choice.speeds}, {"sd", ListOf(choice.sd)}, {"score", OrNull(choice.score)}});
  }
  return list;
}

}  // namespace

Json PlanJson(const ExperimentPlan& plan, const PlanResult& result,
              const std::optional<PlanCheck>& check) {
  Json correlations = Json::array();
  for (const auto& row : result.correlations) correlations.push_back(ListOf(row));
  Json json = {{"speeds", result.speeds},
               {"scans", ScansJson(plan, result)},
               {"parameters", ParametersJson(result)},
               {"correlations", std::move(correlations)}};
  json["checked"] = check ? CheckJson(*check) : Json(nullptr);
  json["ranking"] = RankingJson(result);
  json["choices"] = result.choices;
  json["remarks"] = result.remarks;
  return json;
}

}  // namespace quorvane
