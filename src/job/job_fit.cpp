#include "job/job_fit.h"

#include <algorithm>

#include "core/page/shared_values.h"
#include "job/require.h"

namespace quorvane {

const Model& ReadModel(TableReader& table) {
  const std::optional<std::variant<int, std::string>> model = table.IntegerOrText("model");
  if (!model) table.Fail("model", "the name or the index of a model is wanted");
  const std::span<const Model> known = Models();
  const auto chosen = std::find_if(known.begin(), known.end(), [&](const Model& entry) {
    return std::holds_alternative<int>(*model) ? entry.index == std::get<int>(*model)
                                               : entry.name == std::get<std::string>(*model);
  });
  if (chosen != known.end()) return *chosen;
  std::string names;
  for (const std::string_view name : ModelNames()) names += "\n  " + std::string(name);
  table.Fail("model", "there is no such model; the models, by index from 0, are:" + names);
}

std::map<const SharedParameter*, JobParameter> ReadParameters(TableReader& fit) {
  std::map<const SharedParameter*, JobParameter> parameters;
  std::optional<TableReader> table = fit.Table("parameters");
  if (!table) return parameters;
  for (const SharedParameter& parameter : SharedParameters) {
    std::optional<TableReader> entry = table->Table(parameter.name);
    if (!entry) continue;
    parameters[&parameter] = {entry->Number("start"), entry->Flag("fit")};
    entry->RefuseUnknownKeys();
  }
  table->RefuseUnknownKeys();
  return parameters;
}

namespace {

// Rules between the switches of [fit].
void CheckFit(const JobFit& fit) {
  if (!fit.constrainKRatios.value_or(false)) return;
  Require(fit.table, "constrain_k_ratios", RefusalOfConstraint(*fit.model));
  for (const auto& [parameter, entry] : fit.parameters) {
    if (!MayBeRatio(*parameter)) continue;
    Refusal refusal;
    if (entry.fit.value_or(false)) refusal = RefusalOfFitting(*parameter, true);
    if (!refusal && entry.start) refusal = RefusalOfRatio(*parameter, *entry.start);
    if (refusal) {
      fit.table.Fail("parameters", std::string(parameter->name) + ": " + LineOf(refusal));
    }
  }
}

// "starts" and "seed" of [fit].
std::optional<MinimumRequest> ReadMinima(TableReader& table) {
  constexpr int kMostStarts = 10000;
  const std::optional<int> starts = table.Integer("starts");
  const std::optional<int> seed = table.Integer("seed");
  if (!starts && seed) table.Fail("seed", "it is that of the starts, which are missing");
  if (!starts) return std::nullopt;
  if (*starts < 1 || *starts > kMostStarts) table.Fail("starts", "1 to 10000 is wanted");
  MinimumRequest request{.starts = *starts};
  if (seed && *seed < 0) table.Fail("seed", "it must not be negative");
  if (seed) request.seed = static_cast<std::uint64_t>(*seed);
  return request;
}

void ReadRepeat(TableReader& table, JobFit& fit) {
  const auto repeat = table.IntegerOrText("repeat");
  if (!repeat) return;
  if (const int* times = std::get_if<int>(&*repeat)) {
    if (*times < 1) table.Fail("repeat", "it must be at least 1");
    fit.repeat = *times;
    return;
  }
  if (std::get<std::string>(*repeat) != "rest") {
    table.Fail("repeat", "a number of times or \"rest\" is wanted");
  }
  fit.toRest = true;
}

}  // namespace

std::optional<JobFit> ReadFit(TableReader& root) {
  std::optional<TableReader> table = root.Table("fit");
  if (!table) return std::nullopt;
  JobFit fit(*table);
  fit.model = &ReadModel(*table);
  fit.constrainKRatios = table->Flag("constrain_k_ratios");
  fit.useMassConservation = table->Flag("use_mass_conservation");
  fit.calcLoadingConcs = table->Flag("calc_loading_concs");
  fit.timeLimit = table->Number("time_limit");
  ReadRepeat(*table, fit);
  fit.minima = ReadMinima(*table);
  fit.parameters = ReadParameters(*table);
  table->RefuseUnknownKeys();
  if (fit.timeLimit && !(*fit.timeLimit > 0.0)) {
    table->Fail("time_limit", "the number of seconds must be greater than 0");
  }
  CheckFit(fit);
  return fit;
}

}  // namespace quorvane
