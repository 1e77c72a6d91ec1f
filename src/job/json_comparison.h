// Fits side by side as JSON, as the contract of the command line lays them out.
#pragma once

#include <vector>

#include "job/json_text.h"
#include "stats/fit_comparison.h"

namespace quorvane {

// `comparison` is that of `fits`.
Json ComparisonJson(const std::vector<NamedFit>& fits, const FitComparison& comparison);

}  // namespace quorvane
