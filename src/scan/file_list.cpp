#include "scan/file_list.h"

#include <algorithm>
#include <functional>

#include "base/files.h"
#include "base/text.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

// Names of the files in `folder` for which `listed` holds, in rising order.
std::vector<std::string> NamesIn(const fs::path& folder,
                                 const std::function<bool(const fs::path& name)>& listed) {
  std::vector<std::string> names;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path name = entry->path().filename();
    std::error_code ignored;  // a link that leads nowhere is no file
    if (listed(name) && entry->is_regular_file(ignored)) names.push_back(PathText(name));
  }
  if (error) throw FileFault(PathText(folder) + ": " + SystemErrorText(error));
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

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

std::optional<FileKind> KindOfExtension(const fs::path& file) {
  const std::string extension = ToLower(PathText(file.extension()));
  if (extension.starts_with(".ip") || extension.starts_with(".ra")) return FileKind::kIpRa;
  if (extension == ".dat") return FileKind::kDat;
  if (extension.starts_with(".fi") || extension.starts_with(".fl")) return FileKind::kFi;
  if (extension.starts_with(".el")) return FileKind::kEl;
  return std::nullopt;
}

std::vector<fs::path> ScanFilesIn(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const std::string& name :
       NamesIn(folder, [](const fs::path& file) { return KindOfExtension(file).has_value(); })) {
    files.push_back(folder / PathFromText(name));
  }
  return files;
}

std::vector<std::string> ListScanFiles(const fs::path& folder, std::optional<FileKind> kind) {
  return NamesIn(folder, [kind](const fs::path& file) {
    const std::string name = PathText(file);
    return kind ? IsNameOfKind(name, *kind) : !name.starts_with('.');
  });
}

}  // namespace quorvane
