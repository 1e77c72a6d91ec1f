// The error analysis of a fit in the report: limits of single parameters and derived quantities.
#pragma once

#include "base/chart.h"
#include "core/report/report_section.h"
#include "stats/error_analysis.h"

namespace quorvane {

// How the limits were found, and what speaks against them.
std::vector<std::string> ErrorParagraphs(const ErrorAnalysis& analysis);

// A table of the limits by each method that was used, and one of the derived quantities.
std::vector<ReportTable> ErrorTables(const ErrorAnalysis& analysis);

// The profile of each parameter that has one, then the surfaces.
void AddErrorCharts(const ErrorAnalysis& analysis, std::vector<Chart>& charts);

}  // namespace quorvane
