// Datasets and page into the flat arrays of a fit, and its result back.
#pragma once

#include <string>
#include <vector>

#include "fit/fit_setup.h"
#include "fit/fit_state.h"
#include "scan/cell_geometry.h"
#include "scan/dataset_store.h"

namespace quorvane {

// What the points of a fit are made from. All outlives it.
struct FitSource {
  const FitSetup& setup;
  const std::vector<Dataset>& datasets;
  const std::vector<CellGeometry>& geometries;
  double mcTolerance = 0.25;  // of soft mass conservation
};

// Fills the point arrays of `fit` with the good points of the chosen datasets, in list order, and
// with the two mass conservation points behind each dataset where they are asked for. Logs points
// outside the cell geometry.
// Throws ArithmeticFault, and SubscriptFault for a cell geometry that is not there or for a
// dataset without good points under mass conservation, CurrentProc set.
void SetupDataArrays(FitState& fit, const FitSource& from, Host& host);

// Fills the parameter arrays and the constants of each dataset; `anyFitted` is true if at least one
// parameter is fitted. Throws ArithmeticFault for a reference concentration of 0 or below.
void SetupParameterArray(FitState& fit, const FitSetup& setup, const FitPage& page,
                         const std::vector<Dataset>& datasets, bool& anyFitted);

// The same for the one dataset at position k of the fit, from 0: `fit` then has NumFitSets 1.
// FitParamNames is not filled.
void SetupSingleDatasetArray(FitState& fit, const FitSource& from, int k, Host& host);
void SetupSingleParameterArray(FitState& fit, const FitSetup& setup, const FitPage& page, int k,
                               const std::vector<Dataset>& datasets);

// The name in FitParamNames of a parameter of dataset d, from 1: `block` 0 is its baseline, 1 its
// reference concentration (of A), 2 that of B.
std::string SetParameterName(int block, int d, bool twoComponents);

// Gives linked datasets the reference concentrations of their targets. `values` are laid out as
// FitA.
void CopyLinked(const FitState& fit, Array1<double>& values);

// Writes FitA back into the datasets and `page`: all of it, or nothing if a value overflows
// (ArithmeticFault). A linked dataset gets the reference concentrations of its target.
// CurrentProc is "Unknown" afterwards.
void UpdateParameters(FitState& fit, FitPage& page, std::vector<Dataset>& datasets);

}  // namespace quorvane
