// Faults caught here: limits that are not where the profile of the sum of squares crosses the
// level, searches that disturb each other or the fit, a stop or a fault that leaves half a result.
#include "stats/confidence.h"

#include <cmath>

#include "fit/levmarq.h"
#include "stats/limit_search.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

namespace {

// A finished fit at the least sum of squares. The signal is strong, because the rule that ends a
// fit is absolute: limits are then good to kLimit of the parameter.
constexpr double kSignal = 100.0;
constexpr double kLimit = 1e-4;

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

// Least sum of squares of the ideal model at a given buoyant weight: a straight line in
// exp(s W x) for each dataset, solved in closed form.
double ProfileSum(const FitState& fit, double weight) {
  double total = 0.0;
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    double n = 0, sx = 0, sy = 0, sxx = 0, sxy = 0, syy = 0;
    for (int i = fit.SetFirstPoint(d); i < fit.SetFirstPoint(d) + fit.SetPointCount(d); ++i) {
      const double x = std::exp(weight * fit.SetOmegaTerm(d) * fit.FitX(i));
      const double y = fit.FitY(i);
      n += 1;
      sx += x;
      sy += y;
      sxx += x * x;
      sxy += x * y;
      syy += y * y;
    }
    const double slope = (n * sxy - sx * sy) / (n * sxx - sx * sx);
    total += syy - sy * sy / n - slope * (sxy - sx * sy / n);
  }
  return total;
}

// Where the profile reaches `level` between `low` and `high`, by plain bisection.
double ProfileLimit(const FitState& fit, double level, double best, double far) {
  for (int k = 0; k < 80; ++k) {
    const double middle = (best + far) / 2.0;
    (ProfileSum(fit, middle) < level ? best : far) = middle;
  }
  return best;
}

TEST(CalcConfidence, FindsWhereTheProfileReachesTheLevel) {
  for (const RatioMethod method : {RatioMethod::kEqualFreedom, RatioMethod::kParameters}) {
    FitState fit = FinishedFit(0);
    RecordingHost host;
    const ConfidenceOutcome outcome = CalcConfidence(fit, {95.46, method, {true}}, host);
    ASSERT_EQ(outcome.intervals.size(), 1U);
    const double best = fit.FitA(fit.FitMA);
    const double level = outcome.ratio * ProfileSum(fit, best);
    EXPECT_NEAR(outcome.intervals[0].upper, ProfileLimit(fit, level, best, 2.0 * best),
                kLimit * best);
    EXPECT_NEAR(outcome.intervals[0].lower, ProfileLimit(fit, level, best, 0.5 * best),
                kLimit * best);
  }
}

TEST(CalcConfidence, ThreadsDoNotDisturbEachOtherOrTheFit) {
  FitState fit = FinishedFit(2);
  const FitState before = fit;
  RecordingHost host;
  const ConfidenceOutcome all =
      CalcConfidence(fit, {95.46, RatioMethod::kParameters, {true, true, true}}, host);
  ASSERT_EQ(all.intervals.size(), 2U);  // the stoichiometry is held
  EXPECT_EQ(all.intervals[0].name, "Buoyant MW");
  EXPECT_EQ(all.intervals[1].name, "LnK1");
  for (std::size_t k = 0; k < 2; ++k) {
    std::vector<bool> one(3, false);
    one[2 * k] = true;
    const ConfidenceOutcome alone =
        CalcConfidence(fit, {95.46, RatioMethod::kParameters, one}, host);
    ASSERT_EQ(alone.intervals.size(), 1U);
    EXPECT_EQ(alone.intervals[0].lower, all.intervals[k].lower);
    EXPECT_EQ(alone.intervals[0].upper, all.intervals[k].upper);
  }
  EXPECT_EQ(fit.FitA, before.FitA);
  EXPECT_EQ(fit.FitIA, before.FitIA);
  EXPECT_EQ(fit.FitChiSq, before.FitChiSq);
  EXPECT_EQ(fit.FitCovar, before.FitCovar);
  EXPECT_FALSE(fit.FitKeepGoing);
  EXPECT_EQ(host.CountLinesWith("CalcCI Time: "), 3);
}

TEST(CalcConfidence, AStopLeavesNoHalfResult) {
  FitState fit = FinishedFit(2);
  RecordingHost host;
  host.onEvents = [&] {
    if (host.eventRuns > 1) fit.FitKeepGoing = false;
  };
  const ConfidenceOutcome outcome =
      CalcConfidence(fit, {95.46, RatioMethod::kParameters, {true, false, true}}, host);
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
      CalcConfidence(fit, {95.46, RatioMethod::kParameters, {true}}, host);
  EXPECT_EQ(outcome.error, "Division by zero");
  const std::string rule(42, '=');
  EXPECT_EQ(host.lines.back(), rule +
                                   "\r\n!Error in Calculating Confidence Interval!\r\n!Error# 11 "
                                   ":: Division by zero\r\n" +
                                   rule);
}

// Kept on purpose: a value of 0 never moves.
TEST(MissingLimitsText, NamesLimitsThatAreTheValueItself) {
  ConfidenceOutcome outcome;
  outcome.intervals = {{"MW", 5.0, 4.0, 6.0}, {"LnK1", 2.0, 0.0, 3.0}};
  EXPECT_EQ(MissingLimitsText(outcome), "");  // the log speaks of a limit of 0
  outcome.intervals.push_back({"LnK2", 2.0, 1.0, 2.0});
  outcome.intervals.push_back({"Alpha", 0.1, 0.1, 0.2});
  EXPECT_NE(MissingLimitsText(outcome).find("find it: LnK2, Alpha. "), std::string::npos);
}

TEST(BracketParameter, StaysAtAValueOfZero) {
  FitState fit = FinishedFit(0);
  fit.FitA(1) = 0.0;
  RecordingHost host;
  double upper = 1.0, lower = 1.0, chiUpper = 0.0, chiLower = 0.0;
  BracketParameter(fit, host, fit.FitChiSq * 10.0, 2.0, 1, upper, lower, chiUpper, chiLower);
  EXPECT_EQ(upper, 0.0);
  EXPECT_EQ(lower, 0.0);
  EXPECT_EQ(BisectParameter(fit, host, 10.0 * chiUpper, 2.0, 1, 0.0, 0.0, chiUpper), 0.0);
  EXPECT_EQ(host.lines.back(), "Root must be bracketed for bisection.");
}

}  // namespace
