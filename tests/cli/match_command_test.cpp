// Faults caught here: results that miss the JSON, options without effect, wrong statuses.
#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

class MatchCommandTest : public CommandTest {
 protected:
  void SetUp() override {
    WriteScan("3.RA3", 20000);
    WriteScan("1.RA3", 19000);
    WriteScan("2.RA3", 19800);
  }
  // Matches the three scans with `options`.
  int Match(std::vector<std::string> options) {
    options.insert(options.begin(), {"match", Path("3.RA3"), Path("1.RA3"), Path("2.RA3")});
    return Run(std::move(options));
  }
};

TEST_F(MatchCommandTest, WritesReportAndJson) {
  ASSERT_EQ(Match({"--json", Path("out.json")}), 0) << err.str();
  const nlohmann::json all = Result();
  EXPECT_EQ(all["reference"], "3.RA3");
  EXPECT_EQ(all["points"], 60);
  EXPECT_EQ(all["scans"][1]["file"], "2.RA3");
  EXPECT_EQ(all["scans"][1]["time_hours"], 24.0);
  EXPECT_LT(all["scans"][1]["rms"][0], all["scans"][0]["rms"][0]);
  EXPECT_EQ(all["deviations"][2][1].size(), 60U);
  EXPECT_EQ(all["report"], out.str());
  EXPECT_NE(out.str().find(":: " + folder.path().string() + "\n"), std::string::npos);
  ASSERT_EQ(Match({"--range", "6.55", "6.45", "--every", "2", "--json", Path("out.json")}), 0);
  EXPECT_EQ(Result()["scans"].size(), 1U);
  EXPECT_GT(Result()["radii"][0], 6.45);
}

// Columns 16 to 22 of line 2 hold the seconds of a scan, of an electrophoresis scan 14 to 23.
TEST_F(MatchCommandTest, TakesTheTimeFromTheColumnsOfItsFilter) {
  for (const char* name : {"1.RA3", "2.RA3", "3.RA3"}) {
    std::string text = ReadText(folder / name);
    text.replace(text.find("R 3 20.0"), 23, "E 3 20.0 9000 36007200 ");
    folder.Write(name, text);
  }
  for (const auto& [filter, hours] : std::initializer_list<std::pair<const char*, double>>{
           {"electrophoresis", 36007200 / 3600.0}, {"absorbance", 6007200 / 3600.0}}) {
    ASSERT_EQ(Match({"--filter", filter, "--json", Path("out.json")}), 0) << err.str();
    EXPECT_DOUBLE_EQ(Result()["scans"][1]["time_hours"], hours) << filter;
  }
}

TEST_F(MatchCommandTest, EndsWithTheStatusOfTheFailure) {
  struct Row {
    std::vector<std::string> options;
    int status;
    const char* part;  // of standard error
  };
  for (const auto& [options, status, part] : std::initializer_list<Row>{
           {{"--every", "0"}, 2, "--every"},
           {{"--range", "6.4", "inf"}, 2, "--range"},
           {{"--filter", "ultraviolet"}, 2, "--filter"},
           {{"--every", "3"}, 1, "less than two datasets with enough\npoints"},
           {{"--range", "-2", "-1"}, 1, "not matched: Subscript out of range"},
           {{Path("gone.RA3")}, 3, "gone.RA3: there is no such file\n"}}) {
    EXPECT_EQ(Match(options), status) << part;
    EXPECT_NE(err.str().find(part), std::string::npos) << err.str();
  }
  EXPECT_EQ(Run({"match", Path("1.RA3")}), 2);
  EXPECT_EQ(err.str(), "You must select at least two files!  Try Again!\n");
}

}  // namespace
