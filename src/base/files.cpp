#include "base/files.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <system_error>
#include <vector>

#include "base/file_replace.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace quorvane {

namespace fs = std::filesystem;

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void Fail(const fs::path& path, const char* what, const std::error_code& error) {
  const std::string why =
      OpenElsewhere(path) ? "another program has it open" : SystemErrorText(error);
  throw FileFault(PathText(path) + ": " + what + ": " + why,
                  error.default_error_condition().value());
}

[[noreturn]] void Fail(const fs::path& path, const char* what, int error) {
  Fail(path, what, std::error_code(error, std::generic_category()));
}

FileHandle OpenForWriting(const fs::path& path) {
#if defined(_WIN32)
  return FileHandle(_wfopen(path.c_str(), L"wb"));
#else
  return FileHandle(std::fopen(path.c_str(), "wbe"));
#endif
}

// Null with EEXIST if something stands there, be it a link that leads nowhere.
FileHandle OpenNew(const fs::path& path) {
#if defined(_WIN32)
  const int file = _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                          _S_IREAD | _S_IWRITE);
  return FileHandle(file < 0 ? nullptr : _fdopen(file, "wb"));
#else
  return FileHandle(std::fopen(path.c_str(), "wbxe"));
#endif
}

constexpr const char* kTemporaryPrefix = ".quorvane-";

bool FlushToDisk(std::FILE* file) {
  if (std::fflush(file) != 0) return false;
#if defined(_WIN32)
  return _commit(_fileno(file)) == 0;
#else
  return fsync(fileno(file)) == 0;
#endif
}

