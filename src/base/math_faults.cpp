// MinGW's elementary functions return infinities and NaN without raising the flags of the
// processor, by which arithmetic faults are found (arithmetic.h). The linker puts these wrappers in
// their place (CMakeLists.txt): the same numbers, and the flags of IEEE 754. For MinGW only.
#include <cmath>
#include <limits>

namespace {

volatile double zero = 0.0;  // volatile, so that the operations below happen when they run
volatile double greatest = std::numeric_limits<double>::max();

// Raises what `result` of the arguments x and y stands for; `pole` if an infinity is exact.
double Raised(double result, double x, double y, bool pole) {
  if (std::isnan(result) && !std::isnan(x) && !std::isnan(y)) {
    [[maybe_unused]] volatile double invalid = zero / zero;
  } else if (std::isinf(result) && std::isfinite(x) && std::isfinite(y)) {
    [[maybe_unused]] volatile double beyond = pole ? 1.0 / zero : greatest * greatest;
  }
  return result;
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the linker's names
extern "C" {

double __real_exp(double x);
double __real_expm1(double x);
double __real_log(double x);
double __real_pow(double x, double y);
double __real_sqrt(double x);

double __wrap_exp(double x) {
  return Raised(__real_exp(x), x, x, false);
}

double __wrap_expm1(double x) {
  return Raised(__real_expm1(x), x, x, false);
}

double __wrap_log(double x) {
  return Raised(__real_log(x), x, x, true);
}

double __wrap_pow(double x, double y) {
  return Raised(__real_pow(x, y), x, y, x == 0.0);
}

double __wrap_sqrt(double x) {
  return Raised(__real_sqrt(x), x, x, false);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
