// The scans of a plan as datasets, and the fit of them as it would be assembled.
#pragma once

#include <vector>

#include "fit/fit_state.h"
#include "scan/dataset.h"
#include "sim/plan.h"

namespace quorvane {

// One solution column at one speed: its scans, a wavelength each.
struct PlannedCell {
  double speed = 0.0;      // rpm
  std::size_t column = 0;  // of the load, from 0
  // C holds the signal without noise; points above the detector's limit are deleted. RefConc and
  // RefConc2 hold at RefRadius. A scan that lost all points is of no use to a fit.
  std::vector<Dataset> scans;
};

// The scans of column `column` at `speed`. The plan keeps all rules.
// Throws ArithmeticFault where the concentrations of the column are beyond all numbers.
PlannedCell PlanCell(const ExperimentPlan& plan, double speed, std::size_t column);

// The fit of these cells at the truth, as "Setup Fit" and the assembly make it: a baseline and a
// reference concentration a scan (with a second component the scans of a cell are linked), shared
// parameters as the plan says. FitY holds the signals without noise, FitA the truth.
// Scans without points are left out. A state without datasets if there are no others.
FitState StateOf(const ExperimentPlan& plan, const std::vector<const PlannedCell*>& cells);

}  // namespace quorvane
