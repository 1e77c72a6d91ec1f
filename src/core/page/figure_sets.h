// What a figure of datasets shows.
#pragma once

#include <set>
#include <vector>

#include "core/program_state.h"
#include "fit/fit_figure.h"

namespace quorvane {

// The datasets at the positions `chosen` (from 0). One that the last finished fit holds is shown
// `withFit` as it was fitted, whatever was edited since. A dataset belongs to the fit if its source
// file and radii are those of the fit, wherever it stands and whatever its name is now.
// The result points into the store and the last fit of `module`.
std::vector<FigureSet> FigureSets(const QuorvaneModule& module, const std::vector<int>& chosen,
                                  bool withFit);

// The datasets of `fit` but the hidden ones, in its order; all of them if that leaves none. The
// result points into `fit`.
std::vector<FigureSet> FigureSets(const FinishedFit& fit, const std::set<FigureScan>& hidden = {});

}  // namespace quorvane
