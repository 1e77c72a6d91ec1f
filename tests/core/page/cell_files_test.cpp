#include "core/page/cell_files.h"

#include <gtest/gtest.h>

#include "core/settings/user_folder.h"
#include "support/environment.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace fs = std::filesystem;

#if defined(_WIN32)
constexpr const char* kVariable = "APPDATA";
constexpr const char* kUsers = "Quorvane";
#else
constexpr const char* kVariable = "XDG_CONFIG_HOME";
constexpr const char* kUsers = "quorvane";
#endif

TEST(UserFolder, IsKnownWithoutHome) {
  for (const char* odd : {"", "relative"}) {
    const ChangedVariable variables[] = {
        {"HOME", odd}, {"XDG_CONFIG_HOME", odd}, {"APPDATA", odd}, {"LOCALAPPDATA", odd}};
    EXPECT_TRUE(ConfigurationFolder().is_absolute() && DataFolder().is_absolute()) << odd;
  }
}

TEST(FindChannelFile, BesideTheProgramThenTheUsersThenTheInstalled) {
  const TempFolder folder;
  const fs::path program = folder / "usr" / "bin";
  const fs::path files[] = {folder / "usr" / "share" / "quorvane" / "channels.txt",
                            folder / "config" / kUsers / "channels.txt", program / "channels.txt"};
  const ChangedVariable users(kVariable, (folder / "config").string());
  fs::create_directories(program);
  EXPECT_EQ(FindChannelFile(program), program / "channels.txt");
  for (const fs::path& file : files) {  // each comes before those that exist already
    fs::create_directories(file.parent_path());
    folder.Write(fs::relative(file, folder.path()).string(), "0\n");
    EXPECT_EQ(FindChannelFile(program), file);
  }
}
