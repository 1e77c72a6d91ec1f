#include "archive/unsaved_work.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "base/files.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

bool IsPlace(const fs::path& path) {
  return DirExists(path) &&
         PathText(path.filename()).find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

UnsavedWork::UnsavedWork(fs::path folder, FileLock lock)
    : folder_(std::move(folder)), lock_(std::move(lock)) {
  if (Owned()) RemoveLeftovers(folder_);
}

UnsavedWork UnsavedWork::At(const fs::path& folder) {
  return {folder, FileLock(folder / "lock")};
}

UnsavedWork UnsavedWork::Claim(const fs::path& folder) {
  constexpr int kMostPlaces = 1000;  // more abandoned ones than anybody declines to look at
  std::error_code error;
  fs::create_directories(folder, error);
  for (int number = 1; !error && number <= kMostPlaces; ++number) {
    const fs::path place = folder / std::to_string(number);
    const bool made = fs::create_directory(place, error);
    if (error) break;
    UnsavedWork work = At(place);
    if (work.Owned() && !FileExists(work.File())) return work;
    if (made && !work.Owned() && work.lock_.Holder().empty() && fs::remove(place, error)) {
      throw FileFault(PathText(place) + ": no file can be locked there");
    }
  }
  throw FileFault(PathText(folder) + ": " +
                      (error ? SystemErrorText(error) : std::string("no place can be made there")),
                  error.default_error_condition().value());
}

std::vector<UnsavedWork> UnsavedWork::Abandoned(const fs::path& folder) {
  std::error_code error;
  std::vector<UnsavedWork> found;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    if (!IsPlace(at->path())) continue;
    UnsavedWork work = At(at->path());
    if (work.Owned() && FileExists(work.File())) found.push_back(std::move(work));
  }
  std::sort(found.begin(), found.end(),
            [](const UnsavedWork& a, const UnsavedWork& b) { return a.KeptAt() > b.KeptAt(); });
  return found;
}

// The folder goes only if it is empty: another program may have claimed the place by then.
UnsavedWork::~UnsavedWork() {
  if (!Owned()) return;
  lock_ = {};
  std::error_code ignored;
  fs::remove(folder_, ignored);
}

std::chrono::system_clock::time_point UnsavedWork::KeptAt() const {
  std::error_code error;
  const fs::file_time_type time = fs::last_write_time(File(), error);
  if (error) return {};
  return std::chrono::time_point_cast<std::chrono::system_clock::duration>(
      std::chrono::file_clock::to_sys(time));
}

fs::path UnsavedWork::SetAside() {
  const fs::path shared = folder_.parent_path();
  std::error_code error;
  fs::path target;
  for (int number = 1; target.empty() || fs::exists(target, error); ++number) {
    target = shared / ("damaged-" + std::to_string(number) + ".exz");
  }
  fs::rename(File(), target, error);
  if (error)
    throw FileFault(PathText(File()) + ": " + SystemErrorText(error),
                    error.default_error_condition().value());
  return target;
}

void UnsavedWork::Discard() const {
  std::error_code ignored;
  fs::remove(File(), ignored);
}

}  // namespace quorvane
