// One pass over the points: model values, derivatives and the sums of the normal equations, dataset
// by dataset, for the parameters that touch the dataset only. How it is made fast stands in
// docs/performance.md.
#pragma once

#include "base/array1.h"

struct FitState;

// Sizes the work space for the points and parameters of `fit`; a pass then allocates nothing.
void PreparePass(FitState& fit);

// Adds the sums over all points at parameters a to alpha [1..nfit][1..nfit], to beta [1..nfit][1]
// and to chisq. The caller has zeroed them and `fit.FitModel` is set. Throws ArithmeticFault with
// CurrentProc set.
void AddPass(FitState& fit, const Array1<double>& a, Matrix1<double>& alpha, Matrix1<double>& beta,
             double& chisq);

// FitYCalc at FitA for every point. Throws ArithmeticFault with CurrentProc set.
void CalcModelValues(FitState& fit);
