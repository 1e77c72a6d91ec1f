// Facts about the units of an experiment.
#pragma once

inline constexpr double kZeroCelsius = 273.15;  // kelvin
