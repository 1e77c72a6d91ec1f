// Plots of a series of scans and of its match, as Charts. Radii in cm, times in hours.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "base/chart.h"
#include "match/match.h"

namespace quorvane {

// Colours for `count` scans on white that show their order: from blue by way of green to red, and
// black for the last one, the reference.
std::vector<ChartColor> ScanColors(std::size_t count);

// All scans of the series, one line each. Scan i has the colour at place i of `colors`, which holds
// one at least and begins again behind its end.
Chart PlotScans(const MatchSeries& series, std::span<const ChartColor> colors);

// The rms deviation of each scan but the reference against its time.
Chart PlotRms(const MatchResult& result, Offsets offsets);

// The deviations of the scans at the places `chosen` of the series, coloured as in PlotScans. The
// reference, the last one, deviates by 0.
Chart PlotMatchDeviations(const MatchSeries& series, const MatchResult& result, Offsets offsets,
                          std::span<const std::size_t> chosen, std::span<const ChartColor> colors);

}  // namespace quorvane
