// Faults caught here: a model, derivative or minimiser that together do not lead back to the values
// that made the data, and standard errors that promise too much.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "fit/fit_state.h"
#include "fit/levmarq.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

namespace {

// The rule of the end is absolute, so the signal is that of a strong absorber: kSignal units/mole.
constexpr double kSignal = 50.0;
constexpr double kNoise = 0.003 * kSignal;

// How one model is fitted.
struct Plan {
  int modelIndex;
  std::vector<double> truth;  // shared parameters
  std::vector<double> start;
  std::vector<int> held;  // shared parameters, from 1: what such data cannot tell
  double noise = kNoise;
};

const std::vector<Plan> kPlans = {
    {0, {7500}, {5000}, {}},
    {1, {7500, 4e-7}, {7000, 1e-7}, {}, kNoise / 15},  // noise in its exponent biases it
    {2, {7500, 2, 0.5}, {6500, 2, 0}, {2}},
    {3, {7500, 2, 0.5, 4, 0.3}, {7500, 2, 0.1, 4, 0.1}, {1, 2, 4}},
    {4, {7500, 4, 1.5, 0.3}, {7000, 4, 1.2, 0.2}, {2}},
    {5, {7500, 4, 1.5, 0.3}, {7000, 4, 1.2, 0.2}, {2}},
    {6, {9000, 3000, 0.8}, {8000, 3500, 0.4}, {}},
    {7, {9000, 3000, 0.8, 0.3}, {9000, 3000, 0.4, 0.6}, {1, 2}},
    {8, {9000, 3000, 0.8, 0.3, 0.2}, {9000, 3000, 0.4, 0.6, 0.5}, {1, 2}},
    {9, {7500, 0.2}, {6500, 0.0}, {}},
    {10, {9000, 3000, 2, 0.8, 0.3}, {9000, 3000, 2, 0.4, 0.6}, {1, 2, 3}}};

constexpr double kStandardErrors = 4.0;
constexpr int kSets = 6;

// With two components each cell is scanned twice, where A and where B absorbs: the second scan is
// linked to the first.
void PairScans(FitState& fit) {
  for (int d = 1; d <= kSets; ++d) {
    const bool second = d % 2 == 0;
    fit.SetEpsA(d) *= kSignal * (second ? 0.15 : 1.0);
    fit.SetEpsB(d) *= kSignal * (second ? 1.2 : 0.1);
    if (!second) continue;
    fit.RefLink[static_cast<std::size_t>(d - 1)] = static_cast<std::int16_t>(d - 2);
    fit.SetOmegaTerm(d) = fit.SetOmegaTerm(d - 1);
    fit.FitIA(kSets + d) = fit.FitIA(2 * kSets + d) = 0;
  }
}

FitState PlannedProblem(const Plan& plan) {
  FitState fit =
      MakeProblem({.modelIndex = plan.modelIndex, .sets = kSets, .points = 150}, plan.truth);
  if (fit.TwoComponentModel) {
    PairScans(fit);
  } else {
    fit.SetEpsA = Array1<double>(kSets, kSignal);
  }
  NormalNoise noise(20 + static_cast<std::uint64_t>(plan.modelIndex), plan.noise);
  FillSignal(fit, [&](int) { return noise(); });
  return fit;
}

}  // namespace

TEST(FitData, FindsTheParametersThatMadeTheData) {
  for (const Plan& plan : kPlans) {
    FitState fit = PlannedProblem(plan);
    const Array1<double> truth = fit.FitA;
    const int base = fit.SharedBase();
    for (int l = 1; l <= base; ++l) {
      // With free baselines the nonideal model can rebuild each signal from itself.
      if (plan.modelIndex == 1 && l <= kSets) fit.FitIA(l) = 0;
      if (fit.FitIA(l) != 0) fit.FitA(l) += l <= kSets ? -0.5 : 0.1;
    }
    for (std::size_t k = 0; k < plan.start.size(); ++k) {
      fit.FitA(base + static_cast<int>(k) + 1) = plan.start[k];
    }
    for (const int k : plan.held) fit.FitIA(base + k) = 0;
    RecordingHost host;
    host.onEvents = [&] { fit.FitKeepGoing = host.lastIteration < 1000; };
    int iterations = 0;
    FitData(fit, host, iterations);
    EXPECT_GT(iterations, 0) << "model " << plan.modelIndex;
    for (int l = 1; l <= fit.FitMA; ++l) {
      const double error = plan.noise * std::sqrt(fit.FitCovar(l, l));
      EXPECT_NEAR(fit.FitA(l), truth(l), kStandardErrors * error)
          << "model " << plan.modelIndex << ", parameter " << l;
    }
  }
}
