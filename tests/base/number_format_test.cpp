// Faults caught here: rounding of the binary value instead of its 15 decimal digits, half to even,
// a carry that loses a digit, a sign on a zero, an exponent of the wrong width, and a literal of a
// pattern taken for a place.
#include "base/number_format.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/arithmetic.h"

namespace {

// `number` without its last `places` digits, half up.
std::uint64_t Cut(std::uint64_t number, int places) {
  std::uint64_t unit = 1;
  for (int k = 0; k < places && k < 19; ++k) unit *= 10;
  return places > 18 ? 0 : number / unit + (number % unit >= unit - unit / 2 ? 1 : 0);
}

std::string WithPoint(std::uint64_t number, std::size_t places) {
  std::string text = std::to_string(number);
  if (text.size() <= places) text.insert(0, places + 1 - text.size(), '0');
  return text.insert(text.size() - places, ".");
}

// The texts of "0.0000" and "0.000E+00" for 0 < value < 1e10, in whole numbers from the 15 digits
// that printf gives.
std::pair<std::string, std::string> WholeNumberRoute(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.14e", value);
  int exponent = std::stoi(std::string(text).substr(17));
  const auto digits = std::stoull(std::string(1, text[0]) + std::string(text + 2, 14));
  const std::string fixed = WithPoint(Cut(digits, 10 - exponent), 4);
  std::uint64_t mantissa = Cut(digits, 11);
  if (mantissa == 10000) {
    mantissa = 1000;
    ++exponent;
  }
  std::snprintf(text, sizeof text, "E%+03d", exponent);
  return {fixed, WithPoint(mantissa, 3) + text};
}

}  // namespace

TEST(FormatNumber, WritesEveryPatternInUse) {
  const double large = 1.7976931348623157e308;
  const std::vector<std::pair<const char*, std::vector<std::pair<double, const char*>>>> cases = {
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
      // Exponents.
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
  };
  for (const auto& [pattern, values] : cases) {
    for (const auto& [value, text] : values) {
      EXPECT_EQ(FormatNumber(value, pattern), text) << value << " by \"" << pattern << '"';
    }
  }
}

TEST(FormatNumber, AgreesWithWholeNumberArithmetic) {
  std::mt19937_64 random(20261121);
  for (int round = 0; round < 20000; ++round) {
    // Decimal numbers of few digits, so that exact halves are frequent, and full doubles.
    double value = static_cast<double>(1 + random() % 2000001) * 0.5;
    for (int k = static_cast<int>(random() % 12); k > 0; --k) value /= 10.0;
    if (round % 2 == 0) value *= static_cast<double>(1 + (random() >> 11)) * 0x1p-53;
    const auto [fixed, scientific] = WholeNumberRoute(value);
    ASSERT_EQ(FormatNumber(value, "0.0000"), fixed) << value;
    ASSERT_EQ(FormatNumber(-value, "0.000E+00"), "-" + scientific) << value;
  }
}

TEST(FormatNumber, RefusesWhatIsNoNumber) {
  for (const double value : {HUGE_VAL, -HUGE_VAL, std::nan("")}) {
    EXPECT_THROW(FormatNumber(value, "0.0000"), ArithmeticFault) << value;
    EXPECT_THROW(FormatNumber(value, " 0.00E+00;-0.00E+00"), ArithmeticFault) << value;
  }
}

TEST(FormatParam, ChangesItsFormAtTheBounds) {
  const std::vector<std::pair<double, const char*>> cases = {
      {0.0, "0.0000"},      {0.05, "0.0500"},    {-0.05, "-0.0500"},     {99.99996, "100.0000"},
      {0.0499, "4.990E-2"}, {100.0, "1.000E+2"}, {-7500.0, "-7.500E+3"}, {1e-300, "1.000E-300"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(FormatParam(value), text) << value;
}
