// Faults caught here: a slip in a job that is passed over, or reported without file, line and key;
// a job that does part of its work before it is refused.
#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

class BadJobTest : public CommandTest {};

TEST_F(BadJobTest, IsRefusedWithFileLineAndKey) {
  WriteScan("00001.RA3");
  WriteScan("00002.RA3");
  const std::string loads =
      "[[load]]\nfile = \"00001.RA3\"\n[[load]]\nfile = \"00002.RA3\"\nblank = true\n";
  std::istringstream jobs(ReadText(std::string(QUORVANE_SOURCE_DIR) + "/tests/cli/bad_jobs.txt"));
  int count = 0;
  std::string job;
  for (std::string line; std::getline(jobs, line);) {
    if (line.starts_with('#')) continue;
    if (!line.starts_with('>')) {
      job += line + '\n';
      continue;
    }
    EXPECT_EQ(Analyze(loads + job), 2) << job;
    EXPECT_NE(err.str().find("job.toml" + line.substr(1)), std::string::npos) << job << err.str();
    EXPECT_FALSE(std::filesystem::exists(folder / "out.json")) << job;
    job.clear();
    ++count;
  }
  EXPECT_GT(count, 30);
}

TEST_F(BadJobTest, JobsThatCannotBeReadHaveStatusThree) {
  EXPECT_EQ(Run({"analyze", Path("missing.toml")}), 3);
  EXPECT_EQ(Run({"analyze", folder.path().string()}), 3);
  folder.Write("channels.txt", "1\n0 2 \"sector\"\n5.0 x\n");
  WriteScan("00001.RA3");
  EXPECT_EQ(Analyze("[[load]]\nfile = \"00001.RA3\"\n"), 3);
  EXPECT_NE(err.str().find("channels.txt, line 3, factor: \"x\" is not a number"),
            std::string::npos)
      << err.str();
}

}  // namespace