bool WriteAll(std::FILE* file, std::string_view bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

// A new file beside `target` that is not to outlive this. Its name may be taken: by what a kill
// left behind, or by a process of the same number on another machine or in another container.
class TemporaryFile {
 public:
  explicit TemporaryFile(const fs::path& target) {
    constexpr int kAttempts = 1000;
    for (int k = 0; k < kAttempts && !file_; ++k) {
      path_ = target.parent_path() / (kTemporaryPrefix + std::to_string(ProcessNumber()) + "-" +
                                      std::to_string(NextNumber()) + "~");
      file_ = OpenNew(path_);
      if (!file_ && errno != EEXIST) break;
    }
    made_ = file_ != nullptr;
  }
  ~TemporaryFile() {
    std::error_code ignored;
    file_.reset();
    if (made_) fs::remove(path_, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  const fs::path& path() const { return path_; }

  bool Made() const { return made_; }  // errno says why not

  // False, with errno, if the bytes are not all on the disk. Once.
  bool Write(std::string_view bytes) {
    const bool done = WriteAll(file_.get(), bytes) && FlushToDisk(file_.get());
    const int error = errno;
    file_.reset();
    errno = error;
    return done;
  }

 private:
  static int ProcessNumber() {
#if defined(_WIN32)
    return _getpid();
#else
    return getpid();
#endif
  }
  static unsigned NextNumber() {
    static std::atomic<unsigned> last = 0;
    return ++last;
  }

  fs::path path_;
  FileHandle file_;
  bool made_ = false;
};

// A rename is on the disk once its folder is. Not every file system can be asked for it.
void FlushFolder([[maybe_unused]] const fs::path& folder) {
#if !defined(_WIN32)
  const int handle =
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return;
  fsync(handle);
  close(handle);
#endif
}

// What the path finally leads to, so that a symbolic link is kept and its target replaced.
fs::path FinalTarget(const fs::path& path) {
  std::error_code error;
  if (!fs::is_symlink(fs::symlink_status(path, error))) return path;
  if (!fs::exists(path, error)) return path.parent_path() / fs::read_symlink(path, error);
  fs::path target = fs::canonical(path, error);
  return error ? path : target;
}

}  // namespace

bool ValidFileName(std::string_view name) {
  return !name.empty() && name.find_first_of("/\\:*?\"<>|") == std::string_view::npos;
}

bool DirExists(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

bool FileExists(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  return fs::exists(status) && !fs::is_directory(status);
}

std::string DirectoryOf(std::string_view path) {
  const std::size_t at = path.find_last_of(":\\/");
  if (at == std::string_view::npos) return {};
  return std::string(path.substr(0, path[at] == ':' ? at + 1 : at));
}

bool LooksBinary(std::string_view bytes) {
  constexpr std::size_t kWhole = 16384;
  constexpr std::size_t kLimit = 16382;
  const std::size_t limit = bytes.size() < kWhole ? bytes.size() : kLimit;
  const std::string_view seen = bytes.substr(0, limit > 0 ? limit - 1 : 0);
  return std::any_of(seen.begin(), seen.end(), [](char c) {
    return static_cast<unsigned char>(c) < ' ' && c != '\r' && c != '\n';
  });
}

bool IsBinaryFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::array<char, 16384> bytes;
  in.read(bytes.data(), bytes.size());
  return LooksBinary({bytes.data(), static_cast<std::size_t>(in.gcount())});
}

std::string ReadWholeFile(const fs::path& path, std::size_t limit) {
  if (DirExists(path)) throw FileFault(PathText(path) + ": is a folder", EISDIR);
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) Fail(path, "cannot be read", errno != 0 ? errno : EIO);
  std::string bytes;
  std::string piece(65536, '\0');
  while (in) {
    in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    bytes.append(piece, 0, static_cast<std::size_t>(in.gcount()));
    if (bytes.size() > limit) {
      throw FileFault(PathText(path) + ": is longer than " + std::to_string(limit) + " bytes");
    }
  }
  if (in.bad()) Fail(path, "cannot be read", EIO);
  return bytes;
}

bool FileHolds(const fs::path& path, std::string_view bytes) {
  std::ifstream in(path, std::ios::binary);
  std::string piece(65536, '\0');
  for (std::size_t at = 0; in;) {
    in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    const auto count = static_cast<std::size_t>(in.gcount());
    if (bytes.substr(at, count) != std::string_view(piece).substr(0, count)) return false;
    at += count;
    if (in.eof()) return at == bytes.size();
  }
  return false;
}

void WriteWholeFile(const fs::path& path, std::string_view bytes,
                    const std::function<void(const fs::path&)>& check) {
  if (DirExists(path)) throw FileFault(PathText(path) + ": is a folder", EISDIR);
  const fs::path target = FinalTarget(path);
  std::error_code ignored;
  const fs::file_status old = fs::status(target, ignored);
  if (fs::exists(old) && !fs::is_regular_file(old)) {  // a device or a pipe: nothing to keep whole
    FileHandle device = OpenForWriting(target);
    if (!device || !WriteAll(device.get(), bytes) || std::fflush(device.get()) != 0) {
      Fail(path, "cannot be written", errno);
    }
    return;
  }
  if (fs::exists(old) && !MayReplace(target)) Fail(path, "cannot be written", errno);
  TemporaryFile temporary(target);
  if (!temporary.Made()) Fail(path, "cannot be written", errno);
  // Before there is anything to read in it.
  if (fs::exists(old)) fs::permissions(temporary.path(), old.permissions(), ignored);
  if (!temporary.Write(bytes)) Fail(path, "cannot be written", errno);
  if (!FileHolds(temporary.path(), bytes)) {
    throw FileFault(PathText(path) + ": does not read back as it was written");
  }
  if (check) check(temporary.path());
  if (const std::error_code error = RenameOver(temporary.path(), target)) {
    Fail(path, "cannot be written", error);
  }
  FlushFolder(target.parent_path());
}

void RemoveLeftovers(const fs::path& folder) {
  std::error_code error;
  std::vector<fs::path> leftovers;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    if (PathText(at->path().filename()).starts_with(kTemporaryPrefix)) {
      leftovers.push_back(at->path());
    }
  }
  for (const fs::path& file : leftovers) fs::remove(file, error);
}

std::string SystemErrorText(const std::error_code& error) {
  return error.default_error_condition().message();
}

std::string PathText(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

fs::path PathFromText(std::string_view text) {
  return fs::path(std::u8string(text.begin(), text.end()));
}

}  // namespace quorvane
