#include "stats/resampling.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <boost/random/normal_distribution.hpp>

#include "base/arithmetic.h"
#include "stats/held_fit.h"

namespace quorvane {

namespace {

// A stream of random bits of its own for each replicate.
std::mt19937_64 GeneratorOf(ReplicateKind kind, std::uint64_t seed, std::uint64_t index) {
  constexpr int kHalf = 32;
  const auto low = [](std::uint64_t word) { return static_cast<std::uint32_t>(word); };
  std::seed_seq words{static_cast<std::uint32_t>(kind), low(seed), low(seed >> kHalf), low(index),
                      low(index >> kHalf)};
  return std::mt19937_64(words);
}

// Even in 0 .. count - 1, the same on every platform.
std::size_t Drawn(std::mt19937_64& generator, std::size_t count) {
  constexpr int kBits = 32;
  return static_cast<std::size_t>(((generator() >> kBits) * count) >> kBits);
}

double ValueAt(const std::vector<double>& sorted, double p) {
  const double place = p * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (place - static_cast<double>(below)) * (sorted[above] - sorted[below]);
}

}  // namespace

ReplicateSource::ReplicateSource(const FitState& fit) {
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    Set set;
    set.first = fit.SetFirstPoint(d);
    double squares = 0.0;
    for (int i = set.first; i < set.first + fit.SetPointCount(d); ++i) {
      if (fit.PointKind(i) != 0) continue;
      set.curve.push_back(fit.FitYCalc(i));
      set.residuals.push_back(fit.FitY(i) - fit.FitYCalc(i));
      squares += set.residuals.back() * set.residuals.back();
    }
    const auto n = static_cast<double>(set.curve.size());
    if (n > 0.0) set.rms = std::sqrt(squares / n);
    sets_.push_back(std::move(set));
  }
}

void ReplicateSource::Fill(FitState& fit, ReplicateKind kind, std::uint64_t seed,
                           std::uint64_t index) const {
  std::mt19937_64 generator = GeneratorOf(kind, seed, index);
  boost::random::normal_distribution<double> normal;
  for (const Set& set : sets_) {
    for (std::size_t k = 0; k < set.curve.size(); ++k) {
      const double noise = kind == ReplicateKind::kMonteCarlo
                               ? set.rms * normal(generator)
                               : set.residuals[Drawn(generator, set.residuals.size())];
      fit.FitY(set.first + static_cast<int>(k)) = set.curve[k] + noise;
    }
  }
}

ReplicateFit::ReplicateFit(const FitState& fit, const ReplicateSource& source, const StopFlag& stop)
    : source_(source), rest_(fit), fit_(fit) {
  fit_.Stop = &stop;
}

std::optional<Array1<double>> ReplicateFit::Run(ReplicateKind kind, std::uint64_t seed,
                                                std::uint64_t index) {
  constexpr int kMostSteps = 500;
  source_.Fill(fit_, kind, seed, index);
  fit_.FitA = rest_.FitA;
  try {
    if (!SumStandsStill(SettleAll(fit_, kMostSteps))) return std::nullopt;
  } catch (const ArithmeticFault&) {
    return std::nullopt;
  }
  for (int l = 1; l <= fit_.FitMA; ++l) {
    if (!std::isfinite(fit_.FitA(l))) return std::nullopt;
  }
  return fit_.FitA;
}

PercentileLimits PercentilesOf(const std::vector<double>& sorted, double percent) {
  constexpr double kAll = 100.0;
  const double tail = (1.0 - percent / kAll) / 2.0;
  return {percent, ValueAt(sorted, tail), ValueAt(sorted, 1.0 - tail)};
}

}  // namespace quorvane
