// Faults caught here: a coefficient from the wrong elements, held parameters that take part, a
// column of the table out of line.
#include "stats/correlation.h"

#include <cmath>

#include "fit/levmarq.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

namespace {

// A fitted problem of one ideal species in two scans, the first baseline held.
FitState FittedProblem() {
  FitState fit = MakeProblem({.modelIndex = 0}, {7500.0});
  FillSignal(fit, [](int i) { return 0.003 * std::sin(7.0 * i); });
  fit.FitIA(1) = 0;
  RecordingHost host;
  int iterations = 0;
  FitData(fit, host, iterations);
  return fit;
}

// The coefficients again, from the inverse of the normal equations with analytic derivatives.
TEST(CrossCorrelation, IsThatOfTheNormalEquations) {
  constexpr double kSteps = 1e-5;  // what the numeric derivatives of the fit leave
  const FitState fit = FittedProblem();
  Matrix1<double> normal(4, 4);  // baseline 2, ln c of 1 and 2, weight
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    const int d = fit.FitSet(i);
    const double rate = fit.SetOmegaTerm(d) * fit.FitX(i);
    const double signal = std::exp(fit.FitA(2 + d) + fit.FitA(5) * rate);
    const double derivative[4] = {d == 2 ? 1.0 : 0.0, d == 1 ? signal : 0.0, d == 2 ? signal : 0.0,
                                  rate * signal};
    for (int j = 1; j <= 4; ++j) {
      for (int k = 1; k <= 4; ++k) normal(j, k) += derivative[j - 1] * derivative[k - 1];
    }
  }
  Matrix1<double> none(4, 1);
  std::string proc;
  RecordingHost host;
  GAUSSJ(normal, 4, none, 1, proc, host);
  const Matrix1<double> found = CrossCorrelation(fit);
  for (int j = 1; j <= 4; ++j) {
    for (int k = 1; k <= 4; ++k) {
      EXPECT_NEAR(found(j + 1, k + 1), normal(j, k) / std::sqrt(normal(j, j) * normal(k, k)),
                  kSteps);
    }
    EXPECT_EQ(found(1, j), 0.0);  // the held one
    EXPECT_EQ(found(j, 1), 0.0);
  }
}

TEST(LogCrossCorrelation, WritesAlignedColumns) {
  FitState fit;
  fit.FitMA = 2;
  fit.FitParamNames.Append("Offset(1)");
  fit.FitParamNames.Append("MW");
  fit.FitCovar = Matrix1<double>(2, 2, 4.0);
  fit.FitCovar(1, 2) = fit.FitCovar(2, 1) = -3.0;
  RecordingHost host;
  LogCrossCorrelation(fit, host);
  const std::string rule(30, '=');
  EXPECT_EQ(host.lines, (std::vector<std::string>{" ", rule, "Cross-Correlation Coefficients", rule,
                                                  "            Offset(1)     MW     ",
                                                  "  Offset(1)   1.000     -0.750   ",
                                                  "         MW  -0.750      1.000   ", " "}));
}

}  // namespace
