// quorvane-cli scan: loads scan files and lists their datasets, or lists the scans of folders.
#pragma once

#include <string>
#include <vector>

#include "cli/command_line.h"

namespace quorvane {

struct ScanArguments {
  std::vector<std::string> files;  // and folders
  std::string kind;                // empty: from the extension
  std::string centerpiece;         // empty: "2 channels"
  std::string channels;            // such as "A,C"; empty: all of the centerpiece
  bool last = false;               // only the last scan of each series
  std::string job;                 // a job that loads what is listed; empty: none
  std::string json;                // empty: none
};

// Throws JobFault for a word that is none, and FileFault.
ExitStatus RunScan(const ScanArguments& arguments, const CommandStreams& streams);

}  // namespace quorvane
