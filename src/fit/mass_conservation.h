// What mass conservation says after a fit.
#pragma once

#include <vector>

#include "fit/fit_state.h"
#include "scan/dataset.h"

namespace quorvane {

// SetCalcLoad [1..N]: the mean concentration of each dataset over its fitted region, weighted with
// the sector width (trapezoid rule), from FitYCalc and the fitted baselines.
// Throws ArithmeticFault.
void CalcLoadConcs(FitState& fit, const std::vector<Dataset>& datasets);

// Mean concentration of A (kind 1) or B (kind 2) in dataset d, from 1: its loading concentration
// times FitYCalc over FitY at its mass conservation point. Throws ArithmeticFault.
double CalculatedLoad(const FitState& fit, int d, int kind);

}  // namespace quorvane
