#include "windows/data_files.h"

#include <system_error>

namespace fs = std::filesystem;

fs::path FindDataFile(const fs::path& programFolder, const fs::path& name) {
  const fs::path installed = programFolder / ".." / "share" / "quorvane" / name;
  const fs::path sourceTree = QUORVANE_SOURCE_TREE;
  std::error_code error;
  for (const fs::path& path : {programFolder / name, installed, sourceTree / name}) {
    if (fs::exists(path, error)) return path;
  }
  return installed;
}
