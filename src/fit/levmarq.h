// LevMarq: unweighted Levenberg-Marquardt least squares.
// Source: Marquardt, J. SIAM 11 (1963) 431; Bevington & Robinson, Data Reduction and Error
// Analysis for the Physical Sciences, chapter 8.
#pragma once

#include <string>

#include "base/array1.h"

namespace quorvane {

class Host;
struct FitState;

// Runs the whole fit on `fit`; `iterations` used, 0 if the user stopped it. Needs the arrays of
// the assembly. Ends when two passes, counted until the sum of squares rises
// again, moved it by less than 0.001 (absolute). There is no limit on the iterations.
// Afterwards FitA holds the best parameters, FitCovar the covariance matrix (not if stopped), and
// FitChiSq the sum last evaluated, which may be that of a rejected last step: kept on purpose.
// Throws ArithmeticFault or SubscriptFault (more than 256 parameters) with CurrentProc set; FitA
// then holds the last accepted values.
void FitData(FitState& fit, Host& host, int& iterations);

// The sum of squares at FitA, the values that a fit ended with: of the last step that was accepted.
double AcceptedSum(const FitState& fit);

// One Levenberg-Marquardt step; lambda < 0 starts, 0 closes with the covariance. Lambda is tested
// in single precision, so one below about 7e-46 closes too: kept on purpose.
// Updates FitA, FitCovar, FitChiSq, alpha [1..MA][1..MA] and lambda in place.
void MRQMIN1(FitState& fit, Host& host, Matrix1<double>& alpha, double& lambda);

// Curvature alpha [1..mfit][1..mfit], gradient beta [1..mfit][1] and sum of squares over all
// points at parameters a. A model index without routines leaves zeros.
void MRQCOF(FitState& fit, const Array1<double>& a, Matrix1<double>& alpha, Matrix1<double>& beta,
            double& chisq);

// Solves and inverts by Gauss-Jordan elimination, full pivoting: the top left n by n block of a
// becomes its inverse, the m columns of b the solutions. A singular matrix is logged and the
// routine returns with both half eliminated; the caller goes on: kept on purpose.
// Throws ArithmeticFault. Stores its name in `currentProc`.
void GAUSSJ(Matrix1<double>& a, int n, Matrix1<double>& b, int m, std::string& currentProc,
            Host& host);

// Spreads the mfit by mfit block of covar over the ma by ma parameter order; rows and columns of
// held parameters become zero.
void COVSRT(FitState& fit, Matrix1<double>& covar, int ma, int mfit);

}  // namespace quorvane
