#include "core/data_folder.h"

namespace fs = std::filesystem;

fs::path InstalledDataFolder(const fs::path& programFolder) {
  const fs::path above = programFolder.parent_path();
  return programFolder.filename() == "MacOS" ? above / "Resources" : above / "share" / "quorvane";
}
