// Whether the file that a dataset came from still holds its data.
#pragma once

#include <string_view>

#include "scan/dataset.h"

namespace quorvane {

// Whether the rows of a scan file with the bytes `file` hold the points of `dataset` in their
// order: radius and signal, of a dataset that was blanked the radius alone.
bool HoldsPoints(std::string_view file, const Dataset& dataset);

}  // namespace quorvane
