// The step rule of all numerical derivatives: those of the fit and those of the simulator's fit of
// two loads.
//
// A value F depends on a parameter whose value is a0; F0 = F(a0). The derivative is the centred
// difference
//
//   dF/da = ((F(a0 + h) - F(a0 - h)) / 2) / h,
//
// and each value chooses its own step h for each parameter:
//
//   1. First step:  h1 = a0 firstStep, or stepAtZero where that product is 0.
//   2. Ratio:       r = |F(a0 + h1) / F0|, or |F(a0 + h1)| where F0 is 0.
//   3. A ratio between kLeastKept and kMostKept keeps the first step: h = h1.
//   4. Otherwise    h = kMostStep a0, if r <= kFlat and a0 is not 0;
//                   h = h1 kWantedRatio / r in all other cases, and if a0 is not 0:
//                       if kMostStep a0 < h, then h = kMostStep a0;
//                       if kLeastStep a0 > h, then h = kLeastStep a0.
//
// Kept on purpose:
//   - r compares with the unmoved value, it is no relative change: a parameter of little effect has
//     an r near 1. Then step 4 asks for about firstStep a0 / 100, which is less than the least
//     step, so that nearly every derivative is taken with h = a0 / 1000. fit/pass_kernel.h lives on
//     that.
//   - The two limits compare signed numbers. Where a0 is below 0 their order leaves kLeastStep a0
//     whatever h was.
#pragma once

#include <algorithm>
#include <cmath>

namespace quorvane {

struct StepRule {
  double firstStep = 0.01;    // over the parameter's value
  double stepAtZero = 0.001;  // first step of a parameter that is 0

  // What becomes of a step that is no number, after a ratio of two infinities. The fit keeps it:
  // there the derivative is no number either. The simulator takes the least step, wherever that is
  // not known to be shorter. This is all that its rule has of its own.
  bool leastStepForNaN = false;

  static constexpr double kLeastStep = 0.001;  // over the parameter's value, as the next
  static constexpr double kMostStep = 0.1;
  static constexpr double kLeastKept = 0.0003;  // ratios between these keep the first step
  static constexpr double kMostKept = 0.03;
  static constexpr double kWantedRatio = 0.01;  // what a second step aims at
  static constexpr double kFlat = 1e-5;         // ratios up to this take the greatest step

  double First(double a0) const {
    const double h = a0 * firstStep;
    return h == 0.0 ? stepAtZero : h;
  }

  // The first step of a parameter that is not 0, in least steps.
  double FirstInLeastSteps() const { return firstStep / kLeastStep; }

  static double Least(double a0) { return a0 * kLeastStep; }

  static double Ratio(double f0, double f1) { return std::fabs(f0 == 0.0 ? f1 : f1 / f0); }

  static bool Keeps(double r) { return r < kMostKept && r > kLeastKept; }

  // The step that replaces a first one `h` whose ratio r does not keep it.
  double Second(double a0, double h, double r) const {
    if (r <= kFlat && a0 != 0.0) return a0 * kMostStep;
    h = h * kWantedRatio / r;
    if (a0 == 0.0) return h;
    if (a0 * kMostStep < h) h = a0 * kMostStep;
    if (Least(a0) > h || (leastStepForNaN && std::isnan(h))) h = Least(a0);
    return h;
  }

  // With a0 other than 0, ratios above this lead to the least step: the first step is not kept, and
  // h1 kWantedRatio / r is below the limit.
  double RatioOfLeastStep() const {
    return std::max(kMostKept, firstStep * kWantedRatio / kLeastStep);
  }

  static double CentredDifference(double up, double down, double h) {
    return (up - down) / 2.0 / h;
  }

  // The derivative at a0, where the value is f0. `moved(step)` is F(a0 + step), asked for 2 or 3
  // times.
  template <class Moved>
  double Derivative(double a0, double f0, Moved&& moved) const {
    double h = First(a0);
    double up = moved(h);
    const double r = Ratio(f0, up);
    if (!Keeps(r)) {
      h = Second(a0, h, r);
      up = moved(h);
    }
    return CentredDifference(up, moved(-h), h);
  }
};

}  // namespace quorvane
