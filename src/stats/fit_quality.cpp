#include "stats/fit_quality.h"

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "fit/fit_state.h"
#include "fit/models.h"
#include "stats/correlation.h"

namespace quorvane {

namespace {

double SumOfSquares(std::span<const double> residuals) {
  double sum = 0.0;
  for (const double e : residuals) sum += e * e;
  return sum;
}

// Residuals at the data points of position d of the fit, from 1, by rising radius.
std::vector<double> Residuals(const FitState& fit, int d) {
  std::vector<int> points;
  for (int i = fit.SetFirstPoint(d); i < fit.SetFirstPoint(d) + fit.SetPointCount(d); ++i) {
    if (fit.PointKind(i) == 0) points.push_back(i);
  }
  std::stable_sort(points.begin(), points.end(),
                   [&fit](int a, int b) { return fit.FitR(a) < fit.FitR(b); });
  std::vector<double> residuals;
  for (const int i : points) residuals.push_back(fit.FitY(i) - fit.FitYCalc(i));
  return residuals;
}

std::vector<SetQuality> QualityOfSets(const FitState& fit) {
  std::vector<SetQuality> sets;
  double total = 0.0;
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    const std::vector<double> residuals = Residuals(fit, d);
    SetQuality set;
    set.dataset = fit.FitSetList[static_cast<std::size_t>(d - 1)] + 1;
    set.points = static_cast<int>(residuals.size());
    set.share = SumOfSquares(residuals);  // as it is, until the total is known
    if (set.points > 0) set.rms = std::sqrt(set.share / set.points);
    set.runs = CountRuns(residuals);
    set.durbinWatson = DurbinWatson(residuals);
    total += set.share;
    sets.push_back(set);
  }
  for (SetQuality& set : sets) set.share = total > 0.0 ? set.share / total : 0.0;
  return sets;
}

std::vector<StrongCorrelation> StrongPairs(const FitState& fit, double critical) {
  const Matrix1<double> coefficients = CrossCorrelation(fit);
  std::vector<StrongCorrelation> pairs;
  for (int i = 1; i <= fit.FitMA; ++i) {
    for (int j = i + 1; j <= fit.FitMA; ++j) {
      if (std::fabs(coefficients(i, j)) <= critical) continue;
      pairs.push_back({ParameterName(fit, i), ParameterName(fit, j), coefficients(i, j)});
    }
  }
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const StrongCorrelation& a, const StrongCorrelation& b) {
                     return std::fabs(a.coefficient) > std::fabs(b.coefficient);
                   });
  return pairs;
}

// Why a value of the parameter cannot be; null if it can.
const char* ReasonAgainst(const SharedParameter& parameter, double value, const FitPage& page) {
  switch (parameter.kind) {
    case ParameterKind::kWeight: {
      const double vbar = parameter.place == 1 ? page.Vbar : page.VbarB;
      if (vbar * page.Density > 1.0) {  // it floats
        return value < 0.0 ? nullptr : "is not negative, though vbar times density is above 1";
      }
      return value > 0.0 ? nullptr : "is not positive";
    }
    case ParameterKind::kFraction:
      return value >= 0.0 && value <= 1.0 ? nullptr : "lies outside 0 to 1";
    case ParameterKind::kStoichiometry:
      return value >= 1.0 ? nullptr : "is below 1";
    case ParameterKind::kVirial:
    case ParameterKind::kLnK:
      break;
  }
  return nullptr;
}

std::vector<ImplausibleValue> ImplausibleValues(const FitState& fit, const FitPage& page) {
  std::vector<ImplausibleValue> values;
  if (fit.FitModel == nullptr) return values;
  int k = fit.SharedBase();
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    const double value = fit.FitA(++k);
    const char* reason = ReasonAgainst(*parameter.shared, value, page);
    if (reason != nullptr) values.push_back({ParameterName(fit, k), value, reason});
  }
  return values;
}

std::vector<std::string> ConstantsAtDefault(const FitState& fit, const FitPage& page,
                                            const ConstantsSet& set) {
  const FitPage fresh;
  std::vector<std::string> names;
  if (!set.Vbar && page.Vbar == fresh.Vbar) names.emplace_back("vbar");
  if (fit.TwoComponentModel && !set.VbarB && page.VbarB == fresh.VbarB)
    names.emplace_back("vbar(B)");
  if (!set.Density && page.Density == fresh.Density) names.emplace_back("density");
  return names;
}

std::string Percent(double share) {
  return FormatNumber(100.0 * share, "0") + " %";
}

void RemarkRuns(const SetQuality& set, std::vector<std::string>& remarks) {
  const std::string title = "Dataset #" + std::to_string(set.dataset) + ": ";
  const RunsTest& runs = set.runs;
  if (!set.OutOfRandomRuns()) return;
  if (!runs.z) {
    remarks.push_back(title + "all residuals have one sign, so the curve passes beside the data.");
  } else if (*runs.z < 0.0) {
    remarks.push_back(title + "too few runs (" + std::to_string(runs.runs) + ", expected " +
                      FormatNumber(runs.expected, "0.0") + ", Z " + FormatNumber(*runs.z, "0.00") +
                      "): the deviations are systematic.");
  } else {
    remarks.push_back(title + "too many runs (" + std::to_string(runs.runs) + ", expected " +
                      FormatNumber(runs.expected, "0.0") + ", Z " + FormatNumber(*runs.z, "0.00") +
                      "): the signs alternate more than those of noise.");
  }
}

