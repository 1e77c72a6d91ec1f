// The archives saved or opened last, in section "MRU" of the settings store.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/settings/settings_store.h"

namespace quorvane {

class Host;

inline constexpr int kMaxRecentFiles = 8;

// Puts the path at the head of the list: one that is there moves up, a new one pushes the eighth
// out. A failure of the store ends in a message box.
void AddRecentFile(const std::filesystem::path& path, SettingsStore& store, Host& host);

// The list for the menu, the latest first; empty places of the store are left out.
std::vector<std::string> RecentFiles(const SettingsStore& store);

}  // namespace quorvane
