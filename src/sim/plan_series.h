// A plan handed to the simulator: the entries and lists of a series that makes its scans.
#pragma once

#include <string>

#include "sim/plan.h"
#include "sim/sim_series.h"

namespace quorvane {

struct PlannedSeries {
  SimInputs inputs;
  SeriesLists lists;
  std::string refusal = {};  // why the simulator cannot make these scans, in a sentence; else empty
  std::string remark = {};   // what it makes otherwise than planned; empty if nothing
};

// The scans of `plan` at `speeds` and one of its wavelengths, from 0, as absorbance scans. The
// simulator's catalogue has the models of the fit under the same numbers. Weights become those of
// the dry molecule, M = buoyant / (1 - vbar density).
PlannedSeries SeriesOf(const ExperimentPlan& plan, const std::vector<double>& speeds,
                       std::size_t wavelength);

}  // namespace quorvane
