// A plan as JSON, as the contract of the command line lays it out.
#pragma once

#include <optional>

#include "job/json_text.h"
#include "sim/plan_check.h"
#include "sim/plan_errors.h"

namespace quorvane {

// What `plan` is expected to tell, and its check, if there was one.
Json PlanJson(const ExperimentPlan& plan, const PlanResult& result,
              const std::optional<PlanCheck>& check);

}  // namespace quorvane
