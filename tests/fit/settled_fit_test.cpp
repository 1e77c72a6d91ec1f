// Faults caught here: a start from which the fit strays or gives up, an end short of the minimum, a
// parameter without influence that goes unnamed, a trial that faults and takes the fit with it.
#include "fit/settled_fit.h"

#include <cmath>
#include <limits>

#include "base/arithmetic.h"
#include "fit/fit_statistics.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

// Monomer and dimer, N held: signals of about 0.3 with noise of 0.003.
FitState DimerProblem(double lnK, std::uint64_t seed = 5) {
  FitState fit = MakeProblem({.modelIndex = 2, .sets = 3, .points = 60}, {7500.0, 2.0, lnK});
  NormalNoise noise(seed, 0.003);
  FillSignal(fit, [&](int) { return noise(); });
  fit.FitIA(fit.SharedBase() + 2) = 0;
  return fit;
}

TEST(BringToRest, ReachesOneMinimumFromGoodStartsAndBad) {
  RecordingHost host;
  FitState truth = DimerProblem(1.0);
  ASSERT_EQ(SettleFit(truth, host, 100), FitRest::kSettled);
  const FitStatistics statistics = CalcFitStatistics(truth);
  const int base = truth.SharedBase();
  const struct {
    double weight;
    double lnK;
    double lnConcentration;  // is added
    int mostSteps;
  } starts[] = {{7500, 1, 0, 10},   {7600, 1.1, 0.02, 10}, {15000, -2, 0, 200}, {3700, 4, 0.2, 200},
                {7500, 14, 0, 200}, {500, 8, 0, 200},      {50000, 8, 0, 200},  {7500, 3, -4, 200}};
  for (const auto& start : starts) {
    SCOPED_TRACE(std::to_string(start.weight) + " " + std::to_string(start.lnK));
    FitState fit = DimerProblem(1.0);
    fit.FitA(base + 1) = start.weight;
    fit.FitA(base + 3) = start.lnK;
    for (int l = 4; l <= 6; ++l) fit.FitA(l) += start.lnConcentration;
    const RestEnd end = BringToRest(fit, host, 300);
    EXPECT_EQ(end.rest, FitRest::kSettled);
    EXPECT_LE(end.steps, start.mostSteps);
    EXPECT_NEAR(fit.FitChiSq, truth.FitChiSq, 1e-9 * truth.FitChiSq);
    for (int l = 1; l <= fit.FitMA; ++l) {
      if (fit.FitIA(l) == 0) continue;
      const double error = StandardError(truth, statistics, l);
      EXPECT_NEAR(fit.FitA(l), truth.FitA(l), 1e-3 * error) << l;
      EXPECT_NEAR(fit.FitCovar(l, l), truth.FitCovar(l, l), 1e-3 * truth.FitCovar(l, l)) << l;
    }
  }
  EXPECT_TRUE(host.lines.empty());
}

// A dimer whose monomer is nothing, at an ln K so far from 0 that a thousandth of it is a long step
// and signals that cross 0: derivatives by the rule of the pass lead to no minimum.
TEST(BringToRest, DoesNotTakeWrongDerivativesForARest) {
  RecordingHost host;
  FitState fit = DimerProblem(150.0);
  for (int d = 1; d <= 3; ++d) {
    fit.FitA(d) = -0.05 * d;
    fit.FitA(3 + d) -= 75.0;
  }
  NormalNoise noise(5, 0.003);
  FillSignal(fit, [&](int) { return noise(); });
  FitState alone = MakeProblem({.modelIndex = 0, .sets = 3, .points = 60}, {15000.0});
  alone.FitY = fit.FitY;
  ASSERT_EQ(SettleFit(alone, host, 100), FitRest::kSettled);
  for (int d = 1; d <= 3; ++d) fit.FitA(3 + d) += 0.02;
  const RestEnd end = BringToRest(fit, host, 100);
  EXPECT_NEAR(fit.FitChiSq, alone.FitChiSq, 1e-9 * alone.FitChiSq);
  EXPECT_EQ(end.undetermined, std::vector<int>{fit.SharedBase() + 3});
}

TEST(BringToRest, SaysWhyThereIsNoRest) {
  const struct {
    const char* what;
    double trueLnK;
    std::uint64_t seed;
    double lnK;
    int mostSteps;
    FitRest rest;
    bool named;
    bool runs;
  } cases[] = {{"no influence", -40.0, 5, -40.0, 200, FitRest::kUndetermined, true, false},
               {"runs away", -40.0, 1, 0.0, 200, FitRest::kRunaway, true, true},
               {"too long", 1.0, 5, 8.0, 3, FitRest::kTooLong, false, false}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    FitState fit = DimerProblem(one.trueLnK, one.seed);
    const int lnK = fit.SharedBase() + 3;
    fit.FitA(lnK) = one.lnK;
    RecordingHost host;
    const RestEnd end = BringToRest(fit, host, one.mostSteps);
    EXPECT_EQ(end.rest, one.rest);
    EXPECT_EQ(end.runaway, one.runs ? lnK : 0);
    EXPECT_FALSE(end.upwards);
    EXPECT_LE(fit.FitChiSq, end.startSum);
    if (one.named) {
      EXPECT_EQ(end.undetermined, std::vector<int>{lnK});
      EXPECT_EQ(fit.FitCovar(lnK, lnK), 0.0);  // and the others keep theirs
      EXPECT_GT(fit.FitCovar(lnK - 2, lnK - 2), 0.0);
    }
    EXPECT_TRUE(host.lines.empty());
  }
}

// y = exp(exp(a x)), whose Newton step from a flat start leaps to where it overflows.
void Steep(FitState& fit, int i, const Array1<double>& a, double& result) {
  fit.CurrentProc = "Steep";
  CheckArithmetic([&] { result = std::exp(std::exp(a(3) * fit.FitX(i))); });
}
const Model kSteep = {.name = "Steep",
                      .funcsName = "Steep",
                      .partialsName = "Steep",
                      .terms = nullptr,
                      .funcs = Steep,
                      .steps = {.firstStep = 1e-3, .stepAtZero = 1e-3}};

TEST(BringToRest, TriesAgainWhereATrialFaultsAndThrowsAtAStartThatDoes) {
  std::vector<double> x, y;
  for (int k = 1; k <= 20; ++k) {
    x.push_back(0.1 * k);
    y.push_back(std::exp(std::exp(1.2 * x.back())));
  }
  FitState fit = MakeCurveProblem(kSteep, x, y, {0.0, 0.0, -1.0});
  fit.FitIA(1) = fit.FitIA(2) = 0;
  FitState beyond = fit;
  beyond.FitA(3) = 50.0;
  RecordingHost host;
  const RestEnd end = BringToRest(fit, host, 200);
  EXPECT_EQ(end.rest, FitRest::kSettled);
  EXPECT_NEAR(fit.FitA(3), 1.2, 1e-6);
  EXPECT_THROW(BringToRest(beyond, host, 200), ArithmeticFault);
}

}  // namespace
