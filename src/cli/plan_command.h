// quorvane-cli plan: what an experiment that has not been made would tell.
#pragma once

#include <string>

#include "cli/command_line.h"

namespace quorvane {

struct PlanArguments {
  std::string plan;
  std::string json;  // empty: none
};

// Prints the expected errors of the plan, its scans, ranking and check. kNotDone, with nothing
// written, where the plan leads beyond all numbers or the check was stopped. Throws JobFault and
// FileFault.
ExitStatus RunPlan(const PlanArguments& arguments, const CommandStreams& streams);

}  // namespace quorvane
