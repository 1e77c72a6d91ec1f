// Faults caught here: a faulting operation that the optimiser moves past the test of the flags, and
// a wrong side at the bound of single precision.
#include "base/arithmetic.h"

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace quorvane;

namespace {

// A number that the optimiser does not know.
double Unknown(double value) {
  volatile double hidden = value;
  return hidden;
}

constexpr double kMax = std::numeric_limits<double>::max();

// The kind that `work` throws, or "".
template <class Work>
std::string KindOf(Work&& work) {
  try {
    CheckArithmetic(work);
  } catch (const ArithmeticFault& fault) {
    EXPECT_STREQ(fault.what(), DescribeFault(fault.kind()));
    return fault.what();
  }
  return "";
}

}  // namespace

TEST(CheckArithmetic, SeesTheFaultOfTheLastOperation) {
  const double zero = Unknown(0.0);
  const double one = Unknown(1.0);
  const double big = Unknown(kMax);
  const double tiny = Unknown(std::numeric_limits<double>::min());
  double result = 0.0;
  EXPECT_EQ(KindOf([&] { result = one / zero; }), "Division by zero");
  EXPECT_TRUE(std::isinf(result));
  EXPECT_EQ(KindOf([&] { result = big * big; }), "Overflow");
  EXPECT_TRUE(std::isinf(result));
  EXPECT_EQ(KindOf([&] { result = zero / zero; }), "Invalid operation");
  EXPECT_TRUE(std::isnan(result));
  EXPECT_EQ(KindOf([&] { result = std::sqrt(-one); }), "Invalid operation");
  EXPECT_TRUE(std::isnan(result));
  EXPECT_EQ(KindOf([&] { result = std::exp(big); }), "Overflow");
  EXPECT_EQ(KindOf([&] { result = std::expm1(big); }), "Overflow");
  EXPECT_EQ(KindOf([&] { result = std::pow(big, big); }), "Overflow");
  EXPECT_EQ(KindOf([&] { result = std::pow(-one, 0.5); }), "Invalid operation");
  EXPECT_EQ(KindOf([&] { result = std::pow(zero, -one); }), "Division by zero");
  EXPECT_EQ(KindOf([&] { result = std::log(zero); }), "Division by zero");
  EXPECT_EQ(KindOf([&] { result = std::log(-one); }), "Invalid operation");
  EXPECT_EQ(KindOf([&] { result = std::log10(-one); }), "Invalid operation");
  EXPECT_EQ(KindOf([&] { result = tiny * tiny; }), "");  // underflow is none
  EXPECT_EQ(result, 0.0);
  // An infinity makes later operations invalid: the cause is named, not its consequence.
  EXPECT_EQ(KindOf([&] { result = one / zero - one / zero; }), "Division by zero");
  EXPECT_EQ(KindOf([&] { result = big * big * zero; }), "Overflow");
}

TEST(IsZeroInSingle, TurnsAtHalfTheLeastSingle) {
  const double half = 0x1p-150;
  for (const double x : {0.0, -0.0, half, -half, 1e-46}) EXPECT_TRUE(IsZeroInSingle(x)) << x;
  for (const double x : {std::nextafter(half, 1.0), -1e-45, 1e300, -HUGE_VAL}) {
    EXPECT_FALSE(IsZeroInSingle(x)) << x;
  }
}
