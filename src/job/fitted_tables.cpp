#include "job/fitted_tables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <numeric>
#include <tuple>

#include "base/units.h"
#include "fit/assembly.h"
#include "fit/models.h"
#include "job/job_fit.h"
#include "job/toml_writer.h"

namespace quorvane {

namespace {

// What a table says of the conditions of its datasets: one number if it is the same for all.
struct ConditionKey {
  const char* name;
  double SetConditions::*field;
};
constexpr std::array<ConditionKey, 8> kConditionKeys = {
    {{"speeds", &SetConditions::speed},
     {"ref_radii", &SetConditions::refRadius},
     {"ext_coeffs", &SetConditions::extCoeff},
     {"ext_coeffs_b", &SetConditions::extCoeffB},
     {"menisci", &SetConditions::meniscus},
     {"bases", &SetConditions::base},
     {"loads_a", &SetConditions::loadA},
     {"loads_b", &SetConditions::loadB}}};

// The whole numbers of a fit.
constexpr double kMostPoints = 1e8;
constexpr double kLatestTime = 1e11;  // seconds since 1970
constexpr std::size_t kDigestLength = 64;

// ---- writing

using NumbersOfScans = std::map<std::tuple<std::string, std::string, int>, int>;

NumbersOfScans NumbersOf(const std::vector<Dataset>& datasets) {
  NumbersOfScans numbers;
  int number = 0;
  for (const ScanName& scan : ScanNames(datasets)) {
    numbers[{scan.path, scan.name, scan.copy}] = ++number;
  }
  return numbers;
}

void WriteConditions(const FitConditions& known, TomlWriter& out) {
  out.Numbers("constants", {known.vbar, known.density, known.tolerance});
  for (const ConditionKey& key : kConditionKeys) {
    std::vector<double> values;
    for (const SetConditions& set : known.sets) values.push_back(set.*key.field);
    const bool same =
        std::adjacent_find(values.begin(), values.end(), std::not_equal_to<>()) == values.end();
    if (same) values.resize(1);
    out.Numbers(key.name, values);
  }
}

void WriteFlags(const KeptFit& kept, TomlWriter& out) {
  const FitSummary& fit = kept.summary;
  if (fit.massConservation) out.Key("mass_conservation", true);
  if (fit.constrainedRatios) out.Key("constrain_k_ratios", true);
  if (kept.loadingConcs) out.Key("loading_concs", true);
  if (fit.atRest) out.Key("at_rest", *fit.atRest);
}

// Standard errors of the shared parameters, if all are known.
void WriteErrors(const FitSummary& fit, TomlWriter& out) {
  std::vector<double> errors;
  for (std::size_t k = 0; k < fit.model->parameters.size(); ++k) {
    const std::optional<double>& error = fit.Shared(static_cast<int>(k)).error;
    if (!error || !std::isfinite(*error)) return;
    errors.push_back(*error);
  }
  out.Numbers("errors", errors);
}

std::string TableOf(const HistoryEntry& entry, const NumbersOfScans& numbers) {
  const FitSummary& fit = entry.kept->summary;
  std::vector<double> datasets;
  std::vector<double> values;
  std::vector<double> links;
  std::string fitted;
  for (const ScanName& scan : entry.kept->scans) {
    const auto found = numbers.find({scan.path, scan.name, scan.copy});
    datasets.push_back(found == numbers.end() ? 0.0 : found->second);
  }
  for (const SummaryParameter& parameter : fit.parameters) {
    values.push_back(parameter.value);
    fitted += parameter.fitted ? '1' : '0';
  }
  for (const int target : fit.links) links.push_back(target + 1);
  TomlWriter out;
  out.Entry("fitted");
  out.Key("name", entry.name);
  out.Key("time", std::floor(std::chrono::duration<double>(entry.time.time_since_epoch()).count()));
  out.Key("model", std::string(fit.model->name));
  out.Numbers("datasets", datasets);
  out.Numbers("values", values);
  out.Key("fitted", fitted);
  WriteErrors(fit, out);
  std::vector<double> own(links.size());
  std::iota(own.begin(), own.end(), 1.0);
  if (links != own) out.Numbers("links", links);
  out.Key("temperature", entry.kept->degC);
  if (fit.conditions) WriteConditions(*fit.conditions, out);
  WriteFlags(*entry.kept, out);
  out.Key("points", fit.points);
  out.Key("sum", fit.sum);
  if (fit.runsZ) out.Key("runs_z", *fit.runsZ);
  out.Key("digest", fit.digest);
  return "\n" + out.Text();
}

// ---- reading

template <class Value>
Value Wanted(TableReader& table, const char* key, std::optional<Value> value) {
  if (!value) table.Fail(key, "the fit is not complete");
  return std::move(*value);
}

double NumberFrom(TableReader& table, const char* key, double low, double high) {
  const double number = Wanted(table, key, table.Number(key));
  if (!(number >= low && number <= high)) table.Fail(key, "the number is out of range");
  return number;
}

std::string TextOfLength(TableReader& table, const char* key, std::size_t shortest,
                         std::size_t longest) {
  std::string text = Wanted(table, key, table.Text(key));
  if (text.size() < shortest || text.size() > longest)
    table.Fail(key, "the text has a wrong length");
  return text;
}

// Whole numbers from `low` to `high`, one a dataset.
std::vector<int> PlacesFrom(TableReader& table, const char* key, int low, int high) {
  std::vector<int> places;
  for (const double number : Wanted(table, key, table.Numbers(key))) {
    const bool whole = number >= low && number <= high && number == std::floor(number);
    if (!whole) table.Fail(key, "numbers of datasets are wanted");
    places.push_back(static_cast<int>(number));
  }
  return places;
}

void ReadScans(TableReader& table, const std::vector<ScanName>& names, KeptFit& kept) {
  const std::vector<int> numbers = PlacesFrom(table, "datasets", 0, static_cast<int>(names.size()));
  if (numbers.empty() || numbers.size() > kMaxFitSets) {
    table.Fail("datasets", "the page has no datasets, or more than a fit can hold");
  }
  for (const int number : numbers) {
    kept.scans.push_back(number == 0 ? ScanName{} : names[static_cast<std::size_t>(number - 1)]);
  }
}

std::vector<std::string> ParameterNames(const Model& model, int sets) {
  std::vector<std::string> names;
  for (int block = 0; block < (model.secondComponent ? 3 : 2); ++block) {
    for (int d = 1; d <= sets; ++d) {
      names.push_back(SetParameterName(block, d, model.secondComponent));
    }
  }
  for (const ModelParameter& parameter : model.parameters) names.emplace_back(parameter.name);
  return names;
}

void ReadValues(TableReader& table, int sets, FitSummary& fit) {
  const std::vector<std::string> names = ParameterNames(*fit.model, sets);
  const std::vector<double> values = Wanted(table, "values", table.Numbers("values"));
  if (values.size() != names.size()) table.Fail("values", "one number a parameter is wanted");
  const std::string fitted = TextOfLength(table, "fitted", names.size(), names.size());
  for (std::size_t k = 0; k < names.size(); ++k) {
    fit.parameters.push_back({names[k], values[k], {}, fitted[k] == '1'});
  }
  const auto first = static_cast<std::size_t>(sets);
  const std::size_t last = names.size() - fit.model->parameters.size();
  for (std::size_t k = first; k < last; ++k) {  // logarithms of concentrations
    if (!std::isfinite(std::exp(values[k]))) table.Fail("values", "the number is out of range");
  }
}

void ReadErrors(TableReader& table, FitSummary& fit) {
  const auto errors = table.Numbers("errors");
  if (!errors) return;
  const std::size_t shared = fit.model->parameters.size();
  if (errors->size() != shared) table.Fail("errors", "one number a parameter is wanted");
  const std::size_t first = fit.parameters.size() - shared;
  for (std::size_t k = 0; k < shared; ++k) fit.parameters[first + k].error = (*errors)[k];
}

void ReadLinks(TableReader& table, int sets, FitSummary& fit) {
  fit.links.resize(static_cast<std::size_t>(sets));
  std::iota(fit.links.begin(), fit.links.end(), 0);
  if (!table.Has("links")) return;
  const std::vector<int> places = PlacesFrom(table, "links", 1, sets);
  if (places.size() != fit.links.size()) table.Fail("links", "numbers of datasets are wanted");
  for (std::size_t d = 0; d < places.size(); ++d) {
    const int target = places[d];
    if (places[static_cast<std::size_t>(target - 1)] != target) {
      table.Fail("links", "that dataset is linked itself");
    }
    fit.links[d] = target - 1;
  }
}

void ReadConditions(TableReader& table, double kelvin, FitSummary& fit) {
  const auto constants = table.Numbers("constants");
  if (!constants) return;
  if (constants->size() != 3) table.Fail("constants", "the fit is not complete");
  FitConditions known{kelvin, (*constants)[0], (*constants)[1], (*constants)[2], {}};
  known.sets.resize(fit.links.size());
  for (const ConditionKey& key : kConditionKeys) {
    const std::vector<double> values = Wanted(table, key.name, table.Numbers(key.name));
    if (values.size() != 1 && values.size() != known.sets.size()) {
      table.Fail(key.name, "one number a dataset, or one for all, is wanted");
    }
    for (std::size_t d = 0; d < known.sets.size(); ++d) {
      known.sets[d].*key.field = values[values.size() == 1 ? 0 : d];
    }
  }
  fit.conditions = std::move(known);
}

FittedEntry ReadEntry(TableReader& table, const std::vector<ScanName>& names) {
  FittedEntry entry;
  KeptFit& kept = entry.kept;
  FitSummary& fit = kept.summary;
  entry.name = TextOfLength(table, "name", 1, kLongestFitName);
  const auto seconds = std::chrono::duration<double>(NumberFrom(table, "time", 0.0, kLatestTime));
  entry.time = std::chrono::system_clock::time_point(
      std::chrono::duration_cast<std::chrono::system_clock::duration>(seconds));
  fit.model = &ReadModel(table);
  ReadScans(table, names, kept);
  const int sets = static_cast<int>(kept.scans.size());
  ReadValues(table, sets, fit);
  ReadErrors(table, fit);
  ReadLinks(table, sets, fit);
  kept.degC = NumberFrom(table, "temperature", -kZeroCelsius, kLatestTime);
  ReadConditions(table, kept.degC + kZeroCelsius, fit);
  fit.massConservation = table.Flag("mass_conservation").value_or(false);
  fit.constrainedRatios = table.Flag("constrain_k_ratios").value_or(false);
  kept.loadingConcs = table.Flag("loading_concs").value_or(false);
  fit.atRest = table.Flag("at_rest");
  fit.points = static_cast<int>(NumberFrom(table, "points", 1.0, kMostPoints));
  fit.sum = NumberFrom(table, "sum", 0.0, std::numeric_limits<double>::max());
  fit.runsZ = table.Number("runs_z");
  fit.digest = TextOfLength(table, "digest", kDigestLength, kDigestLength);
  table.RefuseUnknownKeys();
  return entry;
}

}  // namespace

FittedTables WriteFitted(const FitHistory& fits, const std::vector<Dataset>& datasets,
                         std::size_t room) {
  FittedTables tables;
  const NumbersOfScans numbers = NumbersOf(datasets);
  for (const HistoryEntry& entry : fits.Entries()) {
    const std::string table = tables.leftOut == 0 ? TableOf(entry, numbers) : std::string();
    if (tables.leftOut > 0 || tables.text.size() + table.size() > room) {
      ++tables.leftOut;
    } else {
      tables.text += table;
    }
  }
  return tables;
}

std::vector<FittedEntry> ReadFitted(TableReader& root, const std::vector<Dataset>& datasets) {
  const std::vector<ScanName> names = ScanNames(datasets);
  std::vector<FittedEntry> entries;
  for (TableReader& table : root.Tables("fitted")) entries.push_back(ReadEntry(table, names));
  return entries;
}

}  // namespace quorvane
