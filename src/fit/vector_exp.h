// exp() for many values side by side: straight-line code that compilers turn into vectors.
#pragma once

#include <bit>
#include <cstdint>

namespace quorvane {

// Arguments of VectorExp stay within this: 2^k below is then neither 0 nor subnormal nor infinite.
inline constexpr double kVectorExpRange = 690.0;

// exp(v) for |v| <= kVectorExpRange, to within 2 units in the last place, the same on every
// processor. Raises no fault.
//
//   k = v / ln 2, rounded to an integer;   r = v - k ln 2, |r| <= ln(2)/2;   exp(v) = 2^k exp(r).
//
// exp(r) is its Taylor series to r^13: the rest is below r^14 / 14! < 5e-18. ln 2 is taken in two
// parts, of which k times the first is exact, so that r keeps its digits.
// Source: Cody & Waite, Software Manual for the Elementary Functions, chapter 6.
inline double VectorExp(double v) {
  constexpr double kLog2E = 1.4426950408889634;
  constexpr double kLn2High = 6.93147180369123816490e-01;  // 33 bits: products with k are exact
  constexpr double kLn2Low = 1.90821492927058770002e-10;
  constexpr double kRounder = 0x1.8p52;  // adding it leaves the nearest integer in the low bits
  const double shifted = v * kLog2E + kRounder;
  const double k = shifted - kRounder;
  const double r = (v - k * kLn2High) - k * kLn2Low;
  // The series in r, 1/n! its coefficients. Even and odd powers apart: two short chains instead of
  // a long one.
  const double q = r * r;
  double even = 1.0 / 479001600.0;
  double odd = 1.0 / 6227020800.0;
  even = even * q + 1.0 / 3628800.0;
  odd = odd * q + 1.0 / 39916800.0;
  even = even * q + 1.0 / 40320.0;
  odd = odd * q + 1.0 / 362880.0;
  even = even * q + 1.0 / 720.0;
  odd = odd * q + 1.0 / 5040.0;
  even = even * q + 1.0 / 24.0;
  odd = odd * q + 1.0 / 120.0;
  even = even * q + 0.5;
  odd = odd * q + 1.0 / 6.0;
  even = even * q + 1.0;
  odd = odd * q + 1.0;
  const double p = even + r * odd;
  // Times 2^k: k, in the low bits of `shifted`, goes to the exponent's bits.
  constexpr unsigned kMantissaBits = 52;
  const auto exponent = std::bit_cast<std::uint64_t>(shifted) << kMantissaBits;
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(p) + exponent);
}

}  // namespace quorvane
