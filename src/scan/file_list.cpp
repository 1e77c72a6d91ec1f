#include "scan/file_list.h"

#include <algorithm>

#include "base/files.h"
#include "base/text.h"

namespace quorvane {

namespace fs = std::filesystem;

bool IsNameOfKind(const std::string& fileName, FileKind kind) {
  const std::string name = ToLower(fileName);
  switch (kind) {
    case FileKind::kIpRa:
      return name.find(".ip") != std::string::npos || name.find(".ra") != std::string::npos;
    case FileKind::kDat:
      return name.ends_with(".dat");
    case FileKind::kFi:
      return name.find(".fi") != std::string::npos;
    case FileKind::kEl:
      return name.find(".el") != std::string::npos;
  }
  return false;
}

std::vector<std::string> ListScanFiles(const fs::path& folder, std::optional<FileKind> kind) {
  std::vector<std::string> names;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string name = PathText(entry->path().filename());
    std::error_code ignored;  // a link that leads nowhere is no file
    const bool listed = kind ? IsNameOfKind(name, *kind) : !name.starts_with('.');
    if (listed && entry->is_regular_file(ignored)) names.push_back(name);
  }
  if (error) throw FileFault(PathText(folder) + ": " + error.message());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace quorvane
