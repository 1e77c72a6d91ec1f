// Faults caught here: a lock that outlives its process or is held twice, a file that stays behind,
// a folder without lock files that keeps somebody out, a lock file that leads elsewhere.
#include "base/file_lock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "support/temp_folder.h"

#if !defined(_WIN32)
#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace quorvane;
namespace fs = std::filesystem;

TEST(FileLock, IsHeldOnceAndGoesWithItsObject) {
  const TempFolder folder;
  FileLock moved;
  {
    FileLock lock(folder / "lock");
    EXPECT_TRUE(lock.Held());
    moved = std::move(lock);
  }
  const FileLock second(folder / "lock");
  EXPECT_FALSE(second.Held());
  EXPECT_TRUE(second.Holder().starts_with("process " + std::to_string(getpid()) + " "))
      << second.Holder();
  EXPECT_EQ(second.Holder().find('\n'), std::string::npos);
  moved = {};
  EXPECT_FALSE(fs::exists(folder / "lock"));
}

TEST(FileLock, IsHeldByOneOfManyThatComeAndGo) {
  const TempFolder folder;
  std::atomic<int> holders = 0;
  std::atomic<int> taken = 0;
  const auto comeAndGo = [&] {
    for (int round = 0; round < 300; ++round) {
      const FileLock lock(folder / "lock");
      if (!lock.Held()) continue;
      EXPECT_EQ(++holders, 1);
      ++taken;
      --holders;
    }
  };
  std::thread other(comeAndGo);
  comeAndGo();
  other.join();
  EXPECT_GE(taken, 2);
}

#if !defined(_WIN32)  // windows_files_test.cpp says it for Windows
TEST(FileLock, OfAKilledProcessIsTakenOver) {
  const TempFolder folder;
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const FileLock lock(folder / "lock");
    if (write(ready[1], "x", 1) == 1) pause();
    _exit(0);
  }
  char c = 0;
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  const FileLock early(folder / "lock");
  EXPECT_FALSE(early.Held());
  EXPECT_TRUE(early.Holder().starts_with("process " + std::to_string(child) + " "));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(fs::exists(folder / "lock"));
  EXPECT_TRUE(FileLock(folder / "lock").Held());
  EXPECT_FALSE(fs::exists(folder / "lock"));
}

TEST(FileLock, ThatCannotBeMadeRefusesNobody) {
  const TempFolder folder;
  const fs::path victim = folder.Write("victim", "whole");
  fs::create_symlink(victim, folder / "link");
  fs::create_directory(folder / "folder");
  for (const fs::path& file : {folder / "none" / "lock", folder / "link", folder / "folder"}) {
    const FileLock lock(file);
    EXPECT_FALSE(lock.Held()) << file;
    EXPECT_EQ(lock.Holder(), "") << file;
  }
  EXPECT_EQ(ReadText(victim), "whole");
}
#endif
