// Simulators with entries made and run.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "sim/simulate.h"
#include "support/recording_host.h"

namespace quorvane {

using Entries = std::map<SimBox, std::string>;

struct SimulatedRun {
  Simulator simulator;
  SimOutcome outcome;
  RecordingHost host;

  const SimColumn& Column() const { return simulator.Column; }
  double Number(SimBox box) const { return NumberIn(simulator.Inputs, box); }
  void Repeat(std::uint64_t seed = 1) {
    UniformSource uniform(seed);
    outcome = Simulate(simulator, uniform, host);
  }
};

// The defaults with `entries` in place of some.
inline SimulatedRun RunOf(int model, const Entries& entries, std::uint64_t seed = 1,
                          KDisplay display = KDisplay::kLn) {
  SimulatedRun run;
  run.simulator.Inputs.model = model;
  run.simulator.Inputs.kDisplay = display;
  const auto refusal = StoreEntries(run.simulator.Inputs, entries);
  EXPECT_FALSE(refusal) << refusal->message;
  run.Repeat(seed);
  return run;
}

}  // namespace quorvane
