// Where the program keeps what belongs to the user.
#pragma once

#include <filesystem>

namespace quorvane {

// The user's configuration folder of this program: XDG rules on Linux, APPDATA on Windows. It need
// not exist.
std::filesystem::path ConfigurationFolder();

// Where this program keeps data of the user between its runs: XDG rules on Linux, LOCALAPPDATA on
// Windows. It need not exist.
std::filesystem::path DataFolder();

}  // namespace quorvane
