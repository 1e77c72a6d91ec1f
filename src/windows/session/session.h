// What all windows of a running program share.
#pragma once

#include <QString>
#include <filesystem>
#include <functional>

#include "base/files.h"
#include "core/program_state.h"
#include "core/settings/settings_store.h"
#include "windows/session/dialogs.h"

namespace quorvane {

// Whether the kind "EL" and what belongs to it are offered.
inline constexpr bool ShowElectrophoresis = false;

struct Session {
  Session(SettingsStore& settingsStore, Dialogs& allDialogs, std::filesystem::path folder)
      : Settings(settingsStore), Ask(allDialogs), ProgramFolder(std::move(folder)) {}

  QuorvaneModule Module;
  SettingsStore& Settings;
  Dialogs& Ask;
  std::filesystem::path ProgramFolder;
  std::filesystem::path CurrentFolder;  // where file dialogs and lists start
  bool LockArchives = false;            // whether other programs are told which archive is open
  bool Calculating = false;             // a fit or search runs; no other command may start

  // Set by the main window while it lives.
  // Stores what is being typed, in whatever window. False if it was refused: the message was shown,
  // and the box is in sight and has the focus. Comes before every command.
  std::function<bool()> CommitPending = [] { return true; };
  // A line for the status bar, in place of the last one; empty clears it.
  std::function<void(const QString& text)> Remark = [](const QString&) {};
};

inline QString ToQString(const std::filesystem::path& path) {
  return QString::fromStdString(PathText(path));
}

inline std::filesystem::path ToPath(const QString& text) {
  return PathFromText(text.toStdString()).make_preferred();
}

}  // namespace quorvane
