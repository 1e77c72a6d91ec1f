#include "core/cell_files.h"

#include <cstdlib>

#include "base/arithmetic.h"
#include "base/files.h"

namespace fs = std::filesystem;

namespace {

// The value of an environment variable, empty if it is not set.
fs::path FromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? fs::path() : PathFromText(value);
}

fs::path ConfigurationFolder() {
#if defined(_WIN32)
  return FromEnvironment("APPDATA") / "Quorvane";
#else
  const fs::path configured = FromEnvironment("XDG_CONFIG_HOME");
  if (configured.is_absolute()) return configured / "quorvane";
  return FromEnvironment("HOME") / ".config" / "quorvane";
#endif
}

}  // namespace

fs::path FindChannelFile(const fs::path& programFolder) {
  const char* const kName = "channels.txt";
  fs::path beside = programFolder / kName;
  const fs::path installed = programFolder / ".." / "share" / "quorvane" / kName;
  for (const fs::path& path : {beside, ConfigurationFolder() / kName, installed}) {
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
