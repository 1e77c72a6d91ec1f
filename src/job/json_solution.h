// The constants of a solution as JSON, as the contract of the command line lays them out.
#pragma once

#include "job/json_text.h"
#include "solution/solution_constants.h"

namespace quorvane {

// What CalcSolution gave for `request`.
Json SolutionJson(const SolutionRequest& request, const SolutionConstants& constants);

}  // namespace quorvane
