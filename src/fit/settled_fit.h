// A fit that goes on past the absolute end rule of FitData, until it is at rest: a Newton step
// would neither lower the sum of squares nor move a parameter by more than a trace of its standard
// error. Source: Marquardt, J. SIAM 11 (1963) 431, with the damping led by the ratio of the fall to
// its forecast (Madsen, Nielsen & Tingleff, Methods for Non-Linear Least Squares Problems, 2004,
// section 3.2) and scaled by the greatest curvature met (More, Lecture Notes in Mathematics 630
// (1978) 105). Where no step brings the fall that the derivatives promise it is not at rest: the
// derivatives are taken anew by finer steps, and it goes on with those.
#pragma once

#include <vector>

namespace quorvane {

class Host;
struct FitState;

enum class FitRest {
  kSettled,       // at rest, or nothing lowers the sum any more
  kUndetermined,  // the sum stands still, and the data do not determine every parameter
  kRunaway,       // the sum stands still while a parameter goes on towards infinity
  kTooLong,       // the limit on the steps came first
  kStopped,       // the flag of the state was raised; no covariance
};

// How a fit came to its end.
struct RestEnd {
  FitRest rest = FitRest::kTooLong;
  int steps = 0;                  // tried; the pass at the start values is not among them
  double startSum = 0.0;          // of squares, at the start values
  std::vector<int> undetermined;  // indices of FitA, from 1; not after a stop
  int runaway = 0;                // index of FitA of one that went far and would go on, or 0
  bool upwards = false;           // where it runs to
};

// Steps from FitA, at most `mostSteps` of them. Needs what FitData needs. Afterwards, however it
// ended, FitA holds the best parameters and FitChiSq their sum of squares; FitCovar the covariance
// matrix, in which parameters that are not determined have zeros. A step that meets an arithmetic
// fault is tried again shorter. Nothing is logged. Throws ArithmeticFault for a fault at the start
// values, and SubscriptFault (more than 256 parameters), CurrentProc set.
RestEnd BringToRest(FitState& fit, Host& host, int mostSteps);

// The same, where only the way it ended is wanted.
FitRest SettleFit(FitState& fit, Host& host, int mostSteps);

// The standard error beyond which the data count as not determining FitA(l): no number with such an
// error makes sense. Infinite for a baseline and a virial coefficient.
double GreatestError(const FitState& fit, int l);

// Whether that end is one where the sum of squares stands still.
constexpr bool SumStandsStill(FitRest rest) {
  return rest == FitRest::kSettled || rest == FitRest::kUndetermined || rest == FitRest::kRunaway;
}

}  // namespace quorvane
