#include "base/arithmetic.h"

#include <cmath>

namespace quorvane {

const char* DescribeFault(FaultKind kind) {
  switch (kind) {
    case FaultKind::kOverflow:
      return "Overflow";
    case FaultKind::kDivisionByZero:
      return "Division by zero";
    case FaultKind::kInvalidOperation:
      break;
  }
  return "Invalid operation";
}

void ThrowIfAny(const FaultFlags& flags) {
  if (flags.overflow) throw ArithmeticFault(FaultKind::kOverflow);
  if (flags.divisionByZero) throw ArithmeticFault(FaultKind::kDivisionByZero);
  if (flags.invalid) throw ArithmeticFault(FaultKind::kInvalidOperation);
}

double CheckedLog(double x) {
  if (!(x > 0.0)) throw ArithmeticFault(FaultKind::kInvalidOperation);
  return std::log(x);
}

bool IsZeroInSingle(double x) {
  // Half of the least subnormal single rounds to zero, anything above it does not.
  return std::fabs(x) <= 0x1p-150;
}

long long RoundHalfEven(double x, long long low, long long high) {
  const double rounded = std::nearbyint(x);
  if (!(rounded >= static_cast<double>(low) && rounded <= static_cast<double>(high))) {
    throw ArithmeticFault(FaultKind::kOverflow);
  }
  return static_cast<long long>(rounded);
}

double PowerOfTen(double x) {
  return std::exp(std::log(10.0) * x);
}

}  // namespace quorvane
