#include "base/paths.h"

#include <string>
#include <system_error>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace quorvane {

namespace fs = std::filesystem;

#if defined(_WIN32)

namespace {

bool IsSlash(wchar_t letter) {
  return letter == L'\\' || letter == L'/';
}

// Also \\?\C:\folder, the form without a limit of length.
bool IsOfShare(const fs::path& path) {
  const std::wstring& text = path.native();
  return text.size() > 2 && IsSlash(text[0]) && IsSlash(text[1]) && !IsSlash(text[2]);
}

}  // namespace

bool IsWholePath(const fs::path& path) {
  return path.is_absolute() || IsOfShare(path);
}

fs::path WholePath(const fs::path& path) {
  std::wstring text(MAX_PATH, L'\0');
  for (;;) {
    const auto room = static_cast<DWORD>(text.size());
    const DWORD size = GetFullPathNameW(path.c_str(), room, text.data(), nullptr);
    if (size == 0) return path;
    text.resize(size);
    if (size < room) return text;
  }
}

#else

namespace {

bool IsOfShare(const fs::path&) {
  return false;
}

}  // namespace

bool IsWholePath(const fs::path& path) {
  return path.is_absolute();
}

fs::path WholePath(const fs::path& path) {
  std::error_code error;
  const fs::path whole = fs::absolute(path, error);
  return error ? path : whole.lexically_normal();
}

#endif

fs::path PathIn(const fs::path& folder, const fs::path& path) {
  return IsWholePath(path) ? path : folder / path;
}

fs::path ResolvedPath(const fs::path& path) {
  if (IsOfShare(path)) return WholePath(path);
  std::error_code error;
  fs::path resolved = fs::weakly_canonical(path, error);
  return error ? path : resolved;
}

}  // namespace quorvane
