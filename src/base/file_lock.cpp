#include "base/file_lock.h"

#include <array>
#include <cerrno>
#include <utility>

#include "base/clock.h"
#include "base/environment.h"
#include "base/files.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace quorvane {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestLine = 200;  // characters that are shown of what a lock file says

std::string ThisProcess() {
#if defined(_WIN32)
  std::string who = "process " + std::to_string(GetCurrentProcessId());
  const std::string user = Environment("USERNAME");
  const std::string machine = Environment("COMPUTERNAME");
#else
  std::string who = "process " + std::to_string(getpid());
  const std::string user = Environment("USER");
  std::array<char, 256> name{};
  gethostname(name.data(), name.size() - 1);
  const std::string machine = name.data();
#endif
  if (!user.empty()) who += " of " + user;
  if (!machine.empty()) who += " on " + machine;
  return who + ", since " + DateAndTimeText();
}

// The line of a lock file; anybody may have written it.
std::string ReadHolder(const fs::path& file) {
  constexpr std::size_t kLimit = 4096;
  std::string line;
  try {
    line = ReadWholeFile(file, kLimit).substr(0, kLongestLine);
  } catch (const FileFault&) {  // it says nothing, but is held
  }
  std::erase_if(line, [](char c) { return static_cast<unsigned char>(c) < ' '; });
  return line.empty() ? "another process" : line;
}

}  // namespace

FileLock::FileLock(fs::path file) : file_(std::move(file)) {
  Take();
  if (Held()) SignFile();
}

FileLock::FileLock(FileLock&& other) noexcept
    : file_(std::move(other.file_)),
      handle_(std::exchange(other.handle_, kNoHandle)),
      holder_(std::move(other.holder_)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
  if (this == &other) return *this;
  Release();
  file_ = std::move(other.file_);
  handle_ = std::exchange(other.handle_, kNoHandle);
  holder_ = std::move(other.holder_);
  return *this;
}

FileLock::~FileLock() {
  Release();
}

#if defined(_WIN32)

void FileLock::Take() {
  const HANDLE handle = CreateFileW(file_.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_HIDDEN, nullptr);
  if (handle != INVALID_HANDLE_VALUE) {
    handle_ = reinterpret_cast<std::intptr_t>(handle);
  } else if (GetLastError() == ERROR_SHARING_VIOLATION) {
    holder_ = ReadHolder(file_);
  }
}

void FileLock::SignFile() const {
  const HANDLE handle = reinterpret_cast<HANDLE>(handle_);
  const std::string line = ThisProcess() + "\n";
  DWORD written = 0;
  WriteFile(handle, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  SetEndOfFile(handle);
}

bool FileLock::Stands() const {
  return Held();  // nobody can remove an open file
}

void FileLock::Release() {
  if (!Held()) return;
  CloseHandle(reinterpret_cast<HANDLE>(std::exchange(handle_, kNoHandle)));
  std::error_code ignored;  // fails when another process was quicker to take it
  fs::remove(file_, ignored);
}

#else

namespace {

// A lock file of another user may be readable only, which is enough to lock it.
int OpenLockFile(const fs::path& file) {
  constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const int handle = open(file.c_str(), O_RDWR | O_CREAT | kFlags, 0644);
  return handle >= 0 || errno != EACCES ? handle : open(file.c_str(), O_RDONLY | kFlags);
}

// Whether `file` is still what `handle` has open, and not removed or replaced meanwhile.
bool IsOpenFile(const fs::path& file, int handle) {
  struct stat opened {};
  struct stat named {};
  return fstat(handle, &opened) == 0 && S_ISREG(opened.st_mode) &&
         lstat(file.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

}  // namespace

void FileLock::Take() {
  constexpr int kAttempts = 20;  // each fails only if a holder ends at that moment
  for (int k = 0; k < kAttempts; ++k) {
    const int handle = OpenLockFile(file_);
    if (handle < 0) return;
    const bool locked = flock(handle, LOCK_EX | LOCK_NB) == 0;
    const bool elsewhere = !locked && errno == EWOULDBLOCK;
    if (locked && IsOpenFile(file_, handle)) {
      handle_ = handle;
      return;
    }
    std::error_code ignored;
    if (!locked && !elsewhere && IsOpenFile(file_, handle)) fs::remove(file_, ignored);
    close(handle);
    if (elsewhere) holder_ = ReadHolder(file_);
    if (!locked) return;  // elsewhere, or on a disk without locks
  }
}

void FileLock::SignFile() const {
  const std::string line = ThisProcess() + "\n";
  const int handle = static_cast<int>(handle_);
  // What is not written shows in nothing but the words of a message.
  if (ftruncate(handle, 0) == 0 && pwrite(handle, line.data(), line.size(), 0) < 0) return;
}

bool FileLock::Stands() const {
  return Held() && IsOpenFile(file_, static_cast<int>(handle_));
}

// Removed while it is still locked, so that nobody takes the file that is about to go.
void FileLock::Release() {
  if (!Held()) return;
  std::error_code ignored;
  if (Stands()) fs::remove(file_, ignored);
  close(static_cast<int>(std::exchange(handle_, kNoHandle)));
}

#endif

}  // namespace quorvane
