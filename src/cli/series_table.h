// Series of scans as a table and as JSON.
#pragma once

#include <iosfwd>
#include <vector>

#include "job/json_text.h"
#include "scan/scan_series.h"

namespace quorvane {

// A line a scan, under one line of captions.
void PrintSeriesTable(const std::vector<ScanSeries>& series, std::ostream& out);

// A scan without a change has none: the first of its series, or one that shares no radius with the
// scan before it.
Json SeriesJson(const std::vector<ScanSeries>& series);

}  // namespace quorvane
