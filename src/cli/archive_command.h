// quorvane-cli archive: tells what a saved experiment holds and writes it again.
#pragma once

#include <string>

#include "cli/command_line.h"
#include "core/program_state.h"

namespace quorvane {

class TerminalHost;

struct ArchiveArguments {
  std::string file;
  std::string json;    // empty: none
  std::string saveAs;  // empty: none
};

// Throws FileFault, also for what is no archive.
ExitStatus RunArchive(const ArchiveArguments& arguments, const CommandStreams& streams);

// Saves session and log as an archive. If the window program has that one open, standard error says
// so; it is written all the same. A session without datasets is not done, and writes nothing.
// `comment` as for SaveExperiment.
ExitStatus SaveSession(const std::filesystem::path& path, QuorvaneModule& module,
                       TerminalHost& host, const CommandStreams& streams,
                       const std::string* comment = nullptr);

}  // namespace quorvane
