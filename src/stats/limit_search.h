// The limits of one parameter: where the sum of squares of a fit with the parameter held has grown
// by the variance ratio.
#pragma once

namespace quorvane {

class Host;
struct FitState;

// What is sought: where the sum of squares with the parameter held is Chi times Ratio.
struct SoughtLimit {
  int j = 0;           // index of the parameter in FitA
  double Chi = 0.0;    // the sum of squares of the fit
  double Ratio = 0.0;  // above 1
};

// Where a walk came to, and the sums of squares there.
struct LimitBracket {
  double Upper = 0.0;
  double Lower = 0.0;
  double ChiUpper = 0.0;
  double ChiLower = 0.0;
};

// Walks the parameter away from its best value, up and then down, in growing steps until the sum of
// squares exceeds the level, at most 30 fits each way; each fit starts from where the last one
// ended. FitChiSq is that of the fit again afterwards. A stop by the user ends it at once; then
// only FitKeepGoing() tells, and what comes back is not to be used.
// Kept on purpose: steps are proportional to the value, so a parameter of 0 never moves; the first
// factor up is 1.003 and down 1.004.
// Throws as FitData.
LimitBracket BracketParameter(FitState& fit, Host& host, const SoughtLimit& sought);

// The limit between the best value X1 and X2, where the sum is ChiAtX2, by bisection: to 3e-5 of
// the parameter or 40 halvings, which are logged. 0 with a line in the log if the limit does not
// lie between; the last value tried below the level, or 0, if the user stops it.
// ChiAtX2 becomes the sum at the limit. Throws as FitData.
double BisectParameter(FitState& fit, Host& host, const SoughtLimit& sought, double X1, double X2,
                       double& ChiAtX2);

}  // namespace quorvane
