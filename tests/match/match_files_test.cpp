// Faults caught here: shifted columns, blank lines taken for points, a limit that is passed,
// another reference by another order, thinning before sorting, a failed load that changes the
// series.
#include <gtest/gtest.h>

#include "match/match_filters.h"
#include "match/match_series.h"
#include "support/recording_host.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

const std::string kHead = "comment\r\nR 1 20.0 20000 0003600 1.0000E12 280 21\r\n";
const std::string kRow = "   6.4010   1.23456E-001   4.0E-003\r\n";

std::string Rows(int count) {
  std::string rows;
  for (int k = 0; k < count; ++k) rows += kRow;
  return rows;
}

TEST(ReadMatchFile, TakesFixedColumns) {
  const TempFolder folder;
  const auto read = [&folder](const std::string& text, TimeField field = TimeField::kCentrifuge) {
    return ReadMatchFile(folder.Write("a.RA1", text), field);
  };
  EXPECT_EQ(read(kHead + kRow + "\r\n   \t\n   6.5").radius, (std::vector<double>{6.401, 6.5}));
  EXPECT_EQ(read(kHead + "12345678901234567890123456789\nno numbers"),
            (RawScan{3600, {12345678901, 0}, {234567890123456, 0}, 20000}));
  EXPECT_EQ(read("c\n               2.5    9\n").time, 2);
  EXPECT_EQ(read("c\n1234567890123 12345678 99\n", TimeField::kElectrophoresis).time, 12345678);
  EXPECT_EQ(read(kHead + Rows(2048) + "1E999\n").radius.size(), 2048U);
  EXPECT_EQ(read(""), RawScan{});
  EXPECT_EQ(read("c\nR 1 20.0 9E+99 0003600\n").speed, 0);  // refuses nothing
}

class LoadMatchFilesTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"10", "2", "B", "a"}) folder.Write(name, kHead + Rows(10));
    folder.Write("short", kHead + Rows(9));
    folder.Write("binary", std::string("\0\1\2\n\xFF\n\0", 7));
    folder.Write("huge", kHead + "6.4        1E999\n");
    folder.Write("late", "c\nR 1 20.0 20000 9.9E+99 1\n");
  }
  MatchLoadOutcome Load(const std::vector<const char*>& names, std::size_t every = 1) {
    std::vector<std::filesystem::path> paths;
    for (const char* name : names) paths.push_back(folder / name);
    return LoadMatchFiles(paths, {TimeField::kCentrifuge, every}, series, host);
  }

  TempFolder folder;
  RecordingHost host;
  MatchSeries series{"old", {"1", "2"}, std::vector<RawScan>(2)};
};

TEST_F(LoadMatchFilesTest, SortsThinsAndLeavesShortScansOut) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(Load({"a", "short", "2", "B", "10"}), MatchLoadOutcome::kLoaded);
  EXPECT_EQ(series.names, (Names{"10", "2", "B", "a"}));
  EXPECT_EQ(host.messages.at(0).text,
            "Fewer than 10 points were found for the dataset short.  This dataset will not be "
            "loaded");
  EXPECT_EQ(Load({"B", "a", "10", "2"}, 2), MatchLoadOutcome::kLoaded);
  EXPECT_EQ(series.names, (Names{"10", "B"}));
}

TEST(SpeedRemark, ComesWhenSpeedsDiffer) {
  const auto remark = [](std::initializer_list<std::int32_t> speeds) {
    MatchSeries series;
    for (const std::int32_t speed : speeds) series.scans.push_back({5400, {}, {}, speed});
    return SpeedRemark(series);
  };
  EXPECT_EQ(remark({20000, 20000, 0}), "");
  EXPECT_NE(remark({20000, 9000, 20000}).find("9000, 20000 rpm"), std::string::npos);
  EXPECT_EQ(FactsOf({5400, {}, {}, 9000}), "9000 rpm, 1.50 h");
  EXPECT_EQ(FactsOf({5400, {}, {}, 0}), "1.50 h");
}

TEST_F(LoadMatchFilesTest, FailedLoadChangesNothing) {
  struct Row {
    std::vector<const char*> names;
    MatchLoadOutcome outcome;
    std::string message;  // end of the last one
  };
  for (const auto& [names, outcome, message] : std::initializer_list<Row>{
           {{"2"}, MatchLoadOutcome::kTooFewFiles, "at least two files!  Try Again!"},
           {{"2", "binary"},
            MatchLoadOutcome::kTooFewScans,
            "There were less than two datasets with enough\r\n"
            "points for matching.  Please try again!"},
           {{"2", "gone"}, MatchLoadOutcome::kUnreadable, "there is no such file"},
           {{"2", "huge"}, MatchLoadOutcome::kUnreadable, "line 3: a number is out of range"},
           {{"2", "late"}, MatchLoadOutcome::kUnreadable, "line 2: a number is out of range"}}) {
    EXPECT_EQ(Load(names), outcome) << message;
    EXPECT_TRUE(host.messages.back().text.ends_with(message)) << host.messages.back().text;
    EXPECT_EQ(series.folder, "old");
  }
}

}  // namespace

TEST(MatchFilters, NameTheCell) {
  const std::vector<std::string> any = {"XL-A Files (*.RA*)", "XL-I Files (*.IP*)",
                                        "XL-F Files (*.FI*)", "All Files (*.*)"};
  EXPECT_EQ(MatchFilters("*", false), any);
  EXPECT_EQ(MatchFilters("", false), any);
  const std::vector<std::string> second = MatchFilters("2", true);
  ASSERT_EQ(second.size(), 5U);
  EXPECT_EQ(second[0], "XL-A Files (*.RA2)");
  EXPECT_EQ(second[3], "Electrophoresis Files (*.EL2)");
}
