// Where the files lie that come with the program: guide and examples.
#pragma once

#include <filesystem>

// The file or folder `name` (such as "docs/user-guide.md"): beside the program, in the installed
// data folder, or in the source tree of a program that runs from its build. The first that exists;
// otherwise the installed place.
std::filesystem::path FindDataFile(const std::filesystem::path& programFolder,
                                   const std::filesystem::path& name);
