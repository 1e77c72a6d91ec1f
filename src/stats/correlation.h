// Cross-correlation coefficients of the parameters of a finished fit.
#pragma once

#include <string>

#include "base/array1.h"

namespace quorvane {

class Host;
struct FitState;

// c(i, j) = covar(i, j) / sqrt(covar(i, i) covar(j, j)) [1..MA][1..MA]; 0 where one of the three is
// 0, so in the rows and columns of held parameters. Needs FitCovar after the closing step.
// Throws ArithmeticFault for a negative product on the diagonal.
// Source: Bevington & Robinson, Data Reduction and Error Analysis for the Physical Sciences, ch. 3.
Matrix1<double> CrossCorrelation(const FitState& fit);

// "0.000" of a coefficient, behind a blank or a sign: as the grid shows it.
std::string CoefficientText(double coefficient);

// Whether the coefficient c(i, j) is to be pointed out: critical < |c| < 1, off the diagonal.
bool IsCritical(const Matrix1<double>& coefficients, int i, int j, double critical);

// Writes the coefficients of all parameters to the log as a table.
void LogCrossCorrelation(const FitState& fit, Host& host);

}  // namespace quorvane
