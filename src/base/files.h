// Files and folders: questions about paths, whole-file reads and writes.
#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace quorvane {

// A file that could not be read or written; what() names it and says why.
class FileFault : public std::runtime_error {
 public:
  explicit FileFault(const std::string& text, int number = 0)
      : std::runtime_error(text), number_(number) {}

  // Of the system's error; 0 where it is none of the system's.
  int number() const { return number_; }

 private:
  int number_;
};

// False for an empty text and for one that holds any of / \ : * ? " < > |
bool ValidFileName(std::string_view name);

// Whether the path is a folder; false if it cannot be looked at.
bool DirExists(const std::filesystem::path& path);

// Whether the path can be looked at and is not a folder.
bool FileExists(const std::filesystem::path& path);

// The folder part of a path in text form: up to and including the last ":", or what stands before
// the last "\" or "/", whichever comes later; empty if neither occurs.
std::string DirectoryOf(std::string_view path);

// Whether the bytes of a file, of a long one at least its first 16384, show signs of a binary file:
// a character below 32 that is neither CR nor LF among the first L - 1 characters, L being its
// length, or among the first 16381 characters of a file of 16384 or more. A TAB is such a
// character.
bool LooksBinary(std::string_view bytes);

// LooksBinary of a file. False if it cannot be read.
bool IsBinaryFile(const std::filesystem::path& path);

// The whole file. Throws FileFault if it cannot be read, is a folder, or is longer than `limit`
// bytes.
std::string ReadWholeFile(const std::filesystem::path& path, std::size_t limit);

// Whether the file holds `bytes` and nothing else. False if it cannot be read.
bool FileHolds(const std::filesystem::path& path, std::string_view bytes);

// Writes `bytes` to a temporary file beside `path`, flushes it to the disk, reads it back and
// renames it over `path`: the old file stays whole until the new one is. `check`, if given, looks
// at the temporary file before it is renamed. A file that stood there keeps its permissions; one
// that is write-protected stays. Throws FileFault, or what `check` throws; then nothing changed.
// Threads may write into one folder at the same time.
void WriteWholeFile(const std::filesystem::path& path, std::string_view bytes,
                    const std::function<void(const std::filesystem::path&)>& check = {});

// Removes the temporary files that killed processes left in `folder`. Only for a folder in which no
// other process writes.
void RemoveLeftovers(const std::filesystem::path& folder);

// What the system says of an error: the same English words on every system.
std::string SystemErrorText(const std::error_code& error);

// The path as UTF-8 text, as it was given.
std::string PathText(const std::filesystem::path& path);

// The path that UTF-8 text names.
std::filesystem::path PathFromText(std::string_view text);

}  // namespace quorvane
