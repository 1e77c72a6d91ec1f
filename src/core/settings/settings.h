// What the settings store keeps: preferences, the font of the log, the place of the main window.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "core/program_state.h"
#include "core/settings/settings_store.h"

namespace quorvane {

class Host;

struct LogFont {
  std::string Font = "Courier New";
  bool Bold = false;
  bool Italic = false;
  float Size = 10.0F;  // points
};

// In twips, 1/1440 inch.
struct WindowPlace {
  float MainLeft = 1000.0F;
  float MainTop = 1000.0F;
  float MainWidth = 6500.0F;
  float MainHeight = 12500.0F;
};

// The store of this user: quorvane.ini in the configuration folder.
std::filesystem::path SettingsFile();

// Reads section "Settings" in its fixed order; an absent key gives its default. The first value
// that cannot be converted ends the routine: what was read stands, the rest is as it was. A K
// format other than 0, 1 and 2 counts as 0. Vbar and density go to the parameter page as well.
void LoadSettings(QuorvaneModule& module, const SettingsStore& store);

// Writes what LoadSettings reads, but ShowHints, and the current folder. A failure goes to the
// host's status.
void SaveSettings(const QuorvaneModule& module, const std::filesystem::path& currentFolder,
                  SettingsStore& store, Host& host);

// Section "Quorvane", which LoadSettings reads last: choices that are kept as soon as they are
// made.
void SaveOwnSettings(const QuorvaneModule& module, SettingsStore& store, Host& host);

// How the user has arranged a window, in the same section: any text of one line, under a key of the
// window's own. Empty if there is none.
std::string LoadArrangement(const SettingsStore& store, std::string_view key);
void SaveArrangement(std::string_view key, const std::string& text, SettingsStore& store,
                     Host& host);

// ShowHints alone, at once.
void SaveShowHints(const QuorvaneModule& module, SettingsStore& store, Host& host);

// The folder of the last session if it exists, else `programFolder`.
std::filesystem::path LoadLastDirectory(const SettingsStore& store,
                                        const std::filesystem::path& programFolder);

// A value that does not convert gives its default.
WindowPlace LoadWindowPlace(const SettingsStore& store);
void SaveWindowPlace(const WindowPlace& place, SettingsStore& store, Host& host);

// `present` gives typeface and size where the store lacks them or holds what does not convert.
LogFont LoadLogFont(const SettingsStore& store, LogFont present);
void SaveLogFont(const LogFont& font, SettingsStore& store, Host& host);

}  // namespace quorvane
