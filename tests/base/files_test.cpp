// Faults caught here: an off-by-one in the binary test, a failed write that costs the old file or
// leaves a temporary one behind, a folder cut at the wrong separator.
#include "base/files.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

#if !defined(_WIN32)
#include <sys/resource.h>
#include <unistd.h>
#include <csignal>
#endif

namespace fs = std::filesystem;

namespace {

std::ptrdiff_t CountEntries(const fs::path& folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

// `length` letters with `c` as the k-th, k from 1.
std::string LettersWith(char c, std::size_t k, std::size_t length) {
  std::string text(length, 'a');
  text[k - 1] = c;
  return text;
}

}  // namespace

TEST(DirectoryOf, StopsAtTheLastSeparator) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"c:\\run\\00012.RA3", "c:\\run"},
      {"c:00012.RA3", "c:"},
      {"c:\\00012.RA3", "c:"},
      {"/home/user/00012.RA3", "/home/user"},
      {"/00012.RA3", ""},
      {"a\\b/c", "a\\b"},
      {"a/b:c", "a/b:"},
      {"folder\\", "folder"},
      {"00012.RA3", ""},
      {"", ""}};
  for (const auto& [path, folder] : cases) EXPECT_EQ(DirectoryOf(path), folder) << path;
}

TEST(IsBinaryFile, LooksAtTheCharactersOfItsLimit) {
  const struct {
    bool binary;
    std::string bytes;
  } cases[] = {
      {false, ""},
      {false, "comment \xB1\x81\xFF\r\nR 3 20.0\n"},
      {true, "com\tment\r\n"},
      {true, std::string("a\0b", 3)},
      {true, "a\x1Fz"},
      {false, "\t"},  // the last character of a short file is not looked at
      {false, LettersWith('\t', 100, 100)},
      {true, LettersWith('\t', 99, 100)},
      {true, LettersWith('\t', 16382, 16383)},
      {true, LettersWith('\t', 16381, 16384)},  // the last character of a long one that is
      {false, LettersWith('\t', 16382, 16384)},
      {false, LettersWith('\0', 16382, 20000)},
  };
  const TempFolder folder;
  for (const auto& c : cases) {
    EXPECT_EQ(IsBinaryFile(folder.Write("file", c.bytes)), c.binary)
        << c.bytes.size() << " characters: " << c.bytes.substr(0, 20);
  }
  EXPECT_FALSE(IsBinaryFile(folder / "none"));
  EXPECT_FALSE(IsBinaryFile(folder.path()));
}

TEST(WriteWholeFile, ReplacesAndLeavesNothingBehind) {
  const TempFolder folder;
  const fs::path file = folder / "\u00B1 file";
  for (const std::string& bytes :
       {std::string("old\r\n"), std::string("new\0", 4), std::string()}) {
    WriteWholeFile(file, bytes);
    EXPECT_EQ(ReadText(file), bytes);
  }
  EXPECT_THROW(WriteWholeFile(folder.path(), "x"), FileFault);
  EXPECT_THROW(WriteWholeFile(folder / "none" / "file", "x"), FileFault);
  EXPECT_EQ(CountEntries(folder.path()), 1);
}

#if !defined(_WIN32)
TEST(WriteWholeFile, KeepsTheOldFileWhenTheDiskIsFull) {
  const TempFolder folder;
  const fs::path file = folder.Write("file", "old");
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  const rlimit small = {4096, old.rlim_max};  // no file of this process grows beyond it
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_THROW(WriteWholeFile(file, std::string(100000, 'x')), FileFault);
  EXPECT_THROW(WriteWholeFile(folder / "fresh", std::string(100000, 'x')), FileFault);
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(ReadText(file), "old");
  EXPECT_EQ(CountEntries(folder.path()), 1);
  EXPECT_THROW(WriteWholeFile("/dev/full", "x"), FileFault);
}

#endif
