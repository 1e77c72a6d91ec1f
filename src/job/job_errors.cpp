#include "job/job_errors.h"

#include "core/page/confidence_level.h"
#include "fit/fit_state.h"
#include "job/require.h"

namespace quorvane {

namespace {

void ReadParameters(TableReader& table, JobErrors& errors) {
  constexpr const char* kKey = "parameters";
  if (table.IsText(kKey)) {
    errors.all = table.Text(kKey) == "all";
    if (!errors.all) table.Fail(kKey, "\"all\" or a list of names is wanted");
    return;
  }
  errors.parameters = table.Texts(kKey);
  if (errors.parameters && errors.parameters->empty()) {
    table.Fail(kKey, "at least one parameter is wanted");
  }
}

void ReadLevels(TableReader& table, ErrorRequest& request) {
  constexpr double kAll = 100.0;
  const std::optional<std::vector<double>> levels = table.Numbers("levels");
  if (!levels) return;
  if (levels->empty()) table.Fail("levels", "at least one level is wanted");
  for (const double level : *levels) {
    if (!(level > 0.0 && level < kAll)) {
      table.Fail("levels", "each must be above 0 and below 100 percent");
    }
  }
  request.levels = *levels;
}

void ReadMethods(TableReader& table, ErrorRequest& request) {
  const std::optional<std::vector<std::string>> methods = table.Texts("methods");
  if (!methods) return;
  request.profile = false;
  for (const std::string& method : *methods) {
    if (method == "profile") {
      request.profile = true;
    } else if (method == "monte carlo") {
      request.monteCarlo = true;
    } else if (method == "bootstrap") {
      request.bootstrap = true;
    } else {
      table.Fail("methods", "\"profile\", \"monte carlo\" or \"bootstrap\" is wanted");
    }
  }
}

// An integer of the table inside its bounds, or what `value` was.
template <class Integer>
void ReadInteger(TableReader& table, const char* key, std::pair<int, int> bounds, Integer& value) {
  const std::optional<int> number = table.Integer(key);
  if (!number) return;
  if (*number < bounds.first || *number > bounds.second) {
    table.Fail(
        key, std::to_string(bounds.first) + " to " + std::to_string(bounds.second) + " is wanted");
  }
  value = static_cast<Integer>(*number);
}

void ReadSurfaces(TableReader& table, JobErrors& errors) {
  constexpr const char* kKey = "surfaces";
  for (const std::vector<std::string>& axes : table.TextLists(kKey)) {
    if (axes.size() != 2 || axes[0] == axes[1]) {
      table.Fail(kKey, "pairs of two different parameters are wanted");
    }
    errors.surfaces.emplace_back(axes[0], axes[1]);
  }
}

// Place among the model's shared parameters (from 0) of a fitted one.
std::size_t FittedPlace(const JobErrors& errors, const char* key, const std::string& name,
                        const FitSetup& setup) {
  std::size_t place = 0;
  Require(errors.table, key, FindFitted(setup, name, place));
  return place;
}

}  // namespace

std::optional<JobErrors> ReadErrors(TableReader& root) {
  constexpr int kMostReplicates = 1'000'000;
  constexpr int kMostSeed = 2'147'483'647;
  constexpr int kMostPoints = 501;
  std::optional<TableReader> table = root.Table("errors");
  if (!table) return std::nullopt;
  JobErrors errors(*table);
  ReadParameters(*table, errors);
  ReadLevels(*table, errors.request);
  ReadMethods(*table, errors.request);
  ReadInteger(*table, "replicates", {2, kMostReplicates}, errors.request.replicates);
  ReadInteger(*table, "seed", {0, kMostSeed}, errors.request.seed);
  ReadSurfaces(*table, errors);
  ReadInteger(*table, "surface_points", {2, kMostPoints}, errors.request.surfacePoints);
  table->RefuseUnknownKeys();
  return errors;
}

void CheckNames(const JobErrors& errors, const FitSetup& setup) {
  if (errors.parameters) {
    for (const std::string& name : *errors.parameters) {
      FittedPlace(errors, "parameters", name, setup);
    }
  }
  for (const auto& [x, y] : errors.surfaces) {
    FittedPlace(errors, "surfaces", x, setup);
    FittedPlace(errors, "surfaces", y, setup);
  }
}

ErrorRequest RequestOf(const JobErrors& errors, const FitSetup& setup, const FitState& fit) {
  const auto place = [&](const char* key, const std::string& name) {
    return fit.SharedBase() + 1 + static_cast<int>(FittedPlace(errors, key, name, setup));
  };
  ErrorRequest request = errors.request;
  request.parameters = errors.all ? AllFitted(fit) : FittedShared(fit);
  if (errors.parameters) {
    request.parameters.clear();
    for (const std::string& name : *errors.parameters) {
      request.parameters.push_back(place("parameters", name));
    }
  }
  for (const auto& [x, y] : errors.surfaces) {
    request.surfaces.emplace_back(place("surfaces", x), place("surfaces", y));
  }
  return request;
}

}  // namespace quorvane
