// Experiments that running programs keep aside, so that a crash does not cost them.
#pragma once

#include <chrono>
#include <filesystem>
#include <vector>

#include "archive/experiment.h"
#include "base/file_lock.h"

namespace quorvane {

// Where one running program keeps its unsaved experiment: a numbered folder below one that all
// share, owned by the program that holds its lock. Move-only; the end of the object gives the place
// up, and removes it if nothing is kept there.
class UnsavedWork {
 public:
  // A place of its own below `folder`, which is made if need be. Throws FileFault, also where files
  // cannot be locked.
  static UnsavedWork Claim(const std::filesystem::path& folder);

  // The places of programs that ended without giving up what they kept, the latest first; they
  // belong to the caller now. None if `folder` cannot be read.
  static std::vector<UnsavedWork> Abandoned(const std::filesystem::path& folder);

  UnsavedWork(UnsavedWork&&) noexcept = default;
  UnsavedWork& operator=(UnsavedWork&&) noexcept = default;
  ~UnsavedWork();

  // Whether somebody has removed the place meanwhile.
  bool Lost() const { return !lock_.Stands(); }

  // The archive, which need not exist.
  std::filesystem::path File() const { return folder_ / "experiment.exz"; }

  // When the archive was written.
  std::chrono::system_clock::time_point KeptAt() const;

  // Moves an archive that cannot be read out of the way; returns where it is now. Throws FileFault.
  std::filesystem::path SetAside();

  // Removes the archive, if there is one.
  void Discard() const;

 private:
  UnsavedWork(std::filesystem::path folder, FileLock lock);
  static UnsavedWork At(const std::filesystem::path& folder);
  bool Owned() const { return lock_.Held(); }

  std::filesystem::path folder_;
  FileLock lock_;
};

}  // namespace quorvane
