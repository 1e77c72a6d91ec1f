// Where the files lie that come with the program: guide and examples.
#pragma once

#include <filesystem>

namespace quorvane {

// The file or folder `name` (such as "docs/user-guide.md"): beside the program if it exists there,
// otherwise in the installed data folder.
std::filesystem::path FindDataFile(const std::filesystem::path& programFolder,
                                   const std::filesystem::path& name);

}  // namespace quorvane
