// Where the cell geometry file of an installation is looked for.
#pragma once

#include <filesystem>
#include <vector>

#include "core/program_state.h"

namespace quorvane {

// The first channels.txt that exists: beside the program, in the user's configuration folder, in
// the installed data folder; the place beside the program if there is none.
std::filesystem::path FindChannelFile(const std::filesystem::path& programFolder);

// Reads the cell geometries of `path` into the module, which stays as it is if that fails.
// No file is no failure. Throws FileFault.
void LoadChannelFile(QuorvaneModule& module, const std::filesystem::path& path);

}  // namespace quorvane
