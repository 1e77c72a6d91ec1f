#include "sim/gauss_deviate.h"

#include <chrono>
#include <cmath>

#include "base/arithmetic.h"

namespace quorvane {

float UniformSource::Next() {
  // The top 24 bits: every value is exact in single precision, so none rounds up to 1.
  return static_cast<float>(generator_() >> 40) * 0x1p-24F;
}

std::uint64_t SeedFromClock() {
  return static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
}

double GaussDeviate(UniformSource& uniform) {
  double d1 = 0.0;
  double rsq = 2.0;
  while (rsq >= 1.0) {
    d1 = 2.0 * static_cast<double>(uniform.Next()) - 1.0;
    const double d2 = 2.0 * static_cast<double>(uniform.Next()) - 1.0;
    rsq = d2 * d2 + d1 * d1;
  }
  return d1 * std::sqrt(-2.0 * CheckedLog(rsq) / rsq);
}

}  // namespace quorvane
