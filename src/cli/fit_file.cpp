#include "cli/fit_file.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/files.h"
#include "base/units.h"
#include "fit/models.h"
#include "job/json_text.h"

namespace quorvane {

namespace {

constexpr std::size_t kLongestFile = std::size_t{1}
                                     << 28U;  // 101 datasets of 2048 points take 40 MB

// A value with the way to it, "fit.points", for messages about it.
class Place {
 public:
  Place(const Json& value, const std::string& file) : value_(value), file_(file) {}

  [[noreturn]] void Refuse(const std::string& why) const {
    throw FileFault(file_ + ": \"" + way_ + "\" " + why);
  }

  // The member of that name, or nothing where it is absent or null.
  std::optional<Place> Find(const char* key) const {
    if (!value_.is_object()) return std::nullopt;
    const auto found = value_.find(key);
    if (found == value_.end() || found->is_null()) return std::nullopt;
    return Place(*found, file_, way_.empty() ? key : way_ + "." + key);
  }

  Place At(const char* key) const {
    if (const std::optional<Place> found = Find(key)) return *found;
    throw FileFault(file_ + ": \"" + (way_.empty() ? "" : way_ + ".") + key + "\" is missing");
  }

  std::vector<Place> Items() const {
    if (!value_.is_array()) Refuse("is no list");
    std::vector<Place> items;
    for (const Json& item : value_) {
      items.push_back(Place(item, file_, way_ + "[" + std::to_string(items.size()) + "]"));
    }
    return items;
  }

  double Number() const {
    if (!value_.is_number()) Refuse("is no number");
    const double number = value_.get<double>();
    if (!std::isfinite(number)) Refuse("is no finite number");
    return number;
  }

  // A whole number from `low` to `high`.
  int Integer(int low, int high) const {
    const double number = Number();
    if (number < low || number > high || number != std::floor(number)) {
      Refuse("is no whole number from " + std::to_string(low) + " to " + std::to_string(high));
    }
    return static_cast<int>(number);
  }

  bool Flag() const {
    if (!value_.is_boolean()) Refuse("is neither true nor false");
    return value_.get<bool>();
  }

  std::string Text() const {
    if (!value_.is_string()) Refuse("is no text");
    return value_.get<std::string>();
  }

  std::vector<double> Numbers() const {
    std::vector<double> numbers;
    for (const Place& item : Items()) numbers.push_back(item.Number());
    return numbers;
  }

 private:
  Place(const Json& value, const std::string& file, std::string way)
      : value_(value), file_(file), way_(std::move(way)) {}

