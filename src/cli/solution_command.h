// quorvane-cli solution: the constants that a weight stands on.
#pragma once

#include <optional>
#include <string>

#include "cli/command_line.h"

namespace quorvane {

struct SolutionArguments {
  std::optional<std::string> sequence;  // a FASTA file or letters
  std::optional<int> disulphides;
  std::optional<std::string> buffer;  // "NAME=20 mM, NAME=0.1 M"
  double temperature = 20.0;          // deg C
  bool list = false;                  // the components of buffers
  std::string json;                   // empty: none
};

// Throws JobFault for what cannot be computed, and FileFault.
ExitStatus RunSolution(const SolutionArguments& arguments, const CommandStreams& streams);

}  // namespace quorvane
