// The sum of squares over two parameters, minimised over all others.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "stats/held_fit.h"

namespace quorvane {

// The places of a surface and what is known of them. Rows run along x.
struct SurfaceGrid {
  int x = 0;  // index in FitA
  int y = 0;
  std::vector<double> xs;  // rising
  std::vector<double> ys;
};

// Sums along the column of the grid that lies nearest to the fit: the spine from which the rows
// start, by row. Rows that could not be reached have none.
std::vector<std::optional<RestPoint>> WalkSpine(const FitState& fit, const SurfaceGrid& grid,
                                                const StopFlag& stop);

// The sums of row `iy`, from its place on the spine to either side; NaN where no rest was found.
std::vector<double> WalkRow(const FitState& fit, const SurfaceGrid& grid, std::size_t iy,
                            const RestPoint& spine, const StopFlag& stop);

}  // namespace quorvane
