#include "core/settings/user_folder.h"

#if defined(_WIN32)
#include <windows.h>

#include <shlobj.h>

#include <memory>
#else
#include <pwd.h>
#include <unistd.h>
#endif

#include "base/environment.h"
#include "base/files.h"
#include "base/paths.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

fs::path FromEnvironment(const char* name) {
  return PathFromText(Environment(name));
}

#if defined(_WIN32)
struct FreeByShell {
  void operator()(wchar_t* text) const { CoTaskMemFree(text); }
};

// The folder that a variable names; where it is not set, the system knows it.
fs::path FolderOfUser(const char* variable, const KNOWNFOLDERID& id) {
  fs::path folder = FromEnvironment(variable);
  if (IsWholePath(folder)) return folder;
  PWSTR known = nullptr;
  const bool found = SHGetKnownFolderPath(id, 0, nullptr, &known) == S_OK;
  const std::unique_ptr<wchar_t, FreeByShell> text(known);
  return found ? fs::path(known) : fs::temp_directory_path();
}
#else
// Services and containers start programs without HOME; then the list of users knows it.
fs::path HomeFolder() {
  fs::path home = FromEnvironment("HOME");
  if (home.is_absolute()) return home;
  const passwd* user = getpwuid(getuid());
  return user == nullptr ? fs::path("/") : PathFromText(user->pw_dir);
}
#endif

}  // namespace

fs::path ConfigurationFolder() {
#if defined(_WIN32)
  return FolderOfUser("APPDATA", FOLDERID_RoamingAppData) / "Quorvane";
#else
  const fs::path configured = FromEnvironment("XDG_CONFIG_HOME");
  if (configured.is_absolute()) return configured / "quorvane";
  return HomeFolder() / ".config" / "quorvane";
#endif
}

fs::path DataFolder() {
#if defined(_WIN32)
  return FolderOfUser("LOCALAPPDATA", FOLDERID_LocalAppData) / "Quorvane";
#else
  const fs::path configured = FromEnvironment("XDG_DATA_HOME");
  if (configured.is_absolute()) return configured / "quorvane";
  return HomeFolder() / ".local" / "share" / "quorvane";
#endif
}

}  // namespace quorvane
