// Simulating the longest column of every model, and planning experiments of each.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "base/quiet_host.h"
#include "base/stop_flag.h"
#include "sim/plan_check.h"
#include "sim/plan_errors.h"
#include "sim/simulate.h"
#include "support/planned_experiments.h"

using namespace quorvane;

namespace {

void SimulateModel(benchmark::State& state) {
  Simulator simulator;
  simulator.Inputs.model = static_cast<int>(state.range(0));
  StoreEntries(simulator.Inputs, {{SimBox::kRmen, "5.8"},
                                  {SimBox::kRbase, "7.2"},
                                  {SimBox::kSpeed, "9000"},
                                  {SimBox::kMWB, "30000"},
                                  {SimBox::kLnK1, "13"}});
  UniformSource uniform(1);
  QuietHost host;
  for (auto _ : state) {
    if (!Simulate(simulator, uniform, host).ok) state.SkipWithError("the simulation failed");
  }
  state.SetLabel(std::string(SimModelOf(simulator.Inputs.model).caption));
  state.counters["points"] = simulator.WrittenPoints;
}

// Three speeds, three loads of 200 points, the errors of all parameters; without a check.
void PlanModel(benchmark::State& state) {
  const ExperimentPlan plan = PlanOf(kPlannedModels[static_cast<std::size_t>(state.range(0))]);
  for (auto _ : state) benchmark::DoNotOptimize(PlanExperiment(plan));
  state.SetLabel(std::string(plan.model->name));
}

// All triples of twelve speeds.
void RankTriples(benchmark::State& state) {
  ExperimentPlan plan = PlanOf(kPlannedModels[static_cast<std::size_t>(state.range(0))]);
  plan.speeds.clear();
  for (int k = 0; k < 12; ++k) plan.candidates.push_back(8000 + 2000 * k);
  plan.choose = 3;
  for (auto _ : state) benchmark::DoNotOptimize(PlanExperiment(plan));
  state.SetLabel(std::string(plan.model->name));
}

// The errors at 40 values of one speed.
void ErrorsAlongSpeed(benchmark::State& state) {
  const ExperimentPlan plan = PlanOf(kPlannedModels[static_cast<std::size_t>(state.range(0))]);
  std::vector<double> speeds;
  for (int k = 0; k < 40; ++k) speeds.push_back(8000 + 500 * k);
  for (auto _ : state) {
    benchmark::DoNotOptimize(ErrorsAlong(plan, {PlanAxis::Kind::kSpeed, 1}, speeds));
  }
  state.SetLabel(std::string(plan.model->name));
}

// 200 simulated experiments, on all cores.
void CheckPlanOf(benchmark::State& state) {
  const ExperimentPlan plan = PlanOf(kPlannedModels[static_cast<std::size_t>(state.range(0))]);
  const PlanResult result = PlanExperiment(plan);
  const StopFlag stop;
  QuietHost host;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CheckPlan(plan, result, {.experiments = 200}, stop, host));
  }
  state.SetLabel(std::string(plan.model->name));
}

}  // namespace

BENCHMARK(SimulateModel)->DenseRange(0, kSimModels - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(PlanModel)->DenseRange(0, 10)->Unit(benchmark::kMillisecond);
BENCHMARK(RankTriples)->Arg(2)->Arg(6)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK(ErrorsAlongSpeed)->Arg(2)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK(CheckPlanOf)->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond)->UseRealTime();
