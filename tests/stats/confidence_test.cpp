// Faults caught here: limits that are not where the profile of the sum of squares crosses the
// level, a changed constant of the search, searches that disturb each other or the fit, a stop or a
// fault that leaves half a result.
#include "stats/confidence.h"

#include <array>
#include <cmath>

#include "fit/levmarq.h"
#include "stats/limit_search.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

// A finished fit at the least sum of squares. The signal is strong, because the rule that ends a
// fit is absolute.
constexpr double kSignal = 100.0;

FitState FinishedFit(int modelIndex) {
  FitState fit =
      MakeProblem({.modelIndex = modelIndex, .sets = 3, .points = 40}, TypicalShared(modelIndex));
  fit.SetEpsA = Array1<double>(3, kSignal);
  NormalNoise noise(3, (modelIndex == 0 ? 0.005 : 0.0005) * kSignal);
  FillSignal(fit, [&](int) { return noise(); });
  if (modelIndex == 2) fit.FitIA(fit.SharedBase() + 2) = 0;
  RecordingHost host;
  int iterations = 0;
  for (int press = 0; press < 3; ++press) FitData(fit, host, iterations);
  return fit;
}

// y = a1 + a2 x + a3 x^2 at x = -9.5, -8.5 ... 9.5: with a1 and a2 fitted anew the sum of squares
// is 100 `noise`^2 + 17556 (a3 - 1)^2 wherever a3 is held.
void Parabola(FitState& fit, int i, const Array1<double>& a, double& result) {
  fit.CurrentProc = "Parabola";
  const double x = fit.FitX(i);
  result = a(1) + a(2) * x + a(3) * x * x;
}
constexpr std::array kThird = {
    ModelParameter{.shared = &shared::kMW, .name = "p", .caption = " Buoyant MW ", .tag = ""}};
const Model kParabola = {.name = "Parabola",
                         .funcsName = "Parabola",
                         .partialsName = "Parabola",
                         .parameters = kThird,
                         .terms = nullptr,
                         .funcs = Parabola,
                         .steps = {.firstStep = 1e-3, .stepAtZero = 1e-3}};

FitState ParabolaFit(double noise) {
  std::vector<double> x, y;
  for (int k = 0; k < 20; ++k) {
    const double pattern[] = {1.0, -3.0, 3.0, -1.0};  // meets no parabola
    x.push_back(k - 9.5);
    y.push_back(5.0 + 2.0 * x[k] + x[k] * x[k] + noise * pattern[k % 4]);
  }
  FitState fit = MakeCurveProblem(kParabola, x, y, {5.0, 2.0, 1.0});
  for (int l = 1; l <= 3; ++l) fit.FitParamNames.Append("p");
  RecordingHost host;
  int iterations = 0;
  FitData(fit, host, iterations);
  return fit;
}

// The search as a whole on a profile known in closed form, 3 parameters and 17 degrees of freedom.
// Ratios and limits come from a program of its own; a limit is the last step of the bisection, so a
// change of any constant on the way moves it. The first noise puts the lower limit at 6e-10, where
// 40 halvings do not come close enough.
TEST(CalcConfidence, EndsOnTheStepsOfItsSearch) {
  constexpr double kRounding = 1e-13;
  const struct {
    double noise;
    RatioMethod method;
    double ratio, lower, upper;
    std::vector<std::string> lines;  // behind the head, before the time
  } cases[] = {
      {11.496134768101356,
       RatioMethod::kEqualFreedom,
       2.328378625681584,
       6.005557989697484e-10,
       1.999994702415649,
       {"F(NDF,NDF,1-P) = 2.3284", "too many bisections",
        "Buoyant MW = 1.0000 [6.006E-10,2.0000]"}},
      {2.28,
       RatioMethod::kParameters,
       1.61192018860642,
       0.8654060787080863,
       1.1346056190130525,
       {"1 + (Nparm/NDF)*F(Nparm,NDF,1-P) = 1.6119", "Buoyant MW = 1.0000 [0.8654,1.1346]"}}};
  for (const auto& test : cases) {
    FitState fit = ParabolaFit(test.noise);
    RecordingHost host;
    const ConfidenceOutcome found =
        CalcConfidence(fit, {95.46, test.method, {true}}, kNoStop, host);
    EXPECT_NEAR(found.ratio, test.ratio, kRounding);
    ASSERT_EQ(found.intervals.size(), 1U);
    EXPECT_NEAR(found.intervals[0].lower, test.lower, kRounding);
    EXPECT_NEAR(found.intervals[0].upper, test.upper, kRounding);
    ASSERT_EQ(host.lines.size(), test.lines.size() + 2);
    EXPECT_EQ(host.lines[0], "\r\nVariance Ratio at the 95.46% confidence level:");
    for (std::size_t k = 0; k < test.lines.size(); ++k) {
      EXPECT_EQ(host.lines[k + 1], test.lines[k]);
    }
  }
}

