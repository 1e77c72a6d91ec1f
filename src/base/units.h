// Facts about the units of an experiment.
#pragma once

namespace quorvane {

inline constexpr double kZeroCelsius = 273.15;  // kelvin
inline constexpr double kGasConstant =
    8.314462618;  // J/(mol K), exact in the SI of 2019 to its digits

}  // namespace quorvane
