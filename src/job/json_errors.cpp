#include "job/json_errors.h"

#include "job/json_records.h"
#include "stats/error_tables.h"

namespace quorvane {

namespace {

// One side of a level: `side` is "lower" or "upper".
void AddSide(const SideLimit& limit, const std::string& side, Json& json) {
  if (limit.HasLimit()) json[side] = limit.limit;
  json[side + "_end"] = SideEndText(limit.end);
  if (limit.end == SideEnd::kOpen) json[side + "_sum"] = limit.plateau;
}

void AddProfile(const ParameterProfile& profile, Json& json) {
  Json limits = Json::array();
  for (const ProfileLimits& level : profile.limits) {
    Json entry = {{"level", level.level}, {"ratio", level.ratio}};
    AddSide(level.lower, "lower", entry);
    AddSide(level.upper, "upper", entry);
    limits.push_back(std::move(entry));
  }
  json["profile"] = std::move(limits);
  Json curve = Json::array();
  for (const ProfilePoint& point : profile.curve) {
    curve.push_back(std::vector<double>{point.value, point.sum});
  }
  json["curve"] = std::move(curve);
}

Json ReplicatesJson(const ParameterReplicates& replicates) {
  Json limits = Json::array();
  for (const PercentileLimits& limit : replicates.limits) {
    limits.push_back({{"level", limit.level}, {"lower", limit.lower}, {"upper", limit.upper}});
  }
  Json json = {{"done", replicates.done}, {"failed", replicates.failed}};
  if (!replicates.limits.empty()) {
    json["mean"] = replicates.mean;
    json["sd"] = replicates.deviation;
  }
  json["limits"] = std::move(limits);
  return json;
}

Json ParameterJson(const ParameterErrors& errors) {
  Json json = {{"name", errors.name}, {"value", errors.value}, {"sd", errors.error}};
  if (errors.profile) AddProfile(*errors.profile, json);
  if (errors.monteCarlo) json["monte_carlo"] = ReplicatesJson(*errors.monteCarlo);
  if (errors.bootstrap) json["bootstrap"] = ReplicatesJson(*errors.bootstrap);
  return json;
}

Json DerivedJson(const DerivedQuantity& quantity) {
  Json limits = Json::array();
  for (const DerivedLimits& limit : quantity.limits) {
    Json entry = {{"level", limit.level}};
    if (limit.lower) entry["lower"] = *limit.lower;
    if (limit.upper) entry["upper"] = *limit.upper;
    limits.push_back(std::move(entry));
  }
  return {{"name", quantity.name},
          {"unit", quantity.unit},
          {"value", quantity.value},
          {"limits", std::move(limits)}};
}

Json SurfaceJson(const ErrorSurface& surface) {
  Json ratios = Json::array();
  for (const RatioLevel& ratio : surface.ratios) {
    ratios.push_back({{"level", ratio.level}, {"ratio", ratio.ratio}});
  }
  return {{"x", surface.xName}, {"y", surface.yName},   {"xs", surface.xs},
          {"ys", surface.ys},   {"sums", surface.sums}, {"ratios", std::move(ratios)}};
}

template <class Part>
Json List(const std::vector<Part>& parts, Json (*of)(const Part&)) {
  Json list = Json::array();
  for (const Part& part : parts) list.push_back(of(part));
  return list;
}

}  // namespace

Json ErrorsJson(const ErrorAnalysis& analysis, const FitState& fit) {
  if (!analysis.error.empty()) return {{"error", analysis.error}};
  Json json = {{"levels", analysis.request.levels},
               {"sum", analysis.sum},
               {"degrees_of_freedom", analysis.freedom},
               {"seconds", analysis.seconds},
               {"stopped", analysis.stopped},
               {"parameters", List(analysis.parameters, ParameterJson)},
               {"derived", List(analysis.derived, DerivedJson)},
               {"surfaces", List(analysis.surfaces, SurfaceJson)}};
  if (analysis.better) {
    json["better"] = {{"sum", analysis.better->sum},
                      {"parameters", ValuesJson(fit, analysis.better->parameters)}};
  }
  return json;
}

}  // namespace quorvane
