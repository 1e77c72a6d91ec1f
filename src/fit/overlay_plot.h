// Several datasets in one plot, for comparison.
#pragma once

#include <cstddef>
#include <vector>

#include "base/chart.h"
#include "fit/fit_state.h"
#include "scan/dataset.h"

namespace quorvane {

// What a dataset looks like in an overlay: no two of the first 84 are alike.
struct OverlayLook {
  SeriesStyle style;
  ChartColor color;
};
OverlayLook OverlayLookOf(std::size_t index);  // from 0

// One dataset of an overlay.
struct OverlaySet {
  const Dataset* dataset = nullptr;
  std::size_t look = 0;  // index of its look
  int fitted = 0;        // position in the fit whose curve is drawn too, from 1; 0: none
};

// The good points of the datasets as marks, each with its own symbol and colour, named in a legend
// if there is room for it, and the curves of `fit` (null: there is none) in the same colours.
// Against the radius, or with `usingPsi` against (r^2 - r0^2)/2, r0 being the dataset's reference
// radius. Signals are as loaded, baselines included.
Chart PlotOverlay(const std::vector<OverlaySet>& sets, const FitState* fit, bool usingPsi);

}  // namespace quorvane