  const Json& value_;
  const std::string& file_;
  std::string way_;
};

Json ParseFile(const std::filesystem::path& path) {
  const std::string text = ReadWholeFile(path, kLongestFile);
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& fault) {
    throw FileFault(PathText(path) + ": is damaged JSON at byte " + std::to_string(fault.byte));
  } catch (const Json::exception&) {  // a number beyond all bounds
    throw FileFault(PathText(path) + ": is damaged JSON");
  }
}

const Model& ModelOf(const Place& fit) {
  const Place name = fit.At("model");
  const Model* model = FindModel(name.Text());
  if (model == nullptr) name.Refuse("is no model of this program");
  return *model;
}

// The fit, if it was finished.
Place FinishedFitIn(const Place& document) {
  const Place fit = document.At("fit");
  if (const auto error = fit.Find("error")) fit.Refuse("is not finished: " + error->Text());
  if (const auto stopped = fit.Find("stopped"); stopped && stopped->Flag()) {
    fit.Refuse("was stopped before it was finished");
  }
  return fit;
}

void ReadParameters(const Place& fit, FitSummary& summary) {
  const Place list = fit.At("parameters");
  for (const Place& item : list.Items()) {
    SummaryParameter parameter{item.At("name").Text(), item.At("value").Number(), {}, false};
    if (const auto error = item.Find("sd")) parameter.error = error->Number();
    parameter.fitted = item.At("fitted").Flag();
    summary.parameters.push_back(std::move(parameter));
  }
  const std::size_t ofModel = summary.model->parameters.size();
  const std::size_t perSet = summary.model->secondComponent ? 3 : 2;
  const std::size_t count = summary.parameters.size();
  if (count <= ofModel || (count - ofModel) % perSet != 0 || count > kMaxParameters) {
    list.Refuse("has not the parameters of its model");
  }
  summary.links.resize((count - ofModel) / perSet);
  std::iota(summary.links.begin(), summary.links.end(), 0);
}

void ReadLinks(const Place& fit, FitSummary& summary) {
  const std::optional<Place> links = fit.Find("links");
  if (!links) return;
  const std::vector<Place> items = links->Items();
  if (items.size() != summary.links.size()) links->Refuse("has not one number a dataset");
  std::transform(items.begin(), items.end(), summary.links.begin(),
                 [&](const Place& item) { return item.Integer(1, summary.Sets()) - 1; });
}

// None if the file has none.
std::vector<FittedCurve> ReadCurves(const Place& fit, const FitSummary& summary) {
  std::vector<FittedCurve> curves;
  const std::optional<Place> list = fit.Find("curves");
  if (!list) return curves;
  for (const Place& item : list->Items()) {
    FittedCurve curve{item.At("r").Numbers(), item.At("y").Numbers(), item.At("y_calc").Numbers()};
    if (curve.y.size() != curve.r.size() || curve.calculated.size() != curve.r.size()) {
      item.Refuse("has lists of different lengths");
    }
    curves.push_back(std::move(curve));
  }
  if (curves.size() != summary.links.size()) list->Refuse("has not one curve a dataset");
  return curves;
}

std::string ReadDigest(const Place& fit, const std::vector<FittedCurve>& curves) {
  const std::optional<Place> digest = fit.Find("points_digest");
  if (digest) return digest->Text();
  if (curves.empty()) static_cast<void>(fit.At("points_digest"));  // is missing
  return PointsDigest(curves);
}

// Earlier versions wrote the sum of the step last tried only, which may be above that of the
// values.
double ReadSum(const Place& fit, const FitSummary& summary,
               const std::vector<FittedCurve>& curves) {
  std::size_t points = 0;
  double squares = 0.0;
  for (const FittedCurve& curve : curves) {
    points += curve.r.size();
    for (std::size_t i = 0; i < curve.r.size(); ++i) {
      squares += (curve.y[i] - curve.calculated[i]) * (curve.y[i] - curve.calculated[i]);
    }
  }
  const std::optional<Place> best = fit.Find("best_sum");
  if (!best && points == static_cast<std::size_t>(summary.points)) return squares;
  const Place sum = best ? *best : fit.At("chi_squared");
  if (sum.Number() < 0.0) sum.Refuse("is negative");
  return sum.Number();
}

SetConditions ReadSetConditions(const Place& dataset) {
  const auto value = [&](const char* key) { return dataset.At(key).Number(); };
  return {value("speed"),    value("ref_radius"), value("ext_coeff"), value("ext_coeff_b"),
          value("meniscus"), value("base"),       value("load_a"),    value("load_b")};
}

std::optional<FitConditions> ReadConditions(const Place& document, const Place& fit) {
  const std::optional<Place> constants = document.Find("constants");
  const std::optional<Place> list = document.Find("datasets");
  const std::optional<Place> curves = fit.Find("curves");
  if (!constants || !list || !curves) return std::nullopt;
  const auto value = [&](const char* key) { return constants->At(key).Number(); };
  FitConditions conditions{value("temperature") + kZeroCelsius,
                           value("vbar"),
                           value("density"),
                           value("mc_tolerance"),
                           {}};
  const std::vector<Place> datasets = list->Items();
  for (const Place& curve : curves->Items()) {
    const int number = curve.At("dataset").Integer(1, static_cast<int>(datasets.size()));
    conditions.sets.push_back(ReadSetConditions(datasets[static_cast<std::size_t>(number - 1)]));
  }
  return conditions;
}

}  // namespace

FitSummary ReadFitFile(const std::filesystem::path& path) {
  const Json json = ParseFile(path);
  const std::string file = PathText(path);
  const Place document(json, file);
  const Place fit = FinishedFitIn(document);
  FitSummary summary;
  summary.model = &ModelOf(fit);
  ReadParameters(fit, summary);
  ReadLinks(fit, summary);
  summary.massConservation = fit.Find("mass_conservation").has_value();
  if (const auto ratios = fit.Find("constrain_k_ratios"))
    summary.constrainedRatios = ratios->Flag();
  summary.points = fit.At("points").Integer(1, 1 << 30);
  const std::vector<FittedCurve> curves = ReadCurves(fit, summary);
  summary.digest = ReadDigest(fit, curves);
  summary.sum = ReadSum(fit, summary, curves);
  summary.runsZ = PooledRunsZ(curves);
  if (const auto rest = fit.Find("rest")) {
    if (const auto atRest = rest->Find("at_rest")) summary.atRest = atRest->Flag();
  }
  summary.conditions = ReadConditions(document, fit);
  return summary;
}

}  // namespace quorvane
