// An error analysis as JSON, as the contract of the command line lays it out.
#pragma once

#include "job/json_text.h"
#include "stats/error_analysis.h"

namespace quorvane {

// The analysis of `fit`; {"error"} for one that could not begin.
Json ErrorsJson(const ErrorAnalysis& analysis, const FitState& fit);

}  // namespace quorvane
