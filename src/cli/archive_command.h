// quorvane-cli archive: tells what a saved experiment holds and writes it again.
#pragma once

#include <string>

#include "cli/command_line.h"

struct ArchiveArguments {
  std::string file;
  std::string json;    // empty: none
  std::string saveAs;  // empty: none
};

// Throws FileFault, also for what is no archive.
ExitStatus RunArchive(const ArchiveArguments& arguments, const CommandStreams& streams);
