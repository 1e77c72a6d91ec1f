// Derivatives of a model value: centred differences by the step rule of the model (step_rule.h),
// for each point and parameter by itself.
#pragma once

#include "base/array1.h"
#include "fit/models.h"

namespace quorvane {

// Derivative with respect to a(j) at flat point i; f0 is the model value at a. `work` is a copy of
// a and is left as such. A mass conservation point with a target of 0 is 0 whatever the parameters
// are: no step is looked for, which for a parameter of 0 would divide by zero.
double DerivativeAt(FitState& fit, const Model& model, int j, int i, double f0,
                    Array1<double>& work);

// The same as a centred difference with the given step, whatever the rule says.
double DerivativeByStep(FitState& fit, const Model& model, int j, int i, double step,
                        Array1<double>& work);

// PARTIALSk of fit.FitModel: derivatives with respect to a(1..ma) at flat point i, held parameters
// included. Stores its name in CurrentProc. FUNCSk is called once at a, and at 2 or 3 places a
// parameter.
void PARTIALS(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i);

}  // namespace quorvane
