// quorvane-cli compare: fits of the same points side by side, with tests and criteria.
#pragma once

#include <string>
#include <vector>

#include "cli/command_line.h"

namespace quorvane {

struct CompareArguments {
  std::vector<std::string> files;  // two or more, as `analyze` writes them
  std::string json;                // empty: none
};

// Prints the comparison. kNotDone, with the reason, for fits of different points; then nothing is
// written. Throws FileFault if a file cannot be read, holds no finished fit or cannot be written.
ExitStatus RunCompare(const CompareArguments& arguments, const CommandStreams& streams);

}  // namespace quorvane
