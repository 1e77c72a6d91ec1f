#include "windows/session/data_files.h"

#include <system_error>

#include "core/settings/data_folder.h"

namespace quorvane {

namespace fs = std::filesystem;

fs::path FindDataFile(const fs::path& programFolder, const fs::path& name) {
  std::error_code error;
  fs::path beside = programFolder / name;
  return fs::exists(beside, error) ? beside : InstalledDataFolder(programFolder) / name;
}

}  // namespace quorvane
