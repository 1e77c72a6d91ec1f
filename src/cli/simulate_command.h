// quorvane-cli simulate: a synthetic scan of one of the simulator's models, or a series of scans.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cli/command_line.h"

namespace quorvane {

struct SimulateArguments {
  std::string job;
  std::string output;                 // scan file, folder of a series; empty: standard output
  std::string json;                   // empty: none
  std::optional<std::uint64_t> seed;  // of the noise; nothing: from the clock
};

// Throws JobFault, also for an input outside the bounds of its box, and FileFault.
ExitStatus RunSimulate(const SimulateArguments& arguments, const CommandStreams& streams);

}  // namespace quorvane
