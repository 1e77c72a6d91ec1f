#include "fit/settled_fit.h"

#include <algorithm>
#include <cmath>

#include "base/host.h"
#include "fit/fit_state.h"
#include "fit/levmarq.h"
#include "fit/model_pass.h"

namespace quorvane {

namespace {

constexpr double kSameSum = 1e-8;       // relative
constexpr double kLeastLambda = 1e-12;  // steps of Newton; far above what closes a fit
constexpr double kMostLambda = 1e12;    // a step that is nothing

// Steps until the sum stands still.
FitRest Descend(FitState& fit, Host& host, Matrix1<double>& alpha, double& lambda, int mostSteps) {
  constexpr int kStillToEnd = 2;
  int still = 0;
  for (int step = 1; step <= mostSteps; ++step) {
    const double best = fit.Memory.bestChiSq;
    MRQMIN1(fit, host, fit.FitA, fit.FitCovar, alpha, fit.FitChiSq, lambda);
    host.ReportProgress({.what = "Fit", .iteration = step, .sumOfSquares = fit.Memory.bestChiSq});
    if (!fit.FitKeepGoing()) return FitRest::kStopped;
    still = std::fabs(fit.FitChiSq - best) <= kSameSum * best ? still + 1 : 0;
    if (still == kStillToEnd || lambda > kMostLambda) return FitRest::kSettled;
    lambda = std::max(lambda, kLeastLambda);
  }
  return FitRest::kTooLong;
}

}  // namespace

FitRest SettleFit(FitState& fit, Host& host, int mostSteps) {
  fit.FitCovar = Matrix1<double>(fit.FitMA, fit.FitMA);
  Matrix1<double> alpha(fit.FitMA, fit.FitMA);
  fit.CurrentProc = "SettleFit";
  PreparePass(fit);
  double lambda = -1.0;
  MRQMIN1(fit, host, fit.FitA, fit.FitCovar, alpha, fit.FitChiSq, lambda);
  const FitRest rest = Descend(fit, host, alpha, lambda, mostSteps);
  fit.FitChiSq = fit.Memory.bestChiSq;
  if (rest == FitRest::kStopped) return rest;
  lambda = 0.0;
  MRQMIN1(fit, host, fit.FitA, fit.FitCovar, alpha, fit.FitChiSq, lambda);
  return rest;
}

}  // namespace quorvane
