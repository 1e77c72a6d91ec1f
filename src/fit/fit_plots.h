// The plots of a fit: data with the model's curve and the deviations, one dataset at a time.
#pragma once

#include "base/chart.h"
#include "fit/fit_state.h"
#include "scan/dataset_store.h"

namespace quorvane {

// What the user has set for all plots.
struct PlotOptions {
  bool SubtractOffsets = true;  // data and curve minus the fitted baseline
  bool PlotUsingPSI = false;    // abscissa (r^2 - r0^2)/2 instead of the radius
};

// Position `set` of the fit, from 0: data as crosses, curve, and below them the deviations with
// their zero line. Mass conservation points are left out. Needs FitYCalc.
Chart PlotDataFit(const FitState& fit, const std::vector<Dataset>& datasets, int set,
                  const PlotOptions& options);

// Adds to `chart`, which `PlotDataFit` made with the same arguments, a curve for each species of
// the model and a legend; nothing for a model of a single species.
void AddSpeciesCurves(Chart& chart, const FitState& fit, int set, const PlotOptions& options);

// Deviations alone, against the radius, mass conservation points included.
Chart PlotDeviations(const FitState& fit, const std::vector<Dataset>& datasets, int set);

// Data and curve alone, against the radius and with the baseline whatever the plot options are, for
// position `set` of the fit; mass conservation points are left out. The title bears the dataset's
// number in the store. Needs FitYCalc.
Chart PlotDataCurve(const FitState& fit, const std::vector<Dataset>& datasets, int set);

}  // namespace quorvane
