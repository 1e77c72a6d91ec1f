// Simulating the longest column of every model.
#include <benchmark/benchmark.h>

#include <string>

#include "base/quiet_host.h"
#include "sim/simulate.h"

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

}  // namespace

BENCHMARK(SimulateModel)->DenseRange(0, kSimModels - 1)->Unit(benchmark::kMillisecond);
