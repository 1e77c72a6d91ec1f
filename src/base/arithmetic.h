// Overflow, division by zero and invalid operations as errors, found at the places where a
// result is handed on. Underflow is no error.
#pragma once

#include <stdexcept>
#include <string>

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#define QUORVANE_READS_MXCSR 1
#else
#include <cfenv>
#endif

namespace quorvane {

enum class FaultKind { kOverflow, kDivisionByZero, kInvalidOperation };

// "Overflow", "Division by zero", "Invalid operation".
const char* DescribeFault(FaultKind kind);

class ArithmeticFault : public std::runtime_error {
 public:
  explicit ArithmeticFault(FaultKind kind) : std::runtime_error(DescribeFault(kind)), kind_(kind) {}
  // "Overflow at 60,000 rpm": `where` says what was being worked out.
  ArithmeticFault(FaultKind kind, const std::string& where)
      : std::runtime_error(DescribeFault(kind) + (' ' + where)), kind_(kind) {}
  FaultKind kind() const { return kind_; }

 private:
  FaultKind kind_;
};

// An index outside its array; what() is "Subscript out of range".
class SubscriptFault : public std::out_of_range {
 public:
  SubscriptFault() : std::out_of_range("Subscript out of range") {}
};

// Bits of the faults that one piece of work raised; 0 for none.
struct FaultFlags {
  bool overflow = false;
  bool divisionByZero = false;
  bool invalid = false;
  bool Any() const { return overflow || divisionByZero || invalid; }
};

// Throws ArithmeticFault for what `flags` holds, returns if nothing. An infinity makes later
// operations invalid, so overflow and division by zero are named before those.
void ThrowIfAny(const FaultFlags& flags);

#if defined(__clang__) || defined(_MSC_VER)
#if defined(_MSC_VER)
#define QUORVANE_OPAQUE __declspec(noinline)
#else
#define QUORVANE_OPAQUE __attribute__((noinline))
#endif
#else
#define QUORVANE_OPAQUE __attribute__((noipa))
#endif

// Runs `work`, which hands its results on through references, and says which faults it raised.
// Opaque to the optimiser: a division moved past the test of the flags would go unseen.
#if defined(QUORVANE_READS_MXCSR)
template <class Work>
QUORVANE_OPAQUE FaultFlags FaultsRaisedBy(Work&& work) {
#if !defined(_MSC_VER)
  asm volatile("" ::: "memory");
#endif
  _mm_setcsr(_mm_getcsr() & ~0x3Fu);
#if !defined(_MSC_VER)
  asm volatile("" ::: "memory");
#endif
  work();
#if !defined(_MSC_VER)
  asm volatile("" ::: "memory");
#endif
  const unsigned flags = _mm_getcsr();
  return {(flags & 8u) != 0, (flags & 4u) != 0, (flags & 1u) != 0};
}
#else
template <class Work>
QUORVANE_OPAQUE FaultFlags FaultsRaisedBy(Work&& work) {
  std::feclearexcept(FE_ALL_EXCEPT);
  work();
  return {std::fetestexcept(FE_OVERFLOW) != 0, std::fetestexcept(FE_DIVBYZERO) != 0,
          std::fetestexcept(FE_INVALID) != 0};
}
#endif

// Runs `work` and throws ArithmeticFault if it raised a fault.
template <class Work>
void CheckArithmetic(Work&& work) {
  ThrowIfAny(FaultsRaisedBy(work));
}

// The result of `work`, whose arithmetic is checked as by CheckArithmetic.
template <class Work>
double Checked(Work&& work) {
  double result = 0.0;
  CheckArithmetic([&] { result = work(); });
  return result;
}

// Natural logarithm. Throws ArithmeticFault (invalid operation) for x <= 0.
double CheckedLog(double x);

// Whether x, rounded to single precision, equals 0. A value beyond single precision does not.
bool IsZeroInSingle(double x);

// The nearest integer, halves to the even one. Throws ArithmeticFault (overflow) outside
// [low, high].
long long RoundHalfEven(double x, long long low, long long high);

// exp(ln(10) x).
double PowerOfTen(double x);

}  // namespace quorvane
