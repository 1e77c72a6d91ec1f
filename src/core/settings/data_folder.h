// Where the files of an installation lie that the programs read.
#pragma once

#include <filesystem>

namespace quorvane {

// From the folder of the running program: ../Resources in a macOS bundle, ../share/quorvane
// anywhere else. It need not exist.
std::filesystem::path InstalledDataFolder(const std::filesystem::path& programFolder);

}  // namespace quorvane
