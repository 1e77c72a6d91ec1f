// Faults caught here: deviates that are not normal, noise of the wrong size.
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "sim_runs.h"

using namespace quorvane;

TEST(GaussDeviate, HasTheMomentsOfTheNormalDistribution) {
  constexpr int kDraws = 100000;
  constexpr double kStandardErrors = 4.0;
  UniformSource uniform(7);
  std::array<double, 5> moment = {};
  for (int k = 0; k < kDraws; ++k) {
    const double g = GaussDeviate(uniform);
    for (std::size_t power = 1; power < moment.size(); ++power) {
      moment[power] += std::pow(g, static_cast<double>(power)) / kDraws;
    }
  }
  const double bound = kStandardErrors / std::sqrt(kDraws);
  EXPECT_NEAR(moment[1], 0.0, bound);
  EXPECT_NEAR(moment[2], 1.0, bound * std::sqrt(2.0));
  EXPECT_NEAR(moment[3], 0.0, bound * std::sqrt(15.0));
  EXPECT_NEAR(moment[4], 3.0, bound * std::sqrt(96.0));
}

TEST(Simulate, AddsNoiseOfTheGivenSizeToTheSignal) {
  for (int model = 0; model < kSimModels; ++model) {
    const SimulatedRun noisy = RunOf(model, {{SimBox::kRMS, "0.02"}});
    const SimulatedRun exact = RunOf(model, {{SimBox::kRMS, "0"}});
    const int n = noisy.simulator.GridPoints;
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
      sum += std::pow(noisy.Column().signal[i] - exact.Column().signal[i], 2);
    }
    EXPECT_NEAR(std::sqrt(sum / n), 0.02, 0.02 * 4.0 / std::sqrt(2.0 * n)) << "model " << model;
  }
}
