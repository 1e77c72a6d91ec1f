// Faults caught here: a better minimum that is missed, counted twice or offered when it is the same
// one; results that depend on the threads; a stop or a failing start that spoils the rest.
#include "stats/minimum_check.h"

#include <array>
#include <cmath>

#include "base/arithmetic.h"
#include "fit/settled_fit.h"
#include "stats/confidence.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

// A wave y = cos(w x) of unknown rate, kept in the place of a buoyant weight: its sum of squares
// has a minimum at the true rate and lesser ones beside it. Baseline and reference concentration,
// which every fit has, are held.
void Wave(FitState& fit, int i, const Array1<double>& a, double& result) {
  fit.CurrentProc = "Wave";
  result = std::cos(a(3) * fit.FitX(i));
}
constexpr std::array kRate = {
    ModelParameter{.shared = &shared::kMW, .name = "MW", .caption = "MW", .tag = ""}};
const Model kWave = {.name = "Wave",
                     .funcsName = "Wave",
                     .partialsName = "Wave",
                     .parameters = kRate,
                     .terms = nullptr,
                     .funcs = Wave,
                     .steps = {.firstStep = 1e-3, .stepAtZero = 1e-3}};
constexpr double kTrueRate = 10.0;

// The fit of the wave that ends near `rate`.
FitState WaveFit(double rate) {
  std::vector<double> x, y;
  for (int k = 0; k < 100; ++k) {
    x.push_back(0.02 * k);
    y.push_back(std::cos(kTrueRate * x.back()) + 0.01 * std::sin(12.9898 * k));
  }
  FitState fit = MakeCurveProblem(kWave, x, y, {0.0, 0.0, rate});
  fit.FitIA(1) = fit.FitIA(2) = 0;
  fit.SetSpeed = Array1<double>(1, 20000.0);
  RecordingHost host;
  EXPECT_EQ(SettleFit(fit, host, 500), FitRest::kSettled);
  return fit;
}

// The second best place of the wave, found by looking from outside.
FitState WorseFit() {
  FitState fit = WaveFit(14.2);
  EXPECT_GT(std::fabs(fit.FitA(3) - kTrueRate), 2.0);
  return fit;
}

TEST(CheckMinimum, FindsTheBetterMinimumFromTheWorse) {
  FitState fit = WorseFit();
  const FitState before = fit;
  RecordingHost host;
  const MinimumOutcome found = CheckMinimum(fit, {.starts = 40}, kNoStop, host);
  ASSERT_GE(found.minima.size(), 2U);
  ASSERT_TRUE(found.better);
  const FoundMinimum& best = found.minima[*found.better];
  EXPECT_NEAR(best.parameters(3), kTrueRate, 0.01);
  EXPECT_EQ(best.parameters(1), 0.0);
  EXPECT_FALSE(best.current);
  EXPECT_NEAR(best.rms, std::sqrt(best.sum / 99.0), 1e-12);
  EXPECT_GT(best.starts, 0);
  int starts = 0, current = 0;
  for (std::size_t k = 0; k < found.minima.size(); ++k) {
    starts += found.minima[k].starts;
    if (k > 0) {
      EXPECT_LE(found.minima[k - 1].sum, found.minima[k].sum);
    }
    if (!found.minima[k].current) continue;
    ++current;
    EXPECT_NEAR(found.minima[k].parameters(3), before.FitA(3), 1e-4);
    EXPECT_NEAR(found.minima[k].sum, before.FitChiSq, 1e-6 * before.FitChiSq);
  }
  EXPECT_EQ(current, 1);
  EXPECT_EQ(starts, found.ended);
  EXPECT_EQ(found.ended + found.failed, 40);
  EXPECT_TRUE(host.lines.empty());  // nothing is logged
  EXPECT_EQ(fit.FitA, before.FitA);
  EXPECT_EQ(fit.FitChiSq, before.FitChiSq);
  EXPECT_EQ(fit.FitCovar, before.FitCovar);
  EXPECT_TRUE(MinimumSummary(found, {.starts = 40}).starts_with("A better minimum was found"));
}

TEST(CheckMinimum, OffersNothingBetterThanTheBest) {
  FitState best = WaveFit(10.2);
  RecordingHost host;
  const MinimumOutcome found = CheckMinimum(best, {.starts = 40}, kNoStop, host);
  EXPECT_FALSE(found.better);
  EXPECT_TRUE(found.minima[0].current);
  EXPECT_TRUE(MinimumSummary(found, {}).starts_with("No better minimum was found."));
}

// One place however many fits end there, in a model whose K and weight hang together.
TEST(CheckMinimum, TakesEndsOfOneMinimumForOne) {
  for (const double noise : {0.001, 0.0}) {
    FitState fit = MakeProblem({.modelIndex = 2, .sets = 3, .points = 60}, TypicalShared(2));
    NormalNoise deviates(5, noise);
    FillSignal(fit, [&](int) { return deviates(); });
    fit.FitIA(fit.SharedBase() + 2) = 0;
    RecordingHost host;
    ASSERT_EQ(SettleFit(fit, host, 500), FitRest::kSettled);
    const MinimumOutcome found = CheckMinimum(fit, {.starts = 12}, kNoStop, host);
    ASSERT_FALSE(found.minima.empty());
    EXPECT_FALSE(found.better) << noise;
    EXPECT_TRUE(found.minima[0].current) << noise;
    EXPECT_GE(found.minima[0].starts, 10) << noise;
    EXPECT_EQ(found.minima[0].parameters(fit.SharedBase() + 2), 2.0);  // held
  }
}

