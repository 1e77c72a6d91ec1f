// On what the program runs, for a report of a fault.
#pragma once

#include <QString>
#include <filesystem>

namespace quorvane {

// A line for each: program, system, kernel, processor, cores, Qt, screens, settings file, build.
QString SystemInformation(const std::filesystem::path& settingsFile);

}  // namespace quorvane
