#include "scan/import_names.h"

#include <algorithm>
#include <set>
#include <string>

#include "base/files.h"
#include "base/text.h"

namespace quorvane {

namespace fs = std::filesystem;

std::vector<fs::path> ScanNamesFor(const std::vector<NamedText>& texts, const fs::path& folder) {
  std::vector<fs::path> names;
  std::set<std::string> taken;  // in lower case
  const auto isText = [&](const fs::path& path) {
    return std::any_of(texts.begin(), texts.end(), [&](const NamedText& text) {
      std::error_code error;
      return fs::equivalent(text.source, path, error);
    });
  };
  for (const NamedText& text : texts) {
    const char kind = text.header.kind;
    const std::string extension = (kind == 'P'   ? ".IP"
                                   : kind == 'F' ? ".FI"
                                                 : ".RA") +
                                  std::to_string(text.header.cell);
    const std::string stem = PathText(text.source.stem());
    fs::path name = PathFromText(stem + extension);
    for (int k = 2; taken.contains(ToLower(PathText(name))) || isText(folder / name); ++k) {
      name =
          PathFromText(std::string(stem).append("-").append(std::to_string(k)).append(extension));
    }
    taken.insert(ToLower(PathText(name)));
    names.push_back(std::move(name));
  }
  return names;
}

}  // namespace quorvane
