#include "core/settings/data_folder.h"

namespace quorvane {

namespace fs = std::filesystem;

fs::path InstalledDataFolder(const fs::path& programFolder) {
  const fs::path above = programFolder.parent_path();
  return programFolder.filename() == "MacOS" ? above / "Resources" : above / "share" / "quorvane";
}

}  // namespace quorvane
