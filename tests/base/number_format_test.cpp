// Faults caught here: rounding of the binary value instead of its 15 decimal digits, half to even,
// a carry that loses a digit, a sign on a zero, an exponent of the wrong width, and a literal of a
// pattern taken for a place.
#include "base/number_format.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace quorvane;

namespace {

// Patterns, each with values and what they look like by it.
using Cases = std::vector<std::pair<const char*, std::vector<std::pair<double, const char*>>>>;

void ExpectWritten(const Cases& cases) {
  for (const auto& [pattern, values] : cases) {
    for (const auto& [value, text] : values) {
      EXPECT_EQ(FormatNumber(value, pattern), text) << value << " by \"" << pattern << '"';
    }
  }
}

}  // namespace

TEST(FormatNumber, WritesEveryPatternInUse) {
  ExpectWritten({
      {"0.0000", {{0.0, "0.0000"}, {-12.34565, "-12.3457"}, {-0.00004, "0.0000"}}},
      {"0.0000 ", {{5.7, "5.7000 "}}},
      {"00.0", {{20.0, "20.0"}, {4.96, "05.0"}}},
      {"00.00", {{95.46, "95.46"}}},
      {"000.000", {{3.14159, "003.142"}, {0.0, "000.000"}}},
      {"00000", {{500.0, "00500"}, {120000.0, "120000"}}},
      {" 000 :", {{12.0, " 012 :"}}},
      {"#0", {{0.0, "0"}, {0.5, "1"}}},
      {"#0.00000", {{0.123456789, "0.12346"}}},
      {"#0.000 ", {{-14.0005, "-14.001 "}}},
      {" #0.00", {{0.5, " 0.50"}}},
      {"#0.000 cm-2", {{3.5, "3.500 cm-2"}}},
      // Places that show a digit only where there is one.
      {"##", {{0.0, ""}, {3.0, "3"}, {101.0, "101"}}},
      {"##0", {{0.0, "0"}, {12.0, "12"}}},
      {"###", {{2.5, "3"}, {-0.4, ""}}},
      {"### ", {{7500.4, "7500 "}, {-1e21, "-1000000000000000000000 "}}},
      {"##### RPM = ", {{20000.0, "20000 RPM = "}}},
      {" ##0 Da", {{0.0, " 0 Da"}, {1234.5, " 1235 Da"}}},
      {"(###) ", {{9.0, "(9) "}}},
      {" ###: ", {{12.0, " 12: "}}},
      {"0.###0 ", {{0.73, "0.7300 "}}},
      {"0.####0", {{0.99823, "0.99823"}, {1.0, "1.00000"}}},
      {"0.######", {{0.95, "0.95"}, {1.0, "1."}, {0.1 + 0.2, "0.3"}}},
      {"##.0##", {{20.0, "20.0"}, {4.1255, "4.126"}}},
      {"##.0#", {{95.46, "95.46"}, {0.25, ".25"}, {0.0, ".0"}}},
      {"###.#0 secs", {{0.5, ".50 secs"}, {12.3, "12.30 secs"}}},
      {"#.#### to ", {{5.8, "5.8 to "}}},
      {"##.####", {{-0.12345, "-.1235"}, {0.0, "."}}},
      {"##0.####", {{-0.00001, "0."}}},
      {"#,##0.00", {{1234567.891, "1,234,567.89"}, {-999.995, "-1,000.00"}, {12.0, "12.00"}}},
  });
}

TEST(FormatNumber, WritesExponentsAndSections) {
  const double large = 1.7976931348623157e308;
  ExpectWritten({
      {"0.000E+##", {{0.0, "0.000E+0"}, {0.04, "4.000E-2"}, {-9.9996e15, "-1.000E+16"}}},
      {" 0.00E+00   ", {{0.0, " 0.00E+00   "}, {1e300, " 1.00E+300   "}}},
      {"0.000E+00 ", {{5e-324, "4.941E-324 "}, {large, "1.798E+308 "}, {2.5e-7, "2.500E-07 "}}},
      {"0.0E-00", {{1e300, "1.0E300"}, {0.01, "1.0E-02"}}},
      // Two sections: the second one brings its own sign.
      {" 0.00E+00;-0.00E+00", {{0.0123, " 1.23E-02"}, {-0.0123, "-1.23E-02"}}},
      {"  0.00000E+000  ; -0.00000E+000  ", {{0.25, "  2.50000E-001  "}}},
      {"  0.00000E+000  ; -0.00000E+000  ", {{-0.2927, " -2.92700E-001  "}}},
      {"  0.00000E+000; -0.00000E+000", {{-1.0, " -1.00000E+000"}, {-0.0, "  0.00000E+000"}}},
      {"  0.000; -0.000", {{-0.9995, " -1.000"}, {0.5, "  0.500"}}},
      {"   0.000   ;  -0.000   ", {{-0.5, "  -0.500   "}, {-0.0004, "   0.000   "}}},
      // Half away from zero, on 15 digits: the binary values say otherwise.
      {"0.00", {{2.675, "2.68"}, {1.005, "1.01"}, {0.125, "0.13"}, {-0.125, "-0.13"}}},
      {"0.000", {{9.9995, "10.000"}, {0.0004999999999, "0.000"}}},
  });
}

TEST(FormatParam, ChangesItsFormAtTheBounds) {
  const std::vector<std::pair<double, const char*>> cases = {
      {0.0, "0.0000"},      {0.05, "0.0500"},    {-0.05, "-0.0500"},     {99.99996, "100.0000"},
      {0.0499, "4.990E-2"}, {100.0, "1.000E+2"}, {-7500.0, "-7.500E+3"}, {1e-300, "1.000E-300"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(FormatParam(value), text) << value;
}
