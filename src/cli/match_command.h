// quorvane-cli match: compares a series of scans with the last of them.
#pragma once

#include <string>
#include <vector>

#include "cli/command_line.h"

namespace quorvane {

struct MatchArguments {
  std::vector<std::string> files;
  std::vector<double> range;  // two limits, cm; empty: all points
  std::string filter;         // only "electrophoresis" reads otherwise
  std::size_t every = 1;      // at least 1
  std::string json;           // empty: none
  std::string report;         // RTF file; empty: none
};

// Throws FileFault if a result cannot be written.
ExitStatus RunMatch(const MatchArguments& arguments, const CommandStreams& streams);

}  // namespace quorvane
