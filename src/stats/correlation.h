// Cross-correlation coefficients of the parameters of a finished fit.
#pragma once

#include "base/array1.h"

class Host;
struct FitState;

// c(i, j) = covar(i, j) / sqrt(covar(i, i) covar(j, j)) [1..MA][1..MA]; 0 where one of the three is
// 0, so in the rows and columns of held parameters. Needs FitCovar after the closing step.
// Throws ArithmeticFault for a negative product on the diagonal.
// Source: Bevington & Robinson, Data Reduction and Error Analysis for the Physical Sciences, ch. 3.
Matrix1<double> CrossCorrelation(const FitState& fit);

// Writes the coefficients of all parameters to the log as a table.
void LogCrossCorrelation(const FitState& fit, Host& host);
