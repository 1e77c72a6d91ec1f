// Densities of water and of buffers.
#pragma once

#include "solution/buffer_recipe.h"

namespace quorvane {

// Where Kell's formula serves here, deg C.
inline constexpr double kColdest = 0.0;
inline constexpr double kHottest = 100.0;

// Of water, from which the increments of the components count, g/ml at 20 deg C.
inline constexpr double kWaterDensity20 = 0.998234;

// Density of air-free water at 1 atm, g/ml, between kColdest and kHottest.
// Source: Kell, J. Chem. Eng. Data 20, 97 (1975), equation 16.
double WaterDensity(double degC);

// What a component adds to the density of water at 20 deg C, g/ml.
double DensityIncrement(const BufferPart& part);

// Density of a buffer, g/ml:
//     (kWaterDensity20 + sum of the increments) WaterDensity(degC) / WaterDensity(20)
// Throws SolutionFault for a temperature outside kColdest to kHottest.
double BufferDensity(const BufferRecipe& recipe, double degC);

}  // namespace quorvane
