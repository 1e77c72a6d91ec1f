#include "core/page/cell_files.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "core/settings/data_folder.h"
#include "core/settings/user_folder.h"

namespace quorvane {

namespace fs = std::filesystem;

fs::path FindChannelFile(const fs::path& programFolder) {
  const char* const kName = "channels.txt";
  fs::path beside = programFolder / kName;
  for (const fs::path& path :
       {beside, ConfigurationFolder() / kName, InstalledDataFolder(programFolder) / kName}) {
    if (FileExists(path)) return path;
  }
  return beside;
}

void LoadChannelFile(QuorvaneModule& module, const fs::path& path) {
  std::vector<CellGeometry> geometries;
  try {
    geometries = LoadCellGeometries(path);
  } catch (const SubscriptFault&) {
    throw FileFault(PathText(path) + ": more than 11 geometries, or one of more than 501 pairs");
  }
  module.ChannelFile = path;
  module.HaveChannelFile = FileExists(path);
  module.CellGeometries = std::move(geometries);
}

}  // namespace quorvane
