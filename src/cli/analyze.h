// quorvane-cli analyze: a whole analysis as a job file says.
#pragma once

#include <string>

#include "cli/command_line.h"

namespace quorvane {

struct AnalyzeArguments {
  std::string job;
  std::string json;  // empty: none
  std::string log;   // RTF file; empty: none
  bool quiet = false;
};

// Throws JobFault and FileFault.
ExitStatus RunAnalyze(const AnalyzeArguments& arguments, const CommandStreams& streams);

}  // namespace quorvane
