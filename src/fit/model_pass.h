// One pass over the points: model values, derivatives and the sums of the normal equations, dataset
// by dataset, for the parameters that touch the dataset only.
//
// A dataset takes the first of these roads that it can:
//   - the vector kernel, for models that are sums over species (species_pass.h, pass_kernel.h);
//   - whole columns of values, for models with species terms: a derivative by the least step
//     (step_rule.h) at all points that take it, and one by one at the others;
//   - point by point, for models without species terms; also after an arithmetic fault, to name the
//     one that came first.
// The last two give the same bits, the first the same numbers but for rounding. Where the work
// space has steps of its own every dataset goes point by point, and derivatives are centred
// differences by those. How much each step brought stands in docs/performance.md.
#pragma once

#include "base/array1.h"

namespace quorvane {

struct FitState;

// Sizes the work space for the points and parameters of `fit`; a pass then allocates nothing. Steps
// of its own are gone.
void PreparePass(FitState& fit);

// Adds the sums over all points at parameters a to alpha [1..nfit][1..nfit], to beta [1..nfit][1]
// and to chisq. The caller has zeroed them and `fit.FitModel` is set. Throws ArithmeticFault with
// CurrentProc set.
void AddPass(FitState& fit, const Array1<double>& a, Matrix1<double>& alpha, Matrix1<double>& beta,
             double& chisq);

// FitYCalc at FitA for every point. Throws ArithmeticFault with CurrentProc set.
void CalcModelValues(FitState& fit);

}  // namespace quorvane
