// What the sums of a solution's constants do not know.
#pragma once

#include <string>
#include <vector>

namespace quorvane {

struct SolutionRequest;

// A sentence for each thing that the constants leave out or that makes them uncertain.
std::vector<std::string> RemarksOn(const SolutionRequest& request);

}  // namespace quorvane
