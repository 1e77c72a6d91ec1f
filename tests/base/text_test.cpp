// Faults caught here: a locale or a hexadecimal prefix that slips into an entry box, and malformed
// UTF-8 that turns into a separator of folders.
#include "base/text.h"

#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace quorvane;

TEST(ParseNumeric, TakesPlainNumbersOnly) {
  const std::vector<std::pair<const char*, double>> taken = {
      {"7500", 7500.0}, {" -0.73  ", -0.73}, {"+.5", 0.5},    {"5.", 5.0},    {"1.E-3", 1e-3},
      {"2e+2", 200.0},  {"007", 7.0},        {"1e-999", 0.0}, {"0e999", 0.0}, {"4.9E-324", 5e-324}};
  for (const auto& [text, value] : taken) EXPECT_EQ(ParseNumeric(text), value) << text;
  for (const char* text : {"",
                           "   ",
                           ".",
                           "+",
                           "--5",
                           "+-5",
                           "1 2",
                           "1,5",
                           "1.5.",
                           "1e",
                           "1e+",
                           "e5",
                           "1D5",
                           "&H10",
                           "0x10",
                           "inf",
                           "nan",
                           "1e999",
                           "-1e99999999999999999999",
                           "\t5",
                           "5\n"}) {
    EXPECT_EQ(ParseNumeric(text), std::nullopt) << text;
  }
}

// A slash hidden in three or four bytes got past the test of file names and came out as "/".
TEST(Utf8ToCp1252, NeverMakesAsciiOfLongForms) {
  EXPECT_EQ(Utf8ToCp1252("\xE0\x80\xAF").find('/'), std::string::npos);
  EXPECT_EQ(Utf8ToCp1252("\xF0\x80\x80\xAF").find('/'), std::string::npos);
}
