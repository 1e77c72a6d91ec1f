// Faults caught here: a field read by the rules of a modern number parser, a number beyond its type
// that is cut instead of refused, and a line end that costs or invents a row.
#include "scan/fields.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/arithmetic.h"

using namespace quorvane;

TEST(FieldVal, TakesTheLongestNumberInFront) {
  const std::vector<std::pair<const char*, double>> cases = {{"5.8000   0.", 5.8},
                                                             {"58000   0.", 580000},
                                                             {" 2 0\t0\n0\r0 ", 20000.0},
                                                             {"- 1 . 5 e 2", -150.0},
                                                             {".5", 0.5},
                                                             {"5.", 5.0},
                                                             {"5.E3", 5000.0},
                                                             {"+.5x", 0.5},
                                                             {"1e2", 100.0},
                                                             {"1d2", 100.0},
                                                             {"1D+2", 100.0},
                                                             {"1E-2", 0.01},
                                                             {"1E", 1.0},
                                                             {"1E+", 1.0},
                                                             {"1EE5", 1.0},
                                                             {"1.2.3", 1.2},
                                                             {"1,5", 1.0},
                                                             {"&H1F", 31.0},
                                                             {"&hffff", 65535.0},
                                                             {"&O17", 15.0},
                                                             {"&o18", 1.0},
                                                             {"& H A", 10.0},
                                                             {"-2.92700E-001", -0.2927}};
  for (const auto& [field, value] : cases) EXPECT_EQ(FieldVal(field), value) << field;
  for (const char* field : {"", "   ", "abc", ".", "+", "+-5", "E5", "0x10", "&HG", "&", "-&H1",
                            "inf", "nan", "1E-400"}) {
    EXPECT_EQ(FieldVal(field), 0.0) << field;
  }
  EXPECT_THROW(FieldVal("1E400"), ArithmeticFault);
  EXPECT_THROW(FieldVal("-1D99999"), ArithmeticFault);
}

TEST(ReadLine, EndsLinesAtLineFeeds) {
  const struct {
    std::string text;
    std::vector<std::string> lines;
  } cases[] = {
      {"", {}},
      {"\n", {""}},
      {"a\r\nb\nc", {"a", "b", "c"}},
      {"a\r\n\r\n", {"a", ""}},
      {"a\rb\r\r\nc\r", {"a\rb\r", "c"}},
      {std::string("a\0b\n", 4), {std::string("a\0b", 3)}},
      {std::string(300, 'x') + "\r\ny", {std::string(256, 'x'), "y"}},
      {std::string(256, 'x') + "\r\ny", {std::string(256, 'x'), "y"}},
  };
  for (const auto& c : cases) {
    std::istringstream in(c.text);
    std::vector<std::string> lines;
    for (std::string line; ReadLine(in, line);) lines.push_back(line);
    EXPECT_EQ(lines, c.lines) << c.text;
  }
}
