// Faults caught here: a locale or a hexadecimal prefix that slips into an entry box, a number at
// the ends of the range taken for its opposite, and characters lost between UTF-8 and one byte
// each.
#include "base/text.h"

#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

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

TEST(WithUnixLines, TurnsEveryLineEndIntoOne) {
  EXPECT_EQ(WithUnixLines("a\r\nb\nc\rd\r\r\ne\r"), "a\nb\nc\nd\n\ne\n");
  EXPECT_EQ(WithUnixLines(""), "");
}

TEST(Utf8ToCp1252, GoesBackAndForth) {
  std::string all;
  for (int code = 1; code < 256; ++code) {
    if (code != 0x81 && code != 0x8D && code != 0x8F && code != 0x90 && code != 0x9D) {
      all += static_cast<char>(code);
    }
  }
  EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(all)), all);
  EXPECT_EQ(Cp1252ToUtf8("\xB1\x80\x9F"), "\u00B1\u20AC\u0178");
  EXPECT_EQ(Cp1252ToUtf8("\x81"), "\uFFFD");
  EXPECT_EQ(Utf8ToCp1252(kPlusMinus), "\xB1");
}

// A slash hidden in three or four bytes got past the test of file names and came out as "/".
TEST(Utf8ToCp1252, NeverMakesAsciiOfLongForms) {
  EXPECT_EQ(Utf8ToCp1252("\xE0\x80\xAF").find('/'), std::string::npos);
  EXPECT_EQ(Utf8ToCp1252("\xF0\x80\x80\xAF").find('/'), std::string::npos);
}
