// The datasets of a session as a table for people.
#pragma once

#include <iosfwd>
#include <vector>

#include "scan/dataset.h"

namespace quorvane {

// One line a dataset under a head line; dataset numbers from 1.
void PrintDatasetTable(const std::vector<Dataset>& datasets, std::ostream& out);

}  // namespace quorvane