void RemarkDurbin(const SetQuality& set, std::vector<std::string>& remarks) {
  if (!set.OutOfRandomDurbin()) return;
  const bool low = *set.durbinWatson < kLowestDurbin;
  remarks.push_back(
      "Dataset #" + std::to_string(set.dataset) + ": Durbin-Watson " +
      FormatNumber(*set.durbinWatson, "0.00") +
      (low ? ", neighbouring residuals are alike." : ", neighbouring residuals alternate."));
}

// A dataset whose points count more than twice what they should.
void RemarkShares(const FitQuality& quality, std::vector<std::string>& remarks) {
  constexpr double kHeavy = 2.0;
  int all = 0;
  for (const SetQuality& set : quality.sets) all += set.points;
  for (const SetQuality& set : quality.sets) {
    const double part = all > 0 ? static_cast<double>(set.points) / all : 0.0;
    if (!(set.share > kHeavy * part)) continue;
    remarks.push_back("Dataset #" + std::to_string(set.dataset) + " makes " + Percent(set.share) +
                      " of the sum of squares with " + Percent(part) + " of the points.");
  }
}

void RemarkCorrelations(const FitQuality& quality, std::vector<std::string>& remarks) {
  constexpr std::size_t kMostNamed = 8;
  if (!quality.correlationsKnown) {
    remarks.emplace_back(
        "The covariance matrix gives no correlation coefficients: the data do not determine some "
        "fitted parameter.");
  }
  if (quality.correlations.empty()) return;
  std::string pairs;
  const std::size_t named = std::min(quality.correlations.size(), kMostNamed);
  for (std::size_t k = 0; k < named; ++k) {
    const StrongCorrelation& pair = quality.correlations[k];
    pairs += (k == 0 ? "" : "; ") + pair.first + " and " + pair.second + " (" +
             FormatNumber(pair.coefficient, "0.000") + ")";
  }
  if (named < quality.correlations.size()) {
    pairs += "; and " + std::to_string(quality.correlations.size() - named) + " more pairs";
  }
  remarks.push_back("Strongly correlated: " + pairs + ". One can make up for the other.");
}

void RemarkConstants(const FitQuality& quality, std::vector<std::string>& remarks) {
  if (quality.atDefault.empty()) return;
  std::string names;
  for (std::size_t k = 0; k < quality.atDefault.size(); ++k) {
    const bool last = k + 1 == quality.atDefault.size();
    names += (k == 0 ? "" : last ? " and " : ", ") + quality.atDefault[k];
  }
  remarks.push_back("Still at the default: " + names +
                    ". The molecular weight of the report is buoyant weight / (1 - vbar density).");
}

}  // namespace

bool SetQuality::OutOfRandomRuns() const {
  if (runs.z) return std::fabs(*runs.z) > kRunsLimit;
  return runs.positive + runs.negative > 1 && (runs.positive == 0 || runs.negative == 0);
}

bool SetQuality::OutOfRandomDurbin() const {
  return durbinWatson && (*durbinWatson < kLowestDurbin || *durbinWatson > kHighestDurbin);
}

RunsTest CountRuns(std::span<const double> residuals) {
  RunsTest test;
  double before = 0.0;
  for (const double e : residuals) {
    if (e == 0.0) continue;
    ++(e > 0.0 ? test.positive : test.negative);
    if (test.runs == 0 || (e > 0.0) != (before > 0.0)) ++test.runs;
    before = e;
  }
  const double all = test.positive + test.negative;
  if (all == 0.0) return test;
  const double product = 2.0 * test.positive * test.negative;
  test.expected = product / all + 1.0;
  if (product <= all) return test;  // without spread
  test.variance = product * (product - all) / (all * all * (all - 1.0));
  test.z = (test.runs - test.expected) / std::sqrt(test.variance);
  return test;
}

std::optional<double> DurbinWatson(std::span<const double> residuals) {
  const double squares = SumOfSquares(residuals);
  if (residuals.size() < 2 || !(squares > 0.0)) return std::nullopt;
  double differences = 0.0;
  for (std::size_t k = 1; k < residuals.size(); ++k) {
    const double step = residuals[k] - residuals[k - 1];
    differences += step * step;
  }
  return differences / squares;
}

FitQuality CalcFitQuality(const FitState& fit, const FitPage& page, const ConstantsSet& set,
                          double critical) {
  FitQuality quality;
  CheckArithmetic([&] { quality.sets = QualityOfSets(fit); });
  try {
    quality.correlations = StrongPairs(fit, critical);
  } catch (const ArithmeticFault&) {
    quality.correlationsKnown = false;
  }
  quality.implausible = ImplausibleValues(fit, page);
  quality.atDefault = ConstantsAtDefault(fit, page, set);
  return quality;
}

std::vector<std::string> QualityRemarks(const FitQuality& quality,
                                        const std::optional<RestVerdict>& rest) {
  std::vector<std::string> remarks;
  if (rest) {
    if (const auto remark = RestRemark(*rest)) remarks.push_back(*remark);
  }
  for (const ImplausibleValue& value : quality.implausible) {
    remarks.push_back(value.name + " = " + FormatParam(value.value) + " " + value.reason + ".");
  }
  RemarkCorrelations(quality, remarks);
  RemarkConstants(quality, remarks);
  RemarkShares(quality, remarks);
  for (const SetQuality& set : quality.sets) {
    RemarkRuns(set, remarks);
    RemarkDurbin(set, remarks);
  }
  return remarks;
}

}  // namespace quorvane
