// Derivatives of a model value: a centred difference whose step is chosen for each point and
// parameter.
#pragma once

#include <cmath>

#include "base/array1.h"
#include "fit/models.h"

// The step rule. r is |F1/F0|, or |F1| where F0 is 0: a ratio to the unmoved value, so that a
// parameter of little effect has an r near 1. Kept on purpose, as are the signed comparisons.
inline double FirstStep(const Model& model, double a0) {
  const double h = a0 * model.firstStep;
  return h == 0.0 ? model.stepAtZero : h;
}

inline double StepRatio(double f0, double f1) {
  return std::fabs(f0 == 0.0 ? f1 : f1 / f0);
}

inline bool KeepsFirstStep(double r) {
  return r < 0.03 && r > 0.0003;
}

inline double SecondStep(double a0, double h, double r) {
  if (r <= 1e-5 && a0 != 0.0) return a0 * 0.1;
  h = h * 0.01 / r;
  if (a0 != 0.0) {
    if (a0 * 0.1 < h) h = a0 * 0.1;
    if (a0 * 0.001 > h) h = a0 * 0.001;
  }
  return h;
}

inline double CentredDifference(double up, double down, double h) {
  return (up - down) / 2.0 / h;
}

// Derivative with respect to a(j) at flat point i; f0 is the model value at a. `work` is a copy of
// a and is left as such. A mass conservation point with a target of 0 is 0 whatever the parameters
// are: no step is looked for, which for a parameter of 0 would divide by zero.
double DerivativeAt(FitState& fit, const Model& model, int j, int i, double f0,
                    Array1<double>& work);

// PARTIALSk of fit.FitModel: derivatives with respect to a(1..ma) at flat point i, held parameters
// included. Stores its name in CurrentProc. FUNCSk is called at 3 or 4 places a parameter.
void PARTIALS(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i);
