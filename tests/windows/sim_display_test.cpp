// Faults caught here: an entry that is read in a form other than the one shown, digits lost on the
// way there and back.
#include "windows/sim_display.h"

#include <gtest/gtest.h>

TEST(SimConstantDisplay, ShowsEntriesInAnotherFormAndBack) {
  const struct {
    const char* ln;
    const char* log10;
    const char* plain;
  } cases[] = {{"12.0", "5.2115", "1.628E+5"},
               {" -3.21987654 ", "-1.3984", "3.996E-2"},
               {"0", "0.0000", "1.0000"},
               {"800", "3.474E+2", "800"},      // K overflows
               {"-800", "-3.474E+2", "-800"}};  // K vanishes
  for (const auto& c : cases) {
    SimInputs inputs = DefaultInputs();
    ASSERT_FALSE(StoreEntry(inputs, SimBox::kLnK2, c.ln));
    SimConstantDisplay display;
    for (const auto& [KFormat, text] :
         {std::pair{2, c.plain}, {1, c.log10}, {2, c.plain}, {0, c.ln}}) {
      display.Change(inputs, KFormat);
      EXPECT_EQ(inputs.Text(SimBox::kLnK2), text);
      EXPECT_EQ(static_cast<int>(inputs.kDisplay), KFormat);
    }
    EXPECT_EQ(inputs.Text(SimBox::kLnK1), "12.0");
  }
}

TEST(SimConstantDisplay, StartsAnewFromAnEntryMadeInBetween) {
  SimInputs inputs = DefaultInputs();
  SimConstantDisplay display;
  display.Change(inputs, 1);
  ASSERT_FALSE(StoreEntry(inputs, SimBox::kLnK1, "2"));
  display.Change(inputs, 2);
  EXPECT_EQ(inputs.Text(SimBox::kLnK1), "1.000E+2");
  EXPECT_NEAR(inputs.K[0], 100.0, 1e-9);
  display.Change(inputs, 1);
  EXPECT_EQ(inputs.Text(SimBox::kLnK1), "2");
}
