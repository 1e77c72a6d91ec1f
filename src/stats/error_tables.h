// The results of an error analysis as comma-separated tables, lines ended by CR LF.
#pragma once

#include <string>

#include "stats/error_analysis.h"

namespace quorvane {

// "found", "open", "bound" or "stopped": how a side of a profile ended.
const char* SideEndText(SideEnd end);

// A line for each parameter, or derived quantity, method and level:
// name,unit,value,standard error,method,level,lower,lower end,upper,upper end
std::string ErrorLimitsTable(const ErrorAnalysis& analysis);

// name,value,sum of squares: the profiles, one after the other.
std::string ErrorCurvesTable(const ErrorAnalysis& analysis);

// method,replicate and a column for each parameter; replicates that failed are left out.
std::string ErrorReplicatesTable(const ErrorAnalysis& analysis);

// Two columns headed by the names of x and y, and the sum of squares; a sum that was not found is
// empty.
std::string ErrorSurfaceTable(const ErrorSurface& surface);

}  // namespace quorvane
