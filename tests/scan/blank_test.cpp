// Faults caught here: an interpolation from the wrong pair of the blank, a count on the wrong side,
// a sample changed that lies outside, and a mark that a long header line swallows.
#include "scan/blank.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/arithmetic.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

const std::vector<double> kBlankR = {6.0, 6.25, 6.5, 7.0};
const std::vector<double> kBlankC = {0.5, 1.0, 4.0, 2.0};

}  // namespace

TEST(SubtractBlank, TakesOffTheInterpolatedSignal) {
  const struct {
    const char* what;
    std::vector<double> r, lost;
    int below, above;
  } cases[] = {
      {"at the blank's points", {6.0, 6.25, 6.5, 7.0}, {0.5, 1.0, 4.0, 2.0}, 0, 0},
      {"between them", {6.125, 6.375, 6.75}, {0.75, 2.5, 3.0}, 0, 0},
      {"beyond both ends", {5.5, 5.9, 6.5, 7.1}, {0.5, 0.5, 4.0, 2.0}, 2, 1},
      {"many in one gap", {6.75, 6.8125, 6.875}, {3.0, 2.75, 2.5}, 0, 0},
      {"wholly below", {5.5, 5.75, 6.0}, {0, 0, 0}, 3, 0},
      {"wholly above", {7.0, 7.25}, {0, 0}, 0, 2},
      {"touching the start", {6.0, 6.0}, {0.5, 0.5}, 0, 0},
  };
  const Dataset blank = MakeDataset("BL_b", kBlankR, kBlankC);
  for (const auto& c : cases) {
    Dataset sample = MakeDataset("s", c.r, std::vector<double>(c.r.size(), 10.0));
    sample.Err[1] = -0.01;  // a deleted point is treated like the others
    sample.Good[1] = kFalse;
    const Dataset before = sample;
    std::int16_t above = 9;
    std::int16_t below = 9;
    SubtractBlank(sample, blank, above, below);
    EXPECT_EQ(below, c.below) << c.what;
    EXPECT_EQ(above, c.above) << c.what;
    for (std::size_t k = 0; k < c.r.size(); ++k) {
      EXPECT_DOUBLE_EQ(sample.C[k], 10.0 - c.lost[k]) << c.what << ", point " << k;
    }
    EXPECT_TRUE(sample.Err == before.Err && sample.Good == before.Good && sample.R == before.R);
  }
}

// A blank whose first radius stands twice divided 0 by 0 and put a NaN into the sample, unsaid.
TEST(SubtractBlank, NeverLeavesASignalThatIsNoNumber) {
  const Dataset blank = MakeDataset("BL_b", {6.0, 6.0, 6.5}, {0.5, 0.75, 1.0});
  Dataset sample = MakeDataset("s", {6.0, 6.25}, {1.0, 1.0});
  std::int16_t above = 0;
  std::int16_t below = 0;
  try {
    SubtractBlank(sample, blank, above, below);
  } catch (const ArithmeticFault&) {
    // a refusal would do as well
  }
  EXPECT_TRUE(std::isfinite(sample.C[0]));
}

TEST(BlankDataset, MarksAndLogsTheSample) {
  DatasetStore store;
  store.Datasets = {MakeDataset("BL_b", kBlankR, kBlankC),
                    MakeDataset("s", {5.5, 6.5, 7.25, 7.5}, {9, 9, 9, 9}),
                    MakeDataset("far", {7.5, 7.75}, {9, 9})};
  store.Datasets[1].Comment2.SetBytes(std::string(256, 'h'));
  const Dataset blank = store.Datasets[0];
  RecordingHost host;
  BlankDataset(store, 1, 0, host);
  BlankDataset(store, 2, 0, host);
  const std::string counts = "Number of points outside the range of the blank were :: \r\nBelow : ";
  const std::vector<std::string> lines = {
      "Dataset #2:: s was blanked using\r\nDataset #1:: BL_b", counts + "1\r\nAbove : 2",
      "Dataset #3:: far was blanked using\r\nDataset #1:: BL_b", counts + "0\r\nAbove : 2"};
  EXPECT_EQ(host.lines, lines);
  EXPECT_EQ(Comment2Of(store.Datasets[1]), std::string(253, 'h') + " BL");
  EXPECT_EQ(Comment2Of(store.Datasets[2]), std::string(kHeader) + " BL");
  EXPECT_TRUE(IsBlanked(store.Datasets[1]) && IsBlanked(store.Datasets[2]));
  EXPECT_EQ(store.Datasets[2].C[0], 9.0);
  EXPECT_FALSE(IsBlanked(store.Datasets[0]));
  EXPECT_TRUE(store.Datasets[0].C == blank.C && store.Datasets[0].Comment2 == blank.Comment2);
}