TEST(CalcConfidence, ThreadsDoNotDisturbEachOtherOrTheFit) {
  FitState fit = FinishedFit(2);
  const FitState before = fit;
  RecordingHost host;
  const ConfidenceOutcome all =
      CalcConfidence(fit, {95.46, RatioMethod::kParameters, {true, true, true}}, kNoStop, host);
  ASSERT_EQ(all.intervals.size(), 2U);  // the stoichiometry is held
  EXPECT_EQ(all.intervals[0].name, "Buoyant MW");
  EXPECT_EQ(all.intervals[1].name, "LnK1");
  for (std::size_t k = 0; k < 2; ++k) {
    std::vector<bool> one(3, false);
    one[2 * k] = true;
    const ConfidenceOutcome alone =
        CalcConfidence(fit, {95.46, RatioMethod::kParameters, one}, kNoStop, host);
    ASSERT_EQ(alone.intervals.size(), 1U);
    EXPECT_EQ(alone.intervals[0].lower, all.intervals[k].lower);
    EXPECT_EQ(alone.intervals[0].upper, all.intervals[k].upper);
  }
  EXPECT_EQ(fit.FitA, before.FitA);
  EXPECT_EQ(fit.FitIA, before.FitIA);
  EXPECT_EQ(fit.FitChiSq, before.FitChiSq);
  EXPECT_EQ(fit.FitCovar, before.FitCovar);
  EXPECT_EQ(host.CountLinesWith("CalcCI Time: "), 3);
}

TEST(CalcConfidence, AStopLeavesNoHalfResult) {
  FitState fit = FinishedFit(2);
  RecordingHost host;
  StopFlag stop;
  host.onEvents = [&] {
    if (host.eventRuns > 1) stop.Raise();
  };
  const ConfidenceOutcome outcome =
      CalcConfidence(fit, {95.46, RatioMethod::kParameters, {true, false, true}}, stop, host);
  EXPECT_TRUE(outcome.stopped);
  // The first search may have ended before the stop was heard; the second is not waited for.
  EXPECT_LE(outcome.intervals.size(), 1U);
  EXPECT_EQ(host.CountLinesWith(" ["), static_cast<int>(outcome.intervals.size()));
  const std::string rule(40, '=');
  ASSERT_GE(host.lines.size(), 3U);
  EXPECT_EQ(host.lines[host.lines.size() - 3], rule + "\r\n");
  EXPECT_EQ(host.lines[host.lines.size() - 2], "** User Terminated Calculation of CIs **");
  EXPECT_EQ(host.lines.back(), "\r\n" + rule);
  EXPECT_EQ(host.statuses.back(), " ");
}

TEST(CalcConfidence, AFaultIsLoggedAndEndsIt) {
  FitState fit = FinishedFit(0);
  fit.FitIA = Array1<std::int16_t>(fit.FitMA, 0);
  fit.FitIA(fit.FitMA) = 1;  // one fitted parameter: the F quantile divides by zero
  RecordingHost host;
  const ConfidenceOutcome outcome =
      CalcConfidence(fit, {95.46, RatioMethod::kParameters, {true}}, kNoStop, host);
  EXPECT_EQ(outcome.error, "Division by zero");
  const std::string rule(42, '=');
  EXPECT_EQ(host.lines.back(), rule +
                                   "\r\n!Error in Calculating Confidence Interval!\r\n!Error# 11 "
                                   ":: Division by zero\r\n" +
                                   rule);
  // Without an extinction coefficient a reference concentration has no influence, and no sum is as
  // large as the one that is sought: each fit says so, until the weight overflows.
  fit = FinishedFit(0);
  fit.SetEpsA(2) = 0.0;
  fit.FitChiSq = 1e300;
  host.lines.clear();
  EXPECT_EQ(CalcConfidence(fit, {95.46, RatioMethod::kParameters, {true}}, kNoStop, host).error,
            "Overflow");
  EXPECT_GT(host.CountLinesWith("Singular matrix"), 0);
}

TEST(MissingLimitsText, NamesLimitsThatAreTheValueItself) {
  ConfidenceOutcome outcome;
  outcome.intervals = {{"MW", 5.0, 4.0, 6.0}, {"LnK1", 2.0, 0.0, 3.0}};
  EXPECT_EQ(MissingLimitsText(outcome), "");  // the log speaks of a limit of 0
  outcome.intervals.push_back({"LnK2", 2.0, 1.0, 2.0});
  outcome.intervals.push_back({"Alpha", 0.1, 0.1, 0.2});
  EXPECT_NE(MissingLimitsText(outcome).find("find it: LnK2, Alpha. "), std::string::npos);
}

// Kept on purpose: a value of 0 never moves.
TEST(BracketParameter, StaysAtAValueOfZero) {
  FitState fit = FinishedFit(0);
  fit.FitA(1) = 0.0;
  RecordingHost host;
  LimitBracket found = BracketParameter(fit, host, {1, fit.FitChiSq * 10.0, 2.0});
  EXPECT_EQ(found.Upper, 0.0);
  EXPECT_EQ(found.Lower, 0.0);
  const SoughtLimit beyond{1, 10.0 * found.ChiUpper, 2.0};
  EXPECT_EQ(BisectParameter(fit, host, beyond, 0.0, 0.0, found.ChiUpper), 0.0);
  EXPECT_EQ(host.lines.back(), "Root must be bracketed for bisection.");
}

}  // namespace
