#include "base/file_replace.h"

#if defined(_WIN32)
#include <windows.h>

#include <cerrno>
#include <chrono>
#include <thread>
#else
#include <unistd.h>
#endif

namespace quorvane {

namespace fs = std::filesystem;

#if defined(_WIN32)

bool MayReplace(const fs::path& file) {
  const DWORD attributes = GetFileAttributesW(file.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) {
    return true;
  }
  errno = EACCES;
  return false;
}

std::error_code RenameOver(const fs::path& from, const fs::path& to) {
  constexpr int kAttempts = 10;
  constexpr std::chrono::milliseconds kPause(50);
  std::error_code error;
  for (int k = 0; k < kAttempts; ++k) {
    if (k > 0) std::this_thread::sleep_for(kPause);
    fs::rename(from, to, error);
    if (!error || !(OpenElsewhere(to) || OpenElsewhere(from))) break;
  }
  return error;
}

bool OpenElsewhere(const fs::path& file) {
  const HANDLE handle = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);  // 0: alone
  if (handle == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_SHARING_VIOLATION;
  CloseHandle(handle);
  return false;
}

#else

bool MayReplace(const fs::path& file) {
  return access(file.c_str(), W_OK) == 0;
}

std::error_code RenameOver(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::rename(from, to, error);
  return error;
}

bool OpenElsewhere(const fs::path&) {
  return false;
}

#endif

}  // namespace quorvane
