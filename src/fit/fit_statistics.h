// What is computed from a finished fit: counts, variance, standard errors, derived values.
#pragma once

#include "fit/fit_state.h"

namespace quorvane {

struct FitStatistics {
  int fitted = 0;         // nFit, FitState::NumFitted
  int freedom = 0;        // NDF: flat points less fitted parameters
  double variance = 0.0;  // sum of squares over NDF
  int maxSpeed = 0;       // highest rotor speed of the fit, rpm; 0 if none is above 0
};

// From FitChiSq, as the lines of the log take it, or another sum of squares of the fit.
// Throws ArithmeticFault for NDF of 0.
FitStatistics CalcFitStatistics(const FitState& fit);
FitStatistics CalcFitStatistics(const FitState& fit, double sum);

// Sum of FitY squared, mass conservation points included: the scale below which a sum of squared
// residuals is rounding.
double SquaredSignal(const FitState& fit);

// The sum of squares of the best horizontal lines, one a dataset, without mass conservation points.
double FlatSum(const FitState& fit);

// Standard error of FitA(k): square root of the variance times FitCovar(k, k).
// Throws ArithmeticFault for a negative one.
double StandardError(const FitState& fit, const FitStatistics& statistics, int k);

struct ValueAndError {
  double value = 0.0;
  double error = 0.0;
};

// A reference concentration, whose logarithm is FitA(k), with its error towards the low side.
// Throws ArithmeticFault.
ValueAndError ReferenceConcentration(const FitState& fit, const FitStatistics& statistics, int k);

// Sigma at the highest speed of the fit of the buoyant weight FitA(k), 1/cm^2.
// Throws ArithmeticFault.
double SigmaAtMaxSpeed(const FitState& fit, const FitStatistics& statistics, int k);

}  // namespace quorvane
