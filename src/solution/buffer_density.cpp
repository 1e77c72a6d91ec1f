#include "solution/buffer_density.h"

#include <cmath>

#include "base/text.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

constexpr double kIncrementsDegC = 20.0;

}  // namespace

double WaterDensity(double degC) {
  const double t = degC;
  const double numerator =
      999.83952 +
      t * (16.945176 +
           t * (-7.9870401e-3 + t * (-46.170461e-6 + t * (105.56302e-9 - t * 280.54253e-12))));
  return numerator / (1.0 + 16.879850e-3 * t) / 1000.0;
}

double DensityIncrement(const BufferPart& part) {
  const auto& [a, b, c, d, e, f] = part.component->increments;
  const double x = part.molar;
  const double rho =
      a + b * 1e-3 * std::sqrt(x) + x * (c * 1e-2 + x * (d * 1e-3 + x * (e * 1e-4 + x * f * 1e-6)));
  return rho - kWaterDensity20;
}

double BufferDensity(const BufferRecipe& recipe, double degC) {
  if (!(degC >= kColdest && degC <= kHottest)) {
    throw SolutionFault("a temperature of " + ShortestText(degC) +
                        " deg C is outside 0 to 100, where the density of water is known");
  }
  double density = kWaterDensity20;
  for (const BufferPart& part : recipe) density += DensityIncrement(part);
  return density * WaterDensity(degC) / WaterDensity(kIncrementsDegC);
}

}  // namespace quorvane
