// The check of a plan: experiments are simulated as planned and fitted, and their scatter is laid
// beside the expected standard errors.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "sim/plan.h"
#include "sim/plan_errors.h"

namespace quorvane {

class Host;
class StopFlag;

struct PlanCheckRequest {
  int experiments = 0;
  std::uint64_t seed = 1;
  int threads = 0;  // 0: one a processor core
};

// What the experiments say of one parameter, in the order of PlanResult::errors.
struct CheckedError {
  double mean = 0.0;            // of the values found
  double scatter = 0.0;         // their standard deviation, with n - 1
  std::optional<double> ratio;  // scatter over expected error; nothing without one
  std::optional<double> bias;   // (mean - truth) over the expected error
};

struct PlanCheck {
  int experiments = 0;  // fitted; fewer than asked for after a stop
  // Those that came to no rest, ran away, or did not determine a parameter: they do not count.
  int failed = 0;
  bool stopped = false;
  std::vector<CheckedError> parameters;  // empty with fewer than two experiments that count
};

// Simulates and fits that many experiments of the speeds of `result`: every good point gets normal
// noise of its own, and the fit goes from the truth to rest. Experiment k depends on the seed and k
// alone, so that the numbers are the same on any number of threads. The flag stops it: what was
// fitted until then, from the first on, counts. Progress goes to `host`. Throws ArithmeticFault.
PlanCheck CheckPlan(const ExperimentPlan& plan, const PlanResult& result,
                    const PlanCheckRequest& request, const StopFlag& stop, Host& host);

struct WorkedPlan {
  PlanResult result;
  std::optional<PlanCheck> check;  // of a plan that asks for one
};

// PlanExperiment, then CheckPlan if the plan asks for it, while `host` lives; after a stop there is
// less. Throws ArithmeticFault.
WorkedPlan WorkOut(const ExperimentPlan& plan, const StopFlag& stop, Host& host);

}  // namespace quorvane
