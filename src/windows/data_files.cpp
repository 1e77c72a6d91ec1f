#include "windows/data_files.h"

#include <system_error>

#include "core/data_folder.h"

namespace fs = std::filesystem;

fs::path FindDataFile(const fs::path& programFolder, const fs::path& name) {
  std::error_code error;
  fs::path beside = programFolder / name;
  return fs::exists(beside, error) ? beside : InstalledDataFolder(programFolder) / name;
}
