// Faults caught here: a table read past its end or half, a message that sends the user to the wrong
// place, an interpolation from the wrong pair, and a reference radius that follows deleted points.
#include "scan/cell_geometry.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/arithmetic.h"
#include "base/files.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

std::vector<CellGeometry> Read(const std::string& text) {
  std::istringstream in(text);
  return ReadCellGeometries(in, "channels.txt");
}

// What a refusal says, or "none".
std::string RefusalOf(const std::string& text) {
  try {
    Read(text);
  } catch (const FileFault& fault) {
    return fault.what();
  }
  return "none";
}

// The fields of two geometries, line ends behind some.
const std::vector<std::string> kFields = {
    "2\n",   "1",   "2",     "\"6 channel, charcoal\"\n", "6.0", "1.0\n", "7.0", "0.5\n", "-7", "1",
    "std\n", "6.5", "2.5e-1"};

std::string JoinedBy(const std::string& separator, std::size_t count) {
  std::string text;
  for (std::size_t k = 0; k < count; ++k) text += (k > 0 ? separator : "") + kFields[k];
  return text;
}

}  // namespace

TEST(ReadCellGeometries, TakesCommasBlanksAndLineEnds) {
  const std::vector<CellGeometry> expected = {
      {1, "6 channel, charcoal", {6.0F, 7.0F}, {1.0F, 0.5F}}, {-7, "std", {6.5F}, {0.25F}}};
  for (const char* separator : {" ", ",", " ,\t", "\r\n", ",\r\n"}) {
    EXPECT_EQ(Read(JoinedBy(separator, kFields.size())), expected) << separator;
  }
  EXPECT_TRUE(Read("0").empty());
  EXPECT_TRUE(Read("-3 and whatever follows").empty());
}

TEST(ReadCellGeometries, RefusesAFileCutAtAnyField) {
  for (std::size_t count = 0; count < kFields.size(); ++count) {
    EXPECT_NE(RefusalOf(JoinedBy(" ", count)).find("the file ends here"), std::string::npos)
        << count;
  }
}

TEST(ReadCellGeometries, SaysWhereItFailed) {
  const struct {
    std::string text;
    const char* where;
  } cases[] = {
      {"", "channels.txt, line 1, number of geometries: "},
      {"two", "channels.txt, line 1, number of geometries: "},
      {"40000", "channels.txt, line 1, number of geometries: "},
      {"1\n1,,name", "channels.txt, line 2, number of pairs: "},
      {"1\n1 1 \"name\n\" 6 1", "channels.txt, line 2, name: "},
      {"1\n1 1 \"" + std::string(257, 'x') + "\"", "channels.txt, line 2, name: "},
      {"1\n1 1 " + std::string(300, 'x'), "channels.txt, line 2, name: "},
      {"1\n1 2 name\n6.0 1\n6.5 1e39 ", "channels.txt, line 4, factor"},
      {"1\n1 1 name\n\n&H6 1\n", "channels.txt, line 4, radius: "},
      // The line end behind a bad field was passed over before the line was told.
      {"1\n1 1 name\n6.0 abc\n\n\n7", "channels.txt, line 3, factor: "},
  };
  for (const auto& c : cases) EXPECT_EQ(RefusalOf(c.text).find(c.where), 0u) << RefusalOf(c.text);
}

TEST(ReadCellGeometries, HoldsElevenTablesOfFiveHundredAndOnePairs) {
  std::string entries;
  std::string pairs;
  for (int k = 0; k < 12; ++k) entries += "1 0 name\n";
  for (int k = 0; k < 502; ++k) pairs += std::to_string(k) + " 1\n";
  EXPECT_EQ(Read("11\n" + entries).size(), 11u);
  EXPECT_THROW(Read("12\n" + entries), SubscriptFault);
  EXPECT_EQ(Read("1\n1 501 big\n" + pairs)[0].r.size(), 501u);
  EXPECT_THROW(Read("1\n1 502 big\n" + pairs), SubscriptFault);
}

TEST(getFofR, InterpolatesAndFlagsWhatLiesOutside) {
  const std::vector<CellGeometry> tables = {{1, "three", {6.0F, 6.5F, 7.0F}, {1.0F, 2.0F, 4.0F}},
                                            {2, "one", {6.5F}, {3.0F}}};
  const struct {
    double r;
    int geometry;
    double factor;
    int below, above;
  } cases[] = {{5.9, 0, 1.0, 1, 0}, {6.0, 0, 1.0, 0, 0},  {6.125, 0, 1.25, 0, 0},
               {6.5, 0, 2.0, 0, 0}, {6.75, 0, 3.0, 0, 0}, {7.0, 0, 4.0, 0, 0},
               {7.1, 0, 4.0, 0, 1}, {6.4, 1, 3.0, 1, 0},  {6.5, 1, 3.0, 0, 0},
               {6.6, 1, 3.0, 0, 1}};
  for (const auto& c : cases) {
    std::int32_t below = 9;
    std::int32_t above = 9;
    EXPECT_EQ(getFofR(c.r, c.geometry, tables, below, above), c.factor) << c.r;
    EXPECT_EQ(below, c.below) << c.r;
    EXPECT_EQ(above, c.above) << c.r;
  }
  // Kept on purpose: only the comparison is in single precision.
  std::int32_t below = 0;
  std::int32_t above = 0;
  EXPECT_NEAR(getFofR(6.0 - 1e-9, 0, tables, below, above), 1.0 - 2e-9, 1e-12);
  EXPECT_EQ(below + above, 0);
}

TEST(CalcRefRadius, LiesTwoThirdsDownTheGoodPoints) {
  Dataset d = MakeDataset("a", {6.0, 6.3, 6.6, 6.9});
  EXPECT_EQ(CalcRefRadius(d), 6.6F);
  d.Err[1] = -1.0;  // an inner point moves nothing
  EXPECT_EQ(CalcRefRadius(d), 6.6F);
  d.Err[0] = 0.0;
  EXPECT_EQ(CalcRefRadius(d), 6.8F);  // from 6.6 to 6.9
  d.Err[3] = -1.0;
  EXPECT_EQ(CalcRefRadius(d), 6.6F);  // one point left
  d.Err[2] = -1.0;
  EXPECT_EQ(CalcRefRadius(d), 0.0F);
}
