// Facts about the units of an experiment.
#pragma once

namespace quorvane {

inline constexpr double kZeroCelsius = 273.15;            // kelvin
inline constexpr double kMolarGasConstant = 8.314462618;  // J/(mol K); CODATA 2018

}  // namespace quorvane
