// What an overlay of datasets draws.
#pragma once

#include <vector>

#include "core/program_state.h"
#include "fit/overlay_plot.h"

namespace quorvane {

// The datasets at the positions `chosen` (from 0), which keep their looks whatever else is chosen;
// with `curves` those that the last finished fit holds have its curve. A dataset belongs to it if
// its source file and radii are those of the fit, wherever it stands and whatever its name is now.
// The result points into the store of `module`.
std::vector<OverlaySet> OverlaySets(const QuorvaneModule& module, const std::vector<int>& chosen,
                                    bool curves);

}  // namespace quorvane
