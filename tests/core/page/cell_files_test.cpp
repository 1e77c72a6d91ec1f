#include "core/page/cell_files.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "core/settings/user_folder.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace fs = std::filesystem;

TEST(UserFolder, IsKnownWithoutHome) {
  const std::string home = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
  for (const char* odd : {"", "relative"}) {
    ASSERT_EQ(*odd == '\0' ? unsetenv("HOME") : setenv("HOME", odd, 1), 0);
    EXPECT_TRUE(ConfigurationFolder().is_absolute() && DataFolder().is_absolute()) << odd;
  }
  if (!home.empty()) setenv("HOME", home.c_str(), 1);
}

TEST(FindChannelFile, BesideTheProgramThenTheUsersThenTheInstalled) {
  const TempFolder folder;
  const fs::path program = folder / "usr" / "bin";
  const fs::path files[] = {folder / "usr" / "share" / "quorvane" / "channels.txt",
                            folder / "config" / "quorvane" / "channels.txt",
                            program / "channels.txt"};
  ASSERT_EQ(setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1), 0);
  fs::create_directories(program);
  EXPECT_EQ(FindChannelFile(program), program / "channels.txt");
  for (const fs::path& file : files) {  // each comes before those that exist already
    fs::create_directories(file.parent_path());
    folder.Write(fs::relative(file, folder.path()).string(), "0\n");
    EXPECT_EQ(FindChannelFile(program), file);
  }
  unsetenv("XDG_CONFIG_HOME");
}
