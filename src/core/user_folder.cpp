#include "core/user_folder.h"

#include <cstdlib>

#include "base/files.h"

namespace fs = std::filesystem;

namespace {

// The value of an environment variable, empty if it is not set.
fs::path FromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? fs::path() : PathFromText(value);
}

}  // namespace

fs::path ConfigurationFolder() {
#if defined(_WIN32)
  return FromEnvironment("APPDATA") / "Quorvane";
#else
  const fs::path configured = FromEnvironment("XDG_CONFIG_HOME");
  if (configured.is_absolute()) return configured / "quorvane";
  return FromEnvironment("HOME") / ".config" / "quorvane";
#endif
}

fs::path DataFolder() {
#if defined(_WIN32)
  return FromEnvironment("LOCALAPPDATA") / "Quorvane";
#else
  const fs::path configured = FromEnvironment("XDG_DATA_HOME");
  if (configured.is_absolute()) return configured / "quorvane";
  return FromEnvironment("HOME") / ".local" / "share" / "quorvane";
#endif
}
