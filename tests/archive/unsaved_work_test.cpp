// Faults caught here: work of a running program that is taken for abandoned, a place with work that
// is given to another program, an order that offers old work first, places that pile up.
#include "archive/unsaved_work.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace fs = std::filesystem;

TEST(UnsavedWork, BelongsToItsProgramUntilThatEnds) {
  const TempFolder folder;
  const fs::path shared = folder / "data" / "unsaved";
  EXPECT_TRUE(UnsavedWork::Abandoned(shared).empty());
  {
    const UnsavedWork first = UnsavedWork::Claim(shared);
    const UnsavedWork second = UnsavedWork::Claim(shared);
    const UnsavedWork idle = UnsavedWork::Claim(shared);
    WriteWholeFile(first.File(), "first");
    WriteWholeFile(second.File(), "second");
    fs::last_write_time(second.File(), fs::last_write_time(first.File()) + std::chrono::hours(1));
    EXPECT_TRUE(UnsavedWork::Abandoned(shared).empty());
  }
  EXPECT_FALSE(fs::exists(shared / "3")) << "nothing was kept there";
  WriteWholeFile(shared / "1" / ".quorvane-1-1~", "half");
  std::vector<UnsavedWork> found = UnsavedWork::Abandoned(shared);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(ReadText(found[0].File()), "second");
  EXPECT_EQ(found[0].KeptAt() - found[1].KeptAt(), std::chrono::hours(1));
  EXPECT_FALSE(fs::exists(shared / "1" / ".quorvane-1-1~"));
  const UnsavedWork next = UnsavedWork::Claim(shared);
  EXPECT_EQ(next.File(), shared / "3" / "experiment.exz");
  EXPECT_EQ(found[1].SetAside(), shared / "damaged-1.exz");
  found[0].Discard();
  found.clear();
  EXPECT_FALSE(fs::exists(shared / "1"));
  EXPECT_FALSE(fs::exists(shared / "2"));
  EXPECT_EQ(ReadText(shared / "damaged-1.exz"), "first");
  folder.Write("file", "");
  EXPECT_THROW(UnsavedWork::Claim(folder / "file"), FileFault);
}
