#include "base/environment.h"

#include <cstdlib>

#if defined(_WIN32)
#include "base/files.h"
#endif

namespace quorvane {

std::string Environment(const char* name) {
#if defined(_WIN32)
  const std::string text = name;
  const wchar_t* value = _wgetenv(std::wstring(text.begin(), text.end()).c_str());
  return value == nullptr ? std::string() : PathText(value);
#else
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : value;
#endif
}

}  // namespace quorvane
