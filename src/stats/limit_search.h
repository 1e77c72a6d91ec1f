// The limits of one parameter: where the sum of squares of a fit with the parameter held has grown
// by the variance ratio.
#pragma once

namespace quorvane {

class Host;
struct FitState;

// Walks parameter j (index in FitA) away from its best value, up and then down, in growing steps
// until the sum of squares exceeds ChiBest times Ratio, at most 30 fits each way; each fit starts
// from where the last one ended. Upper and Lower are where it came to, ChiUpper and ChiLower the
// sums there. FitChiSq is ChiBest again afterwards. A stop by the user ends it at once; then only
// FitKeepGoing() tells, and the outputs are not to be used.
// Kept on purpose: steps are proportional to the value, so a parameter of 0 never moves; the first
// factor up is 1.003 and down 1.004.
// Throws as FitData.
void BracketParameter(FitState& fit, Host& host, double ChiBest, double Ratio, int j, double& Upper,
                      double& Lower, double& ChiUpper, double& ChiLower);

// The limit of parameter j between its best value X1 and X2, where the sum is ChiAtX2, by
// bisection: to 3e-5 of the parameter or 40 halvings, which are logged. 0 with a line in the log if
// the limit does not lie between; the last value tried below the level, or 0, if the user stops it.
// ChiAtX2 becomes the sum at the limit. Throws as FitData.
double BisectParameter(FitState& fit, Host& host, double ChiBest, double Ratio, int j, double X1,
                       double X2, double& ChiAtX2);

}  // namespace quorvane
