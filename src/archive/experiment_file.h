// The file of an experiment: a ZIP file of datafile.bin, logfile.rtf and chartfile.bin.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "archive/experiment.h"

namespace quorvane {

// An experiment and what its reader passed over.
struct ReadExperiment {
  Experiment experiment;
  std::vector<std::string> warnings;  // whole sentences, in the order of the members
};

// Reads an archive of either layout. A missing logfile.rtf or chartfile.bin counts as empty, with a
// warning. Throws FileFault if the file cannot be read, ArchiveFault (UnknownLayout for another
// layout) if it is not such an archive or damaged.
ReadExperiment ReadExperimentFile(const std::filesystem::path& path);

// Writes an archive in the current layout to a temporary file, reads that back, compares, and
// renames it over `path`. Throws FileFault or ArchiveFault; then `path` is as it was.
void WriteExperimentFile(const std::filesystem::path& path, const Experiment& experiment);

}  // namespace quorvane
