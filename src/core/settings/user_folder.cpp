#include "core/settings/user_folder.h"

#if !defined(_WIN32)
#include <pwd.h>
#include <unistd.h>
#endif

#include "base/environment.h"
#include "base/files.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

fs::path FromEnvironment(const char* name) {
  return PathFromText(Environment(name));
}

#if !defined(_WIN32)
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
  return FromEnvironment("APPDATA") / "Quorvane";
#else
  const fs::path configured = FromEnvironment("XDG_CONFIG_HOME");
  if (configured.is_absolute()) return configured / "quorvane";
  return HomeFolder() / ".config" / "quorvane";
#endif
}

fs::path DataFolder() {
#if defined(_WIN32)
  return FromEnvironment("LOCALAPPDATA") / "Quorvane";
#else
  const fs::path configured = FromEnvironment("XDG_DATA_HOME");
  if (configured.is_absolute()) return configured / "quorvane";
  return HomeFolder() / ".local" / "share" / "quorvane";
#endif
}

}  // namespace quorvane
