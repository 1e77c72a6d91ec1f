// Fits with some parameters held at trial values, each begun from the solution of a neighbour: the
// steps of a continuation along a profile or over a surface.
#pragma once

#include <optional>
#include <vector>

#include "base/array1.h"
#include "fit/fit_state.h"
#include "fit/settled_fit.h"

namespace quorvane {

class StopFlag;

// A fit at rest, if only with some parameters held.
struct RestPoint {
  Array1<double> values;  // in the order of FitA
  double sum = 0.0;       // of squared residuals
};

// Brings `fit` to rest by SettleFit. While parameters run away to infinity, or are not determined,
// the others may not have come to rest: they do with those held, and then all go on together.
// Throws as SettleFit.
FitRest SettleAll(FitState& fit, int mostSteps);

class HeldFit {
 public:
  // Copies the finished `fit`; holds the parameters `held` (indices in FitA).
  HeldFit(const FitState& fit, const std::vector<int>& held, const StopFlag& stop);

  // The rest that a fit of all others from `start` comes to; for rest counts too that 120 further
  // steps lower the sum by less than a ten-thousandth of the variance, as where others run away to
  // infinity. Nothing if it meets a fault, comes to no rest, or is stopped.
  std::optional<RestPoint> Rest(const Array1<double>& start);

  bool Stopped() const { return !fit_.FitKeepGoing(); }

 private:
  bool Descend();

  FitState fit_;
  int freedom_ = 1;
};

// The values at `share` of the way from `from` (0) to `to` (1); beyond them outside of 0 to 1.
Array1<double> OnLine(const Array1<double>& from, const Array1<double>& to, double share);

}  // namespace quorvane
