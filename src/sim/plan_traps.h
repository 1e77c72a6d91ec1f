// What stands in the way of a plan, in plain sentences.
#pragma once

#include <string>
#include <vector>

#include "sim/plan_errors.h"

namespace quorvane {

// A column whose apparent sigma is below this is flat, 1/cm^2.
inline constexpr double kFlatSigma = 1.0;

// Parameters that the plan cannot or can hardly determine, pairs that it can hardly tell apart,
// flat columns, points lost to the detector; worst first. `result` has all but its remarks.
std::vector<std::string> TrapsOf(const ExperimentPlan& plan, const PlanResult& result);

}  // namespace quorvane
