// The numbers of a chart as a table.
#pragma once

#include <string>

#include "base/chart.h"

namespace quorvane {

// Comma-separated: panel (its left title), series, x, y; a head line, then a line a point of every
// series, numbers with 17 significant digits, lines ended by CR LF (RFC 4180).
std::string ChartCsv(const Chart& chart);

}  // namespace quorvane
