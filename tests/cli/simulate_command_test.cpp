#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

class SimulateCommand : public CommandTest {
 protected:
  int Simulate(const std::string& job, const std::string& seed = "7") {
    folder.Write("job.toml", job);
    return Run({"simulate", Path("job.toml"), "-o", Path("s.IP8"), "--json", Path("out.json"),
                "--seed", seed});
  }
};

}  // namespace

TEST_F(SimulateCommand, WritesAScanThatLoads) {
  ASSERT_EQ(Simulate("model = \"A+B<>AB\"\nmw = 60000\nload = 1.0e-6\nlnk1 = \"13\"\n"), 0)
      << err.str();
  const std::string first = ReadText(folder / "s.IP8");
  EXPECT_TRUE(first.starts_with("QV:A+B<>AB : MW(A)=60000,C(A)=1e-06,")) << first.substr(0, 60);
  const auto result = Result();
  EXPECT_EQ(result["points"], 301);
  EXPECT_EQ(result["species"][0].size(), 3U);
  EXPECT_FALSE(result.contains("conc"));
  EXPECT_GT(result["ref_b"], 0.0);
  EXPECT_EQ(result["text"], first);
  ASSERT_EQ(Simulate("model = 6\nmw = 60000\nload = 1.0e-6\nlnk1 = \"13\"\n"), 0);
  EXPECT_TRUE(ReadText(folder / "s.IP8") == first);
  ASSERT_EQ(Simulate("model = 6\nlnk1 = 13\n", "8"), 0);
  EXPECT_FALSE(ReadText(folder / "s.IP8") == first);
  EXPECT_EQ(Run({"scan", Path("s.IP8")}), 0) << err.str();
  folder.Write("job.toml", "model = \"Ideal\"\nsave_as = \"RA8\"\nwavelength = 230\n");
  ASSERT_EQ(Run({"simulate", Path("job.toml")}), 0);
  EXPECT_NE(out.str().find("\r\nR 8 20.0 16000 0099999 1.0000E12 230 21\r\n"), std::string::npos);
}

TEST_F(SimulateCommand, ReadsKByItsDisplay) {
  std::vector<double> references;
  for (const char* k : {"lnk1 = 13.815510557964274", "k_display = \"log10\"\nlnk1 = 6",
                        "k_display = \"k\"\nlnk1 = 1e6"}) {
    ASSERT_EQ(Simulate("model = \"Mon-Nmer\"\nrms = 0\n" + std::string(k) + "\n"), 0) << err.str();
    references.push_back(Result()["ref_a"]);
  }
  EXPECT_NEAR(references[1] / references[0], 1.0, 1e-12);
  EXPECT_NEAR(references[2] / references[0], 1.0, 1e-12);
  ASSERT_EQ(Simulate("model = 7\nk_display = \"log10\"\nlnk1 = 5\n"), 0);  // both sites: 10^12
  EXPECT_NE(ReadText(folder / "s.IP8").find("LnKAB=27.6310,LnKAB2=27.6310"), std::string::npos);
}

TEST_F(SimulateCommand, RefusesBadInputs) {
  const struct {
    const char* job;
    const char* says;
  } cases[] = {
      {"", "model"},
      {"model = 11\n", "there is no such model"},
      {"model = \"ideal\"\n", "there is no such model"},
      {"model = 0\nmw = 99\n", "100 <= Molecular Weight <= 50,000,000."},
      {"model = 0\nspeed = \"fast\"\n", "job.toml:2"},
      {"model = 0\nmeniscus = 6.5\nbase = 6.5\n", "R(base)"},
      {"model = 3\nn1 = 3\n", "N-mer must be different from M-mer."},
      {"model = 0\nk_display = \"log\"\n", "k_display"},
      {"model = 0\nsave_as = \"RA1\"\n", "save_as"},
      {"model = 0\nmolweight = 5\n", "molweight"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(Simulate(test.job), 2) << test.job;
    EXPECT_NE(err.str().find(test.says), std::string::npos) << test.says << " | " << err.str();
  }
}

TEST_F(SimulateCommand, AFailureWritesNothing) {
  EXPECT_EQ(Simulate("model = 0\nmw = 5e7\nspeed = 60000\n"), 1);
  EXPECT_NE(err.str().find("Error while Simulating Data!  Error was Overflow"), std::string::npos)
      << err.str();
  EXPECT_NE(err.str().find("Please try more reasonable values"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "s.IP8"));
  EXPECT_FALSE(std::filesystem::exists(folder / "out.json"));
}

TEST_F(SimulateCommand, ListsMakeASeriesOrNothing) {
  const std::string lists = "speed = [10000, 14000]\nload = [1e-6, \"2e-6\", 5e-6]\n";
  folder.Write("job.toml", "model = \"Ideal\"\nsave_as = \"RA8\"\n" + lists);
  const auto run = [&] {
    return Run({"simulate", Path("job.toml"), "-o", Path("run"), "--json", Path("out.json"),
                "--seed", "7"});
  };
  ASSERT_EQ(run(), 0) << err.str();
  const auto columns = Result()["columns"];
  ASSERT_EQ(columns.size(), 6U);
  EXPECT_EQ(columns[5]["file"], "00002.RA3");
  EXPECT_EQ(columns[5]["speed"], 14000);
  EXPECT_EQ(columns[5]["load"], 5e-6);
  EXPECT_EQ(columns[5]["r"].size(), 301U);
  EXPECT_EQ(columns[5]["text"], ReadText(folder / "run" / "00002.RA3"));
  EXPECT_EQ(Run({"simulate", Path("job.toml")}), 2);  // no folder
  folder.Write("job.toml", "model = 0\nmw = 5e7\nspeed = [1000, 60000]\n");
  std::filesystem::remove_all(folder / "run");
  EXPECT_EQ(run(), 1);
  EXPECT_NE(err.str().find("00002.IP1 (speed 60000, load 1.00E-06): Overflow. Nothing was"),
            std::string::npos)
      << err.str();
  EXPECT_FALSE(std::filesystem::exists(folder / "run"));
  folder.Write("job.toml", "model = 0\nload = []\n");
  EXPECT_EQ(run(), 2);
}
