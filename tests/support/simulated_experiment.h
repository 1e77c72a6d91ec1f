// Simulated experiments of all models, for the tables of docs/evidence.md.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "support/fit_problem.h"

namespace quorvane {

inline constexpr int kSets = 6;
inline constexpr int kPoints = 80;
inline constexpr double kNoise = 0.005;  // signal units

// How one model is simulated and fitted.
struct Plan {
  int modelIndex;
  std::vector<double> truth;  // shared parameters
  std::vector<int> held;      // shared parameters, from 1, that are kept at the truth
};

inline const std::vector<Plan> kPlans = {{0, {7500}, {}},
                                         {1, {7500, 8e-6}, {}},
                                         {2, {7500, 2, 1}, {2}},
                                         {3, {7500, 2, 1, 4, 3}, {2, 4}},
                                         {4, {7500, 4, 3, 0.3}, {2}},
                                         {5, {7500, 4, 3, 0.3}, {2}},
                                         {6, {9000, 3000, 2}, {1, 2}},
                                         {7, {9000, 3000, 2, 1.5}, {1, 2}},
                                         {8, {9000, 3000, 2, 1.5, 1}, {1, 2}},
                                         {9, {7500, -0.5}, {}},
                                         {10, {9000, 3000, 2, 2, 1.5}, {1, 2, 3}}};

// With two components each cell is scanned twice, where A and where B absorbs: the second scan is
// linked to the first.
inline void PairScans(FitState& fit) {
  for (int d = 1; d <= kSets; ++d) {
    const bool second = d % 2 == 0;
    fit.SetEpsA(d) *= second ? 0.15 : 1.0;
    fit.SetEpsB(d) *= second ? 1.2 : 0.1;
    if (!second) continue;
    fit.RefLink[static_cast<std::size_t>(d - 1)] = static_cast<std::int16_t>(d - 2);
    fit.FitIA(kSets + d) = fit.FitIA(2 * kSets + d) = 0;
  }
}

// Three speeds; with one component each at two loadings.
inline void ShapeDatasets(FitState& fit) {
  constexpr std::array<double, 3> kSpeeds = {15000.0, 20000.0, 25000.0};
  for (int d = 1; d <= kSets; ++d) {
    const double speed =
        kSpeeds[static_cast<std::size_t>(fit.TwoComponentModel ? (d - 1) / 2 : (d - 1) % 3)];
    fit.SetSpeed(d) = speed;
    fit.SetOmegaTerm(d) = speed * kOmegaFactor * speed / fit.TempK;
    if (!fit.TwoComponentModel) fit.FitA(kSets + d) = std::log(d <= 3 ? 0.1 : 0.4);
  }
  if (fit.TwoComponentModel) PairScans(fit);
}

inline FitState Simulated(const Plan& plan, double scale, std::uint64_t seed) {
  FitState fit =
      MakeProblem({.modelIndex = plan.modelIndex, .sets = kSets, .points = kPoints}, plan.truth);
  ShapeDatasets(fit);
  for (int d = 1; d <= kSets; ++d) {
    fit.SetEpsA(d) *= scale;
    fit.SetEpsB(d) *= scale;
  }
  if (plan.modelIndex == 1) {  // with free baselines it can rebuild each signal from itself
    for (int d = 1; d <= kSets; ++d) fit.FitIA(d) = 0;
  }
  NormalNoise noise(seed, kNoise * scale);
  FillSignal(fit, [&](int) { return noise(); });
  for (const int k : plan.held) fit.FitIA(fit.SharedBase() + k) = 0;
  return fit;
}

// Start values a few percent off.
inline void Displace(FitState& fit, std::uint64_t seed) {
  NormalNoise noise(seed, 1.0);
  for (int l = 1; l <= fit.FitMA; ++l) {
    const double deviate = 2.0 * noise.Uniform() - 1.0;
    if (fit.FitIA(l) == 0) continue;
    const bool shared = l > fit.SharedBase();
    fit.FitA(l) += deviate * (shared ? 0.05 * std::fabs(fit.FitA(l)) : 0.02);
  }
}

}  // namespace quorvane
