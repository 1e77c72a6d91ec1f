// Where the running program lies.
#pragma once

#include <filesystem>

namespace quorvane {

// The folder of the program file, links resolved. `name` is the name that it was called by, which
// counts only where the system does not tell.
std::filesystem::path ProgramFolder(const char* name);

}  // namespace quorvane
