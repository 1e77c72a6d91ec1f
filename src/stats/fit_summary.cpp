#include "stats/fit_summary.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <utility>

#include "base/arithmetic.h"
#include "base/sha256.h"
#include "fit/fit_statistics.h"
#include "fit/levmarq.h"
#include "fit/models.h"
#include "stats/fit_quality.h"

namespace quorvane {

namespace {

void AppendBytes(double value, std::string& bytes) {
  const auto word = std::bit_cast<std::uint64_t>(value);
  for (unsigned shift = 0; shift < 64; shift += 8) {
    bytes += static_cast<char>(word >> shift & 0xFFU);
  }
}

// Residuals by rising radius.
std::vector<double> ResidualsOf(const FittedCurve& curve) {
  std::vector<std::size_t> order(curve.r.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return curve.r[a] < curve.r[b]; });
  std::vector<double> residuals;
  residuals.reserve(order.size());
  for (const std::size_t i : order) residuals.push_back(curve.y[i] - curve.calculated[i]);
  return residuals;
}

FitConditions ConditionsOf(const FitState& fit) {
  FitConditions known{fit.TempK, fit.Vbar, fit.Density, fit.MCTolerance, {}};
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    known.sets.push_back({fit.SetSpeed(d), fit.SetRefRadius(d), fit.SetEpsA(d), fit.SetEpsB(d),
                          fit.SetCellTopR(d), fit.SetCellBottomR(d), fit.SetALoad(d),
                          fit.SetBLoad(d)});
  }
  return known;
}

std::optional<double> ErrorOf(const FitState& fit, int parameter) {
  try {
    const FitStatistics statistics = CalcFitStatistics(fit, AcceptedSum(fit));
    return StandardError(fit, statistics, parameter);
  } catch (const ArithmeticFault&) {
    return std::nullopt;
  }
}

}  // namespace

std::vector<FittedCurve> FittedCurves(const FitState& fit) {
  std::vector<FittedCurve> curves(static_cast<std::size_t>(fit.NumFitSets));
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    FittedCurve& curve = curves[static_cast<std::size_t>(d - 1)];
    for (int i = fit.SetFirstPoint(d); i < fit.SetFirstPoint(d) + fit.SetPointCount(d); ++i) {
      if (fit.PointKind(i) != 0) continue;
      curve.r.push_back(fit.FitR(i));
      curve.y.push_back(fit.FitY(i));
      curve.calculated.push_back(fit.FitYCalc(i));
    }
  }
  return curves;
}

std::string PointsDigest(std::span<const FittedCurve> curves) {
  std::string bytes;
  for (const FittedCurve& curve : curves) {
    for (std::size_t i = 0; i < curve.r.size(); ++i) {
      AppendBytes(curve.r[i], bytes);
      AppendBytes(curve.y[i], bytes);
    }
  }
  return Sha256(bytes);
}

std::optional<double> PooledRunsZ(std::span<const FittedCurve> curves) {
  double excess = 0.0;
  double variance = 0.0;
  for (const FittedCurve& curve : curves) {
    const RunsTest runs = CountRuns(ResidualsOf(curve));
    excess += runs.runs - runs.expected;
    variance += runs.variance;
  }
  if (!(variance > 0.0)) return std::nullopt;
  return excess / std::sqrt(variance);
}

int FitSummary::Fitted() const {
  return static_cast<int>(
      std::count_if(parameters.begin(), parameters.end(), [](const auto& p) { return p.fitted; }));
}

int FitSummary::Freedom() const {
  return points - Fitted();
}

std::optional<double> FitSummary::Rms() const {
  if (Freedom() <= 0) return std::nullopt;
  return std::sqrt(sum / Freedom());
}

const SummaryParameter& FitSummary::Shared(int place) const {
  const std::size_t first = parameters.size() - model->parameters.size();
  return parameters[first + static_cast<std::size_t>(place)];
}

const SummaryParameter* FitSummary::Shared(const SharedParameter& shared) const {
  int place = 0;
  for (const ModelParameter& parameter : model->parameters) {
    if (parameter.shared == &shared) return &Shared(place);
    ++place;
  }
  return nullptr;
}

std::optional<double> FitSummary::AICc() const {
  const double n = points;
  const double k = Fitted() + 1;
  if (!(sum > 0.0) || n - k - 1.0 <= 0.0) return std::nullopt;
  return n * std::log(sum / n) + 2.0 * k + 2.0 * k * (k + 1.0) / (n - k - 1.0);
}

std::optional<double> FitSummary::BIC() const {
  const double n = points;
  if (!(sum > 0.0) || n <= 0.0) return std::nullopt;
  return n * std::log(sum / n) + (Fitted() + 1) * std::log(n);
}

FitSummary Summarise(const FitState& fit, const std::optional<RestVerdict>& rest,
                     std::string digest) {
  FitSummary summary;
  summary.model = fit.FitModel;
  for (int k = 1; k <= fit.FitMA; ++k) {
    summary.parameters.push_back(
        {ParameterName(fit, k), fit.FitA(k), ErrorOf(fit, k), fit.FitIA(k) != 0});
  }
  summary.links.assign(fit.RefLink.begin(), fit.RefLink.end());
  summary.massConservation = fit.TwoComponentModel && fit.UseMassConservation;
  summary.constrainedRatios = fit.ConstrainKRatios;
  summary.conditions = ConditionsOf(fit);
  summary.points = fit.FitNumPoints;
  summary.sum = AcceptedSum(fit);
  const std::vector<FittedCurve> curves = FittedCurves(fit);
  summary.runsZ = PooledRunsZ(curves);
  if (rest) summary.atRest = rest->atRest;
  summary.digest = digest.empty() ? PointsDigest(curves) : std::move(digest);
  return summary;
}

}  // namespace quorvane
