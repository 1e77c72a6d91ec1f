#include "stats/limit_search.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/host.h"
#include "fit/fit_state.h"
#include "fit/levmarq.h"

namespace quorvane {

namespace {

bool IsNegativeInSingle(double x) {
  return x < 0.0 && !IsZeroInSingle(x);
}

// A fit with parameter j held at x; false if the user stopped it.
bool FitHeldAt(FitState& fit, Host& host, SearchPhase phase, int j, double x) {
  host.ReportProgress({.what = fit.FitParamNames(j), .phase = phase, .trial = x});
  fit.FitA(j) = x;
  fit.FitIA(j) = 0;
  int iterations = 0;
  FitData(fit, host, iterations);
  return iterations != 0;
}

// One way of the walk, `sign` +1 up or -1 down, `limit` being moved. False after a stop.
bool Walk(FitState& fit, Host& host, const SoughtLimit& sought, double sign, double factor,
          double& limit) {
  const double level = sought.Chi * sought.Ratio;
  constexpr int kMostSteps = 30;
  constexpr double kGrowth = 1.5;
  for (int step = 0; step < kMostSteps; ++step) {
    host.RunPendingEvents();
    if (!FitHeldAt(fit, host, SearchPhase::kBracketing, sought.j, limit)) return false;
    double share = 0.0;
    CheckArithmetic([&] { share = level / fit.FitChiSq; });
    if (share < 1.0) break;
    CheckArithmetic([&] {
      limit += sign * std::fabs(limit) * (factor - 1.0);
      if (step + 1 < kMostSteps) factor = std::pow(factor, kGrowth);  // the next would overflow
    });
  }
  return true;
}

}  // namespace

LimitBracket BracketParameter(FitState& fit, Host& host, const SoughtLimit& sought) {
  constexpr double kFirstUp = 1.003;
  constexpr double kFirstDown = 1.004;
  const double best = fit.FitA(sought.j);
  LimitBracket bracket;
  bracket.Upper = best + std::fabs(best) * (kFirstUp - 1.0);
  bracket.Lower = best - std::fabs(best) * (kFirstUp - 1.0);
  if (!Walk(fit, host, sought, 1.0, kFirstUp, bracket.Upper)) return bracket;
  bracket.ChiUpper = fit.FitChiSq;
  if (!Walk(fit, host, sought, -1.0, kFirstDown, bracket.Lower)) return bracket;
  bracket.ChiLower = fit.FitChiSq;
  fit.FitChiSq = sought.Chi;
  return bracket;
}

double BisectParameter(FitState& fit, Host& host, const SoughtLimit& sought, double X1, double X2,
                       double& ChiAtX2) {
  constexpr int kMostHalvings = 40;
  constexpr double kClose = 3e-05;
  const double g1 = 1.0 - sought.Ratio;
  double g2 = 0.0;
  CheckArithmetic([&] { g2 = ChiAtX2 / sought.Chi - sought.Ratio; });
  if (!IsNegativeInSingle(g1 * g2)) {
    host.PrintIt("Root must be bracketed for bisection.");
    return 0.0;
  }
  const bool rising = IsNegativeInSingle(g1);
  double r = rising ? X1 : X2;
  double d = rising ? X2 - X1 : X1 - X2;
  double passed = 0.0;  // the last value tried that lies below the level
  for (int i = 1; i <= kMostHalvings; ++i) {
    d /= 2.0;
    const double x = r + d;
    if (!FitHeldAt(fit, host, SearchPhase::kBisection, sought.j, x)) return passed;
    double gm = 0.0;
    double share = 0.0;
    CheckArithmetic([&] {
      gm = fit.FitChiSq / sought.Chi - sought.Ratio;
      share = std::fabs(d / x);
    });
    if (gm <= 0.0 || IsZeroInSingle(gm)) passed = r = x;
    if (gm == 0.0 || share < kClose) {
      ChiAtX2 = fit.FitChiSq;
      return r;
    }
  }
  host.PrintIt("too many bisections");
  return r;
}

}  // namespace quorvane
