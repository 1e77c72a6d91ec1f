// A lock that tells the processes of one or several machines that something is in use.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace quorvane {

// Stands as a small file. The system gives the lock up when its process ends, in whatever way, so
// that a file left behind by a crash is taken over. Where the file cannot be made, in a folder that
// is read-only or on a disk without locks, there is none: nobody holds it and nobody is refused.
// Move-only; the end of the object releases the lock and removes the file.
class FileLock {
 public:
  FileLock() = default;

  // Tries once, without waiting, to take the lock that `file` stands for.
  explicit FileLock(std::filesystem::path file);
  FileLock(FileLock&& other) noexcept;
  FileLock& operator=(FileLock&& other) noexcept;
  ~FileLock();

  bool Held() const { return handle_ != kNoHandle; }

  // Whether it is held and others can see it: a file that somebody has removed says nothing.
  bool Stands() const;

  // Who else holds it, for people: "process 71 of ann on lab-pc, since 2026-11-21, 14:03:22". Empty
  // if nobody does.
  const std::string& Holder() const { return holder_; }

  const std::filesystem::path& File() const { return file_; }

 private:
  static constexpr std::intptr_t kNoHandle = -1;

  void Take();
  void SignFile() const;
  void Release();

  std::filesystem::path file_;
  std::intptr_t handle_ = kNoHandle;  // of the open file, as the system has it
  std::string holder_;
};

}  // namespace quorvane
