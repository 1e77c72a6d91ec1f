// Faults caught here: a header column off by one, leading zeros that stay or go where they should
// not, and the rules of one file kind applied to another.
#include "scan/dataset_names.h"

#include <string>

#include <gtest/gtest.h>

#include "base/arithmetic.h"

using namespace quorvane;

namespace {

//                          123456789012345678901234567890123456789
constexpr const char* kRa = "R 3 20.0 20000 0099999 1.0000E12 280 21";
constexpr const char* kHalf = "F 8 20.0 13500 0099999 1.0000E12 088 21";
constexpr const char* kFull = "123456789012345678901234567890123456789";
constexpr const char* kEl = "E                     1234567";

}  // namespace

TEST(DatasetName, FollowsTheKindOfFile) {
  const struct {
    FileKind kind;
    const char* file;
    const char* header;
    char letter;
    const char* name;
  } cases[] = {
      {FileKind::kIpRa, "00012.RA3", kRa, 'B', "12_3B20280.dat"},
      {FileKind::kIpRa, "00123.RA1", kRa, 'A', "123_3A20280.dat"},
      {FileKind::kIpRa, "run12.RA1", kRa, 'A', "run12_3A20280.dat"},
      {FileKind::kIpRa, "1E003.RA1", kRa, 'A', "1E003_3A20280.dat"},
      {FileKind::kIpRa, "0012.RA1", kRa, 'A', "0012_3A20280.dat"},
      {FileKind::kIpRa, " a b .x.RA1", kRa, 'D', "a b_3D20280.dat"},
      {FileKind::kIpRa, "00001.IP1", "P 1 20.0  3000 0099999 1.0000E12 675", 'A', "1_1A3675.dat"},
      {FileKind::kIpRa, "00001.IP1", "", 'A', "1_0A00.dat"},
      {FileKind::kIpRa, "00001.RA1", kHalf, 'C', "1_8C1388.dat"},
      {FileKind::kIpRa, "a.RA1", kFull, 'A', "a_3A1456.dat"},
      {FileKind::kFi, "a.FI1", kFull, 'A', "a_31456.dat"},
      {FileKind::kDat, "  my scan.x.DAT ", kRa, 'A', "my scan.x.DAT"},
      {FileKind::kFi, "A00123.FI1", kRa, 'C', "123_3A20280.dat"},
      {FileKind::kFi, "Arun12.FI1", kRa, 'C', "run12_3A20280.dat"},
      {FileKind::kFi, "00123.FI1", kRa, 'C', "00123_320280.dat"},
      {FileKind::kFi, "B00123.FI1", kHalf, 'A', "123_8B1488.dat"},  // 13.5 to the even 14
      {FileKind::kEl, " run .EL1", kEl, 'A', "run_1A02345.EL1"},
      {FileKind::kEl, "00012.EL1", kEl, 'A', "00012_1A02345.EL1"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(DatasetName(c.kind, c.file, c.header, c.letter, ElWavelength::kSingleLoad), c.name);
  }
}

TEST(BlankName, HasItsMarkOnce) {
  EXPECT_EQ(BlankName(FileKind::kIpRa, "00012.RA3", kRa), "BL_12_3A20280.dat");
  EXPECT_EQ(BlankName(FileKind::kFi, "B00012.FI3", kRa), "BL_12_3B20280.dat");
  EXPECT_EQ(BlankName(FileKind::kEl, "00012.EL1", kEl), "BL_00012_1A02345.dat");
  EXPECT_EQ(BlankName(FileKind::kDat, " buffer.dat", kRa), "BL_buffer.dat");
  EXPECT_EQ(BlankName(FileKind::kDat, "BL_buffer.dat", kRa), "BL_buffer.dat");
  EXPECT_EQ(BlankName(FileKind::kDat, "bl_buffer.dat", kRa), "BL_bl_buffer.dat");
}
