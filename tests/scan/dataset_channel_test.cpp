// Faults caught here: a name taken for a channel that it does not tell, one that tells it and is
// not read, neighbours of other cells or blanks that are taken in; a sketch that loses points.
#include "scan/dataset_channel.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "scan/point_sketch.h"
#include "scan_samples.h"

using namespace quorvane;

TEST(ChannelOf, ReadsTheNameAndThenTheHeader) {
  const struct {
    const char* name;
    const char* header;
    int cell;     // -1: not known
    char letter;  // ' ': not known
  } cases[] = {{"12_3B20280.dat", "R 7 20.0", 3, 'B'},
               {"a_b_3d20280.dat", "", 3, 'D'},
               {"BL_12_3A20280.dat", "", 3, 'A'},
               {"run_1A02345.EL1", "", 1, 'A'},
               {"1_0A00.dat", kHeader, 0, 'A'},
               {"a_31456.dat", kHeader, 3, ' '},
               {"lysozyme", kHeader, 3, ' '},
               {"x_2A.dat", kHeader, 3, ' '},
               {"run_5Atest.dat", "a note", -1, ' '},
               {"my_1A20280x", "R 12 20.0", -1, ' '},
               {"made.dat", "", -1, ' '},
               {"made.dat", "P 0 20.0", -1, ' '}};
  for (const auto& c : cases) {
    Dataset d = MakeDataset(c.name, {6.0});
    d.Comment2.SetBytes(c.header);
    const CellChannel channel = ChannelOf(d);
    EXPECT_EQ(channel.cell.value_or(-1), c.cell) << c.name;
    EXPECT_EQ(channel.letter.value_or(' '), c.letter) << c.name;
  }
}

TEST(OthersOfChannel, ReachTheCellOrAllCells) {
  std::vector<Dataset> all;
  for (const char* name : {"1_2A10280.dat", "1_2B10280.dat", "2_2A20280.dat", "2_3A20280.dat",
                           "BL_3_2A20280.dat", "renamed"}) {
    all.push_back(MakeDataset(name, {6.0}));
  }
  EXPECT_EQ(OthersOfChannel(all, 0, ChannelReach::kCellAndChannel), std::vector<int>{2});
  EXPECT_EQ(OthersOfChannel(all, 2, ChannelReach::kAllCells), (std::vector<int>{0, 3}));
  EXPECT_TRUE(OthersOfChannel(all, 5, ChannelReach::kAllCells).empty());
}

TEST(SketchOf, KeepsGoodAndDeletedPointsInSight) {
  std::vector<double> radii(kMaxPoints);
  for (std::size_t k = 0; k < radii.size(); ++k) radii[k] = 6.0 + 0.0001 * static_cast<double>(k);
  Dataset d = MakeDataset("s", radii, radii);
  for (const std::size_t spike : {5u, 1001u}) {
    d.Good[spike] = kFalse;
    d.C[spike] = 1e6;
  }
  const std::vector<SketchPoint> sketch = SketchOf(d, 100);
  EXPECT_LE(sketch.size(), 100u);
  const auto deleted = [](const SketchPoint& point) { return !point.good && point.y == 1.0; };
  EXPECT_EQ(std::count_if(sketch.begin(), sketch.end(), deleted), 2);
  EXPECT_EQ(sketch.front().x, 0.0);
  EXPECT_GT(sketch.back().x, 0.97);
  EXPECT_GT(sketch.back().y - sketch.front().y, 0.6);
  EXPECT_TRUE(SketchOf(EmptyDataset(), 100).empty());
}
