// Faults caught here: a simulated scan that the fit of the same model reads with other units,
// constants or stoichiometry.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fit/levmarq.h"
#include "sim_runs.h"
#include "support/fit_problem.h"

using namespace quorvane;

namespace {

// Six scans at three speeds and two loads. The signal is that of a strong absorber, since the end
// of a fit is an absolute change of its sum of squares.
constexpr int kSets = 6;
constexpr int kPoints = 201;        // 6.40 to 6.60 cm
constexpr double kBuoyancy = 0.27;  // 1 - vbar density
constexpr double kMwA = 28000 * kBuoyancy;
constexpr double kMwB = 11000 * kBuoyancy;
constexpr double kStandardErrors = 4.0;

struct Plan {
  int model;
  Entries entries;
  std::vector<double> truth;  // shared parameters of the fit
  std::vector<double> start;
  std::vector<int> held;      // shared parameters, from 1: what such data cannot tell
  double tolerance = 1.0e-4;  // relative, beside the standard errors: the two constants of
                              // the rotor differ in the fifth digit
  const char* rms = "0.5";    // signal units, a thousandth of the signal
};

const Entries kConstants = {{SimBox::kLnK1, "13.5"},
                            {SimBox::kLnK2, "13"},
                            {SimBox::kLnK3, "14"},
                            {SimBox::kLoadCB, "3E-6"}};
const Entries kTwoSteps = {{SimBox::kLnK1, "13.5"}, {SimBox::kLnK2, "41"}, {SimBox::kN2mer, "4"}};
const Entries kFraction = {{SimBox::kN1mer, "4"}, {SimBox::kLnK1, "43"}, {SimBox::kAlpha, "0.3"}};

const std::vector<Plan> kPlans = {
    {0, {}, {kMwA}, {5000}, {}},
    {1, {{SimBox::kNonId, "4"}}, {kMwA, 4}, {7000, 1}, {}, 0.005, "0.05"},
    {2, kConstants, {kMwA, 2, 13.5}, {6500, 2, 13}, {2}},
    {3, kTwoSteps, {kMwA, 2, 13.5, 4, 41}, {kMwA, 2, 13, 4, 40.5}, {1, 2, 4}},
    {4, kFraction, {kMwA, 4, 43, 0.3}, {7000, 4, 42.5, 0.2}, {2}},
    {5, kFraction, {kMwA, 4, 43, 0.3}, {7000, 4, 42.5, 0.2}, {2}},
    {6, kConstants, {kMwA, kMwB, 13.5}, {8000, 3500, 13}, {}},
    // The entry for K2 stands for both sites.
    {7, kConstants, {kMwA, kMwB, 13, 13}, {kMwA, kMwB, 12.5, 13.5}, {1, 2}},
    {8, kConstants, {kMwA, kMwB, 13.5, 13, 14}, {kMwA, kMwB, 13.3, 13.2, 13.8}, {1, 2}},
    {9, kConstants, {kMwA, 13.5}, {6500, 13}, {}},
    {10, kConstants, {kMwA, kMwB, 2, 13.5, 13}, {kMwA, kMwB, 2, 13, 13.5}, {1, 2, 3}}};

// Simulates scan d and puts its signal into the fit. With two components every second scan is the
// cell of the one before where B absorbs.
void AddScan(FitState& fit, const Plan& plan, int d) {
  const bool two = fit.TwoComponentModel;
  const bool second = two && d % 2 == 0;
  const int cell = two ? (d + 1) / 2 : d;
  Entries entries = plan.entries;
  entries[SimBox::kMW] = "28000";
  entries[SimBox::kMWB] = "11000";
  entries[SimBox::kRmen] = "6.40";
  entries[SimBox::kRbase] = "6.60";
  entries[SimBox::kRMS] = plan.rms;
  entries[SimBox::kSpeed] = std::to_string(10000 + 4000 * (cell % 3));
  entries[SimBox::kLoadC] = cell % 2 == 0 ? "0.8E-6" : "1.6E-6";
  entries[SimBox::kExtCoeff] = second ? "0.8E8" : "5E8";
  entries[SimBox::kExtCoeffB] = second ? "6E8" : "0.5E8";
  const SimulatedRun run = RunOf(plan.model, entries, static_cast<std::uint64_t>(d));
  ASSERT_EQ(run.simulator.WrittenPoints, kPoints);
  const double speed = run.Number(SimBox::kSpeed);
  fit.SetOmegaTerm(d) = speed * kOmegaFactor * speed / fit.TempK;
  fit.SetEpsA(d) = run.Number(SimBox::kExtCoeff);
  fit.SetEpsB(d) = run.Number(SimBox::kExtCoeffB);
  fit.SetCellTopR(d) = 6.40;
  fit.SetCellBottomR(d) = 6.60;
  fit.FitA(d) = 0.0;
  fit.FitA(kSets + d) = std::log(two ? run.outcome.reference.a : 0.8e-6);
  if (two) fit.FitA(2 * kSets + d) = std::log(run.outcome.reference.b) + 0.1;
  if (second) {
    fit.RefLink[static_cast<std::size_t>(d - 1)] = static_cast<std::int16_t>(d - 2);
    fit.FitIA(kSets + d) = fit.FitIA(2 * kSets + d) = 0;
  }
  // With free baselines the nonideal model can rebuild each signal from itself.
  if (plan.model == 1) fit.FitIA(d) = 0;
  for (int i = 0; i < kPoints; ++i) {
    const int at = fit.SetFirstPoint(d) + i;
    ASSERT_NEAR(fit.FitR(at), run.Column().r[i], 1.0e-9);
    fit.FitY(at) = run.Column().signal[i];
  }
}

}  // namespace

TEST(Simulate, MakesScansWhoseFitFindsTheEntries) {
  for (const Plan& plan : kPlans) {
    FitState fit =
        MakeProblem({.modelIndex = plan.model, .sets = kSets, .points = kPoints}, plan.start);
    for (int d = 1; d <= kSets; ++d) AddScan(fit, plan, d);
    for (const int k : plan.held) fit.FitIA(fit.SharedBase() + k) = 0;
    RecordingHost host;
    StopFlag stop;
    fit.Stop = &stop;
    host.onEvents = [&] {
      if (host.lastIteration >= 1000) stop.Raise();
    };
    int iterations = 0;
    FitData(fit, host, iterations);
    EXPECT_GT(iterations, 0) << "model " << plan.model;
    for (std::size_t k = 0; k < plan.truth.size(); ++k) {
      const int l = fit.SharedBase() + static_cast<int>(k) + 1;
      const double error = std::stod(plan.rms) * std::sqrt(fit.FitCovar(l, l));
      EXPECT_NEAR(fit.FitA(l), plan.truth[k],
                  kStandardErrors * error + plan.tolerance * plan.truth[k])
          << "model " << plan.model << ", parameter " << k + 1;
    }
  }
}
