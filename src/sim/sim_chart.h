// The charts of a simulated column.
#pragma once

#include <array>
#include <string_view>

#include "base/chart.h"
#include "sim/simulate.h"

namespace quorvane {

enum class SimGraph { kTotalSignal, kTotalConc, kSpeciesSignal, kSpeciesConc };

inline constexpr std::array<std::string_view, 4> SimGraphCaptions = {
    "Total Signal", "Total Conc.", "Species Signal", "Species Conc."};

// Whether a model offers the graph; none offers kSpeciesConc.
bool SimGraphEnabled(int model, SimGraph graph);

// The chart of the last run's column, read with the model and the entries as they are now: one
// panel against radius (cm). The species carry no noise. kTotalSignal shows the points that the
// run has written; the others all of the grid.
// Throws std::invalid_argument for a graph that the model does not offer.
Chart SimChart(const Simulator& simulator, SimGraph graph);

// Number pattern of the left axis, given the last point's value.
std::string_view SimAxisPattern(double lastValue);

}  // namespace quorvane
