#include "fit/fit_statistics.h"

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"

namespace quorvane {

FitStatistics CalcFitStatistics(const FitState& fit) {
  return CalcFitStatistics(fit, fit.FitChiSq);
}

FitStatistics CalcFitStatistics(const FitState& fit, double sum) {
  FitStatistics statistics;
  statistics.fitted = fit.NumFitted();
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    statistics.maxSpeed = std::max(statistics.maxSpeed, static_cast<int>(fit.SetSpeed(d)));
  }
  statistics.freedom = fit.FitNumPoints - statistics.fitted;
  statistics.variance = Checked([&] { return sum / statistics.freedom; });
  return statistics;
}

double SquaredSignal(const FitState& fit) {
  double squares = 0.0;
  for (int i = 1; i <= fit.FitNumPoints; ++i) squares += fit.FitY(i) * fit.FitY(i);
  return squares;
}

double FlatSum(const FitState& fit) {
  double sum = 0.0;
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    double mean = 0.0;
    double squares = 0.0;
    int count = 0;
    for (int i = fit.SetFirstPoint(d); i < fit.SetFirstPoint(d) + fit.SetPointCount(d); ++i) {
      if (fit.PointKind(i) != 0) continue;
      const double off = fit.FitY(i) - mean;
      mean += off / ++count;
      squares += off * (fit.FitY(i) - mean);
    }
    sum += squares;
  }
  return sum;
}

double StandardError(const FitState& fit, const FitStatistics& statistics, int k) {
  return Checked([&] { return std::sqrt(statistics.variance * fit.FitCovar(k, k)); });
}

ValueAndError ReferenceConcentration(const FitState& fit, const FitStatistics& statistics, int k) {
  const double v = fit.FitA(k);
  const double sd = StandardError(fit, statistics, k);
  ValueAndError result;
  CheckArithmetic([&] {
    result.value = std::exp(v);
    result.error = std::fabs(result.value - std::exp(v - sd));
  });
  return result;
}

double SigmaAtMaxSpeed(const FitState& fit, const FitStatistics& statistics, int k) {
  const double speed = statistics.maxSpeed;
  return Checked([&] { return speed * speed * fit.FitA(k) * kOmegaFactor / fit.TempK; });
}

}  // namespace quorvane
