// quorvane-cli archive: tells what a saved experiment holds and writes it again.
#pragma once

#include <string>

#include "base/file_lock.h"
#include "cli/command_line.h"

struct ArchiveArguments {
  std::string file;
  std::string json;    // empty: none
  std::string saveAs;  // empty: none
};

// Throws FileFault, also for what is no archive.
ExitStatus RunArchive(const ArchiveArguments& arguments, const CommandStreams& streams);

// The lock of an archive that is about to be written. If the window program has it open, `err` says
// so; it is written all the same.
FileLock LockForWriting(const std::filesystem::path& path, std::ostream& err);