// A linked dataset, whose own concentrations stand still, says what its target does.
TEST(CheckMinimum, GivesLinkedDatasetsTheConcentrationsOfTheirTargets) {
  FitState fit =
      MakeProblem({.modelIndex = 7, .sets = 4, .points = 60}, {9000.0, 3000.0, 2.0, 0.6});
  for (int d = 2; d <= 4; d += 2) {
    fit.RefLink[static_cast<std::size_t>(d - 1)] = static_cast<std::int16_t>(d - 2);
    fit.SetEpsB(d - 1) = 0.1;
    fit.SetEpsA(d) = 0.15;
    fit.FitIA(4 + d) = fit.FitIA(8 + d) = 0;
  }
  for (const int l : {1, 2, 3, 4, 13, 14}) fit.FitIA(l) = 0;  // baselines and weights
  NormalNoise noise(5, 0.002);
  FillSignal(fit, [&](int) { return noise(); });
  RecordingHost host;
  ASSERT_EQ(SettleFit(fit, host, 500), FitRest::kSettled);
  const MinimumOutcome found = CheckMinimum(fit, {.starts = 20}, kNoStop, host);
  ASSERT_FALSE(found.minima.empty());
  const Array1<double>& values = found.minima[0].parameters;
  for (const int l : {6, 8, 10, 12}) EXPECT_EQ(values(l), values(l - 1)) << l;
}

TEST(CheckMinimum, DoesNotDependOnTheThreads) {
  FitState fit = WorseFit();
  RecordingHost host;
  const MinimumOutcome one =
      CheckMinimum(fit, {.starts = 30, .seed = 7, .threads = 1}, kNoStop, host);
  const MinimumOutcome many =
      CheckMinimum(fit, {.starts = 30, .seed = 7, .threads = 8}, kNoStop, host);
  const MinimumOutcome other = CheckMinimum(fit, {.starts = 30, .seed = 8}, kNoStop, host);
  ASSERT_EQ(one.minima.size(), many.minima.size());
  EXPECT_EQ(one.failed, many.failed);
  bool differs = one.minima.size() != other.minima.size();
  for (std::size_t k = 0; k < one.minima.size(); ++k) {
    EXPECT_EQ(one.minima[k].sum, many.minima[k].sum);
    EXPECT_EQ(one.minima[k].starts, many.minima[k].starts);
    EXPECT_EQ(one.minima[k].current, many.minima[k].current);
    EXPECT_EQ(one.minima[k].parameters, many.minima[k].parameters);
    differs = differs || one.minima[k].starts != other.minima[k].starts ||
              one.minima[k].sum != other.minima[k].sum;
  }
  EXPECT_TRUE(differs);
}

TEST(CheckMinimum, AStopEndsItAndKeepsTheFit) {
  FitState fit = MakeProblem({.modelIndex = 9, .sets = 6, .points = 150}, TypicalShared(9));
  NormalNoise noise(5, 0.005);
  FillSignal(fit, [&](int) { return noise(); });
  RecordingHost host;
  SettleFit(fit, host, 500);
  const Array1<double> before = fit.FitA;
  StopFlag stop;
  host.onEvents = [&] { stop.Raise(); };
  const MinimumOutcome found = CheckMinimum(fit, {.starts = 10000}, stop, host);
  EXPECT_TRUE(found.stopped);
  EXPECT_LT(found.ended + found.failed, 10000);
  EXPECT_EQ(fit.FitA, before);
  EXPECT_TRUE(MinimumSummary(found, {.starts = 10000}).starts_with("Stopped: "));
}

TEST(CheckMinimum, CountsStartsThatFail) {
  static const auto fragile = [](FitState& fit, int i, const Array1<double>& a, double& result) {
    Wave(fit, i, a, result);
    if (std::fabs(a(3) - kTrueRate) > 2.0) throw ArithmeticFault(FaultKind::kOverflow);
  };
  Model model = kWave;
  model.funcs = fragile;
  FitState fit = WaveFit(10.2);
  fit.FitModel = &model;
  RecordingHost host;
  const MinimumOutcome found = CheckMinimum(fit, {.starts = 40}, kNoStop, host);
  EXPECT_GT(found.failed, 0);
  EXPECT_GT(found.ended, 0);
  EXPECT_EQ(found.ended + found.failed, 40);
  EXPECT_FALSE(found.better);
}

// A search around the worse of two minima walks over into the better one.
TEST(CalcConfidence, RemembersABetterMinimumThatItMeets) {
  FitState fit = MakeProblem({.modelIndex = 2, .sets = 3, .points = 60}, TypicalShared(2));
  NormalNoise noise(5, 0.005);
  FillSignal(fit, [&](int) { return noise(); });
  fit.FitIA(fit.SharedBase() + 2) = 0;
  RecordingHost host;
  SettleFit(fit, host, 500);
  const ConfidenceRequest request{95.46, RatioMethod::kParameters, {true, true, true}};
  EXPECT_FALSE(CalcConfidence(fit, request, kNoStop, host).better);
  const double best = fit.FitChiSq;
  const Array1<double> values = fit.FitA;
  fit.FitA(1) += 0.05;  // away from the minimum, as if the fit had ended there
  fit.FitChiSq = fit.Memory.bestChiSq = 1.5 * best;
  const ConfidenceOutcome found = CalcConfidence(fit, request, kNoStop, host);
  ASSERT_TRUE(found.better);
  EXPECT_NEAR(found.better->sum, best, 0.05 * best);
  EXPECT_NEAR(found.better->parameters(1), values(1), 0.03);  // on the way back from 0.05 off
  EXPECT_EQ(host.CountLinesWith("etter"), 0);                 // no line of the log tells of it
  EXPECT_TRUE(BetterFitText(fit, *found.better).starts_with("A better minimum was met"));
}

}  // namespace
