// Numbers as texts in the pattern notation of reports, files and entry boxes.
#pragma once

#include <string>
#include <string_view>

namespace quorvane {

// `value` written by `pattern`. In a pattern
//   0        a digit always            #        a digit if there is one
//   .        the decimal point, kept even if no digit follows
//   ,        between digits: groups of three in the integer part
//   E+00     exponent with its sign and at least as many digits as zeros stand behind the sign
//            ("E+##": at least one); "E-00" shows the sign of a negative exponent only
//   ;        ends the pattern and begins the one for negative values, which gets the magnitude
// and every other character stands for itself, "E" and "e" too unless a sign and then 0 or #
// follow. Without a second pattern a negative value gets "-" before everything else.
//
// The value is taken at 15 significant decimal digits and from there rounded half away from zero.
// A negative value that rounds to zero is written as zero. "###" of 0 shows no digit.
// Throws ArithmeticFault (overflow or invalid operation) for an infinity or a NaN.
std::string FormatNumber(double value, std::string_view pattern);

// A parameter as it is shown: "0.0000" for 0.05 <= |x| < 100 and for 0, otherwise "0.000E+##".
std::string FormatParam(double value);

}  // namespace quorvane
