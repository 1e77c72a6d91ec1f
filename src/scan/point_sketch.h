// A dataset as a few points: what a picture the size of a thumb needs of it.
#pragma once

#include <vector>

#include "scan/dataset.h"

namespace quorvane {

struct SketchPoint {
  double x;  // 0 to 1 from the first to the last radius
  double y;  // 0 to 1 upwards; the signals in use fill two thirds or more of it, and a deleted
             // point that lies farther out is put on the edge
  bool good;
};

// At most `most` points, evenly over the dataset: from each piece of it the first point in use and
// the first deleted one, so that neither kind is lost. Signals that are no numbers are left out.
std::vector<SketchPoint> SketchOf(const Dataset& dataset, int most);

}  // namespace quorvane
