#include "core/settings/recent_files.h"

#include "base/files.h"
#include "base/host.h"
#include "base/text.h"

namespace quorvane {

namespace {

constexpr const char* kSection = "MRU";

std::string Place(const SettingsStore& store, int k) {
  return store.Get(kSection, std::to_string(k)).value_or("");
}

}  // namespace

void AddRecentFile(const std::filesystem::path& path, SettingsStore& store, Host& host) {
  const std::string text = PathText(path);
  int found = kMaxRecentFiles;
  for (int k = 1; k <= kMaxRecentFiles; ++k) {
    if (Trim(Place(store, k)) == Trim(text)) {
      found = k;
      break;
    }
  }
  std::vector<SettingsEntry> entries;
  for (int i = found - 1; i >= 1; --i) {
    const std::string moved = Place(store, i);
    if (!moved.empty()) entries.push_back({std::to_string(i + 1), moved});
  }
  entries.push_back({"1", text});
  try {
    store.Set(kSection, entries);
  } catch (const FileFault&) {
    host.ShowMessage("Registry Error", "Error saving MRUs to Registry", MessageIcon::kNone);
  }
}

std::vector<std::string> RecentFiles(const SettingsStore& store) {
  std::vector<std::string> files;
  for (int k = 1; k <= kMaxRecentFiles; ++k) {
    std::string path = Place(store, k);
    if (!path.empty()) files.push_back(std::move(path));
  }
  return files;
}

}  // namespace quorvane
