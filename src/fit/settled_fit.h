// A fit that goes on past the absolute end rule of FitData, until the sum of squares stands still.
#pragma once

namespace quorvane {

class Host;
struct FitState;

enum class FitRest {
  kSettled,  // two steps running moved the sum by a relative 1e-8 at most, or none lowers it
  kTooLong,  // the limit on the steps came first
  kStopped,  // the flag of the state was raised; no covariance
};

// The steps of FitData from FitA, with an end that does not depend on the size of the signal; at
// most `mostSteps` of them. Needs what FitData needs. Afterwards FitA holds the best parameters,
// FitChiSq their sum of squares and FitCovar the covariance matrix. Throws as FitData.
FitRest SettleFit(FitState& fit, Host& host, int mostSteps);

}  // namespace quorvane
