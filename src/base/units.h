// Facts about the units of an experiment.
#pragma once

namespace quorvane {

inline constexpr double kZeroCelsius = 273.15;  // kelvin

}  // namespace quorvane
