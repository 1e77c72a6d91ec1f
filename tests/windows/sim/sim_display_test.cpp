// Faults caught here: an entry that is read in a form other than the one shown, digits lost on the
// way there and back.
#include "windows/sim/sim_display.h"

#include <gtest/gtest.h>

using namespace quorvane;

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
    SimConstantDisplay constants;
    for (const auto& [display, text] : {std::pair{KDisplay::kPlain, c.plain},
                                        {KDisplay::kLog10, c.log10},
                                        {KDisplay::kPlain, c.plain},
                                        {KDisplay::kLn, c.ln}}) {
      constants.Change(inputs, display);
      EXPECT_EQ(inputs.Text(SimBox::kLnK2), text);
      EXPECT_EQ(inputs.kDisplay, display);
    }
    EXPECT_EQ(inputs.Text(SimBox::kLnK1), "12.0");
  }
}

TEST(SimConstantDisplay, StartsAnewFromAnEntryMadeInBetween) {
  SimInputs inputs = DefaultInputs();
  SimConstantDisplay display;
  display.Change(inputs, KDisplay::kLog10);
  ASSERT_FALSE(StoreEntry(inputs, SimBox::kLnK1, "2"));
  display.Change(inputs, KDisplay::kPlain);
  EXPECT_EQ(inputs.Text(SimBox::kLnK1), "1.000E+2");
  EXPECT_NEAR(inputs.K[0], 100.0, 1e-9);
  display.Change(inputs, KDisplay::kLog10);
  EXPECT_EQ(inputs.Text(SimBox::kLnK1), "2");
}
