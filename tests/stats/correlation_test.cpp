// Faults caught here: a coefficient from the wrong elements, held parameters that take part, a
// column of the table out of line.
#include "stats/correlation.h"

#include "fit/fit_state.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

// The second parameter is held: its row and column of the covariance matrix are 0.
TEST(LogCrossCorrelation, WritesAlignedColumns) {
  FitState fit;
  fit.FitMA = 3;
  for (const char* name : {"Offset(1)", "RefC(1)", "MW"}) fit.FitParamNames.Append(name);
  fit.FitCovar = Matrix1<double>(3, 3);
  fit.FitCovar(1, 1) = 4.0;
  fit.FitCovar(3, 3) = 9.0;
  fit.FitCovar(1, 3) = fit.FitCovar(3, 1) = -4.5;
  RecordingHost host;
  LogCrossCorrelation(fit, host);
  const std::string rule(30, '=');
  EXPECT_EQ(host.lines,
            (std::vector<std::string>{" ", rule, "Cross-Correlation Coefficients", rule,
                                      "            Offset(1)   RefC(1)      MW     ",
                                      "  Offset(1)   1.000      0.000     -0.750   ",
                                      "    RefC(1)   0.000      0.000      0.000   ",
                                      "         MW  -0.750      0.000      1.000   ", " "}));
}

}  // namespace
