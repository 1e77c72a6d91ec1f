// Whether planned errors come true: of each model's plan the expected standard errors beside the
// scatter of simulated experiments. Prints the table of docs/evidence.md.
// Usage: planning [EXPERIMENTS [NOISE [MODEL...]]] (run by scripts/evidence); MODEL are the indices
// of those to run.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/quiet_host.h"
#include "base/stop_flag.h"
#include "sim/plan_check.h"
#include "support/planned_experiments.h"

using namespace quorvane;

namespace {

std::string Number(const std::optional<double>& value, const char* format) {
  if (!value) return "-";
  char text[32];
  std::snprintf(text, sizeof text, format, *value);
  return text;
}

void PrintModel(const PlannedModel& planned, int experiments, double noise) {
  const ExperimentPlan plan = PlanOf(planned, noise);
  const PlanResult result = PlanExperiment(plan);
  const StopFlag stop;
  QuietHost host;
  const PlanCheck check = CheckPlan(plan, result, {.experiments = experiments}, stop, host);
  for (std::size_t k = 0; k < result.errors.size(); ++k) {
    const ExpectedError& error = result.errors[k];
    const CheckedError found = check.parameters.empty() ? CheckedError{} : check.parameters[k];
    std::printf("| %d | %s | %g | %s | %s | %d | %d | %s | %s |\n", planned.modelIndex,
                std::string(error.parameter->shared->name).c_str(), error.value,
                Number(error.sd, "%.4g").c_str(), Number(found.bias, "%+.2f").c_str(),
                check.experiments, check.failed,
                Number(error.sd ? std::optional(found.scatter) : std::nullopt, "%.4g").c_str(),
                Number(found.ratio, "%.3f").c_str());
  }
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const int experiments = argc > 1 ? std::atoi(argv[1]) : 1000;
  const double noise = argc > 2 ? std::atof(argv[2]) : 0.004;
  std::vector<int> models;
  for (int k = 3; k < argc; ++k) models.push_back(std::atoi(argv[k]));
  if (experiments < 2 || !(noise > 0.0)) return 2;
  std::printf(
      "| Model | Parameter | Truth | Expected sd | Bias, sd | Experiments | Failed | Scatter | "
      "Scatter / expected |\n|---|---|---|---|---|---|---|---|---|\n");
  for (const PlannedModel& planned : kPlannedModels) {
    if (!models.empty() && std::ranges::find(models, planned.modelIndex) == models.end()) continue;
    PrintModel(planned, experiments, noise);
  }
  return 0;
}
