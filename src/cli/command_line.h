// quorvane-cli: reads the arguments and runs the command.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace quorvane {

// How a command ends, as the exit status of the program.
enum class ExitStatus {
  kDone = 0,
  kNotDone = 1,    // refused, failed or stopped
  kBadUsage = 2,   // bad arguments or a bad job
  kFileFault = 3,  // a file could not be read or written
};

// Where a command writes, and where the program lies.
struct CommandStreams {
  std::ostream& out;
  std::ostream& err;
  std::filesystem::path programFolder;
  bool showProgress = false;  // standard error is a terminal
};

// Runs the command that `arguments` (without the program's name) ask for. Every fault ends in a
// message on `err` and a status; nothing is thrown.
ExitStatus RunCommandLine(std::vector<std::string> arguments, const CommandStreams& streams);

}  // namespace quorvane
