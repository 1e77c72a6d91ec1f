// Faults caught here: a fit called at rest that can go on, or not at rest for rounding's sake; a
// verdict that changes the fit or is no number where the data have no noise.
#include "stats/fit_rest.h"

#include <cmath>

#include "fit/levmarq.h"
#include "fit/settled_fit.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

// Monomer and dimer, N held, in signals of about 0.3 times `scale`.
FitState DimerProblem(double lnK, double noise, double scale) {
  FitState fit = MakeProblem({.modelIndex = 2, .sets = 3, .points = 60}, {7500.0, 2.0, lnK});
  for (int d = 1; d <= 3; ++d) {
    fit.SetEpsA(d) = scale;
    fit.FitA(d) *= scale;
  }
  NormalNoise deviates(5, noise * scale);
  FillSignal(fit, [&](int) { return deviates(); });
  fit.FitIA(fit.SharedBase() + 2) = 0;
  fit.FitParamNames(fit.SharedBase() + 3) = "LnK1        ";
  return fit;
}

enum class Way { kFitted, kSettled, kBoth };

TEST(JudgeRest, SaysHowFarAFitCouldGoOn) {
  const struct {
    const char* what;
    double trueLnK, startLnK, noise, scale;
    Way way;
    int mostSteps;
    std::optional<bool> atRest;
    bool determined;
    const char* reason;
  } cases[] = {
      {"at rest", 1, 1, 0.003, 1, Way::kSettled, 100, true, true, "The fit is at rest."},
      {"fitted from its rest", 1, 1, 0.003, 0.01, Way::kBoth, 100, true, true,
       "The fit is at rest."},
      {"small signals", 1, 2, 0.003, 0.01, Way::kFitted, 100, false, true,
       "The fit is not at rest: going on lowers the sum of squares to "},
      {"a fall that is known though no end is", 1, 2, 0.003, 0.01, Way::kFitted, 4, false, true,
       "The fit is not at rest: "},
      {"no budget", 1, 2, 0.003, 0.01, Way::kFitted, 0, std::nullopt, true,
       "Whether the fit is at rest is not known: 0 steps"},
      {"no noise", 1, 1.1, 0, 1, Way::kBoth, 100, true, true, "The fit is at rest."},
      {"no noise, nor a rest", 1, 1.1, 0, 0.01, Way::kFitted, 100, false, true,
       "The fit is not at rest: "},
      {"a parameter without influence", -40, -40, 0.003, 1, Way::kSettled, 100, true, false,
       "The sum of squares stands still. The data do not determine LnK1."},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    FitState fit = DimerProblem(one.trueLnK, one.noise, one.scale);
    fit.FitA(fit.SharedBase() + 3) = one.startLnK;
    RecordingHost host;
    int iterations = 0;
    if (one.way != Way::kFitted) BringToRest(fit, host, 100);
    if (one.way != Way::kSettled) FitData(fit, host, iterations);
    const Array1<double> values = fit.FitA;
    const RestVerdict verdict = JudgeRest(fit, kNoStop, host, one.mostSteps);
    EXPECT_EQ(verdict.atRest, one.atRest) << verdict.reason;
    EXPECT_EQ(verdict.determined, one.determined);
    EXPECT_EQ(verdict.reason.substr(0, std::string(one.reason).size()), one.reason);
    EXPECT_EQ(RestRemark(verdict).has_value(), !one.atRest.value_or(false) || !one.determined);
    EXPECT_TRUE(std::isfinite(verdict.sumFall) && std::isfinite(verdict.largestMove));
    EXPECT_LE(verdict.sum, AcceptedSum(fit));
    if (!one.determined) {
      EXPECT_EQ(verdict.moved, "LnK1");
    }
    EXPECT_EQ(fit.FitA, values);
  }
}

}  // namespace
