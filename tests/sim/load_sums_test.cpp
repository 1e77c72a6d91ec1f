// Faults caught here: the two grid rules made alike, a derivative of the wrong component, a missing
// root that is reported instead of taken as 0.
#include <cmath>

#include <gtest/gtest.h>

#include "sim/hetero_loads.h"
#include "sim/load_root.h"
#include "sim_runs.h"

namespace {

// A problem whose grid ends short of the base: 6.35 to 6.65 of 6.6504 cm.
struct Prepared {
  Prepared(int model, const Entries& entries) {
    SimInputs inputs = DefaultInputs();
    EXPECT_FALSE(StoreEntries(inputs, entries));
    const SimParameters p = ReadParameters(inputs);
    BuildGrid(p, column);
    problem = MakeProblemOf(SimModelOf(model), p, column);
  }
  SimColumn column;
  SimProblem problem;
};

Array1<double> Pair(double first, double second) {
  Array1<double> pair(2, first);
  pair(2) = second;
  return pair;
}

}  // namespace

TEST(LoadNmer, WeighsOuterRadiiWhereFUNCSCTWeighsInnerOnes) {
  constexpr double kAlmostLevel = 1.0e-5;  // what 100 Da still sediment at 1000 rpm
  // Nothing binds: the sums are c times closed forms.
  const Entries level = {{SimBox::kRbase, "6.6504"},
                         {SimBox::kMW, "100"},
                         {SimBox::kMWB, "100"},
                         {SimBox::kSpeed, "1000"},
                         {SimBox::kLnK1, "-300"}};
  const Prepared one(2, level);
  EXPECT_NEAR(LoadNmer(one.problem, 1.0), 1.0 + 0.001 / (6.35 + 6.65), kAlmostLevel);
  const Prepared two(6, level);
  double y = 0.0;
  FUNCSCT(two.problem, 1, Pair(0.0, -3.0), y);
  const double grid = 6.65 * 6.65 - 6.35 * 6.35;
  const double cell = 6.6504 * 6.6504 - 6.35 * 6.35;
  EXPECT_NEAR(y, (1.0 - 0.001 / (6.35 + 6.65)) * grid / cell, kAlmostLevel);
}

TEST(PARTIALSCT, GivesTheDerivativesOfEachLoad) {
  constexpr double kStepError = 1.0e-3;  // steps of a hundredth in ln c
  const Prepared ab(6, {});
  const Array1<double> a = Pair(std::log(2.0e-6), std::log(5.0e-6));
  double all = 0.0;
  double free = 0.0;
  FUNCSCT(ab.problem, 1, a, all);
  FUNCSCT(ab.problem, 1, Pair(a(1), -300.0), free);
  Array1<double> dyda(2);
  PARTIALSCT(ab.problem, 1, a, dyda, 2);
  EXPECT_NEAR(dyda(1) / all, 1.0, kStepError);           // A is linear in cA
  EXPECT_NEAR(dyda(2) / (all - free), 1.0, kStepError);  // bound A is linear in cB
  const Prepared anb(10, {});
  double loadB = 0.0;
  FUNCSCT4(anb.problem, 2, Pair(2.0e-6, 5.0e-6), loadB);
  PARTIALSCT4(anb.problem, 2, Pair(2.0e-6, 5.0e-6), dyda, 2);
  EXPECT_NEAR(dyda(2) / (loadB / 5.0e-6), 1.0, 1.0e-9);  // B is linear in cB
}

TEST(SolveLoadNonideal, GivesZeroWithoutAnEnclosedRoot) {
  // What floats is thickest at the meniscus, above the load: the bracket only goes down.
  const SimulatedRun run = RunOf(1, {{SimBox::kDensity, "2"}, {SimBox::kRMS, "0"}});
  EXPECT_TRUE(run.outcome.ok);
  EXPECT_EQ(run.outcome.reference.a, 0.0);
  EXPECT_EQ(run.Column().signal[150], 0.0);
}
