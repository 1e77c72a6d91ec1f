// The filled bands of a ChartMap. For the sources of plot/ only.
#pragma once

#include "base/chart.h"

class QCPAxis;

namespace quorvane {

// Height at (x, y), both counted in steps of the grid from its first place; NaN outside of the grid
// and beside a place without a height. By cubic convolution, which keeps a paraboloid as it is,
// bilinear in the outermost meshes and where a place nearby has no height.
// Source: Keys, IEEE Transactions on Acoustics, Speech and Signal Processing 29 (1981) 1153.
double HeightAt(const ChartMap& map, double x, double y);

// Draws `map` behind all else between the axes; nothing if it has fewer than two places a side.
void DrawMap(QCPAxis& bottom, QCPAxis& left, const ChartMap& map);

}  // namespace quorvane
