// Faults caught here: an off-by-one in the binary test, a failed write that costs the old file or
// leaves a temporary one behind, a folder cut at the wrong separator.
#include "base/files.h"

#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

#if !defined(_WIN32)
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#endif

using namespace quorvane;

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

TEST(FileHolds, SeesEveryDifference) {
  const TempFolder folder;
  const std::string whole(200000, 'a');  // several pieces
  for (const std::string& other : {whole + 'a', whole.substr(1), LettersWith('b', 65536, 200000),
                                   LettersWith('b', 200000, 200000), std::string()}) {
    EXPECT_FALSE(FileHolds(folder.Write("file", other), whole)) << other.size();
    EXPECT_TRUE(FileHolds(folder / "file", other)) << other.size();
  }
  EXPECT_FALSE(FileHolds(folder / "none", ""));
}

TEST(WriteWholeFile, ThreadsMayWriteIntoOneFolder) {
  const TempFolder folder;
  std::vector<std::thread> threads;
  for (int k = 0; k < 4; ++k) {
    threads.emplace_back([&folder, k] {
      const std::string letters(100000, static_cast<char>('a' + k));
      for (int round = 0; round < 20; ++round) {
        WriteWholeFile(folder / letters.substr(0, 1), letters);
        EXPECT_EQ(ReadText(folder / letters.substr(0, 1)), letters);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  folder.Write(".quorvane-71-2~", "half");
  RemoveLeftovers(folder.path());
  EXPECT_EQ(CountEntries(folder.path()), 4);
}

#if !defined(_WIN32)
TEST(WriteWholeFile, FollowsNoLinkThatStandsWhereItsTemporaryFileWould) {
  const TempFolder folder;
  const fs::path victim = folder.Write("victim", "whole");
  for (int k = 1; k <= 600; ++k) {  // more than the tests of one process have used up
    const std::string number = std::to_string(getpid()) + "-" + std::to_string(k);
    fs::create_symlink(victim, folder / (".quorvane-" + number + "~"));
  }
  WriteWholeFile(folder / "file", "new");
  EXPECT_EQ(ReadText(folder / "file"), "new");
  EXPECT_EQ(ReadText(victim), "whole");
  EXPECT_EQ(CountEntries(folder.path()), 602);
}

TEST(WriteWholeFile, LeavesAWriteProtectedFileAlone) {
  const TempFolder folder;
  const fs::path file = folder.Write("file", "whole");
  chmod(file.c_str(), 0444);
  chmod(folder.path().c_str(), 0777);
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;  // nothing is forbidden to root
    if (geteuid() == 0 && setuid(kNobody) != 0) _exit(2);
    try {
      WriteWholeFile(file, "new");
    } catch (const FileFault& fault) {
      _exit(fault.number() == EACCES ? 0 : 3);
    }
    _exit(4);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ReadText(file), "whole");
}

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
