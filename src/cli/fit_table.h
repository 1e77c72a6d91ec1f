// The points of a fit as a table.
#pragma once

#include <string>
#include <vector>

#include "fit/fit_state.h"
#include "scan/dataset.h"

namespace quorvane {

// Comma-separated: dataset, name, radius, signal, fitted, residual; a head line, then a line a
// point, numbers with 17 significant digits, lines ended by CR LF (RFC 4180).
std::string FitTable(const FitState& fit, const std::vector<Dataset>& datasets);

}  // namespace quorvane
