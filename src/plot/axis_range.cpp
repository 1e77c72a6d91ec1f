#include "plot/axis_range.h"

#include <algorithm>
#include <cmath>

namespace quorvane {

QCPRange AxisRange(const ChartRange& range, double margin) {
  constexpr double kLeastSpan = 1 / 1e200;  // below it an axis has none
  constexpr double kNegligible = 1e-12;     // relative; less than that is rounding
  if (range.Empty()) return {0.0, 1.0};
  const double magnitude = std::max(std::abs(range.low), std::abs(range.high));
  const double span = range.high - range.low;
  double spare = margin * span;
  if (span <= kNegligible * magnitude || magnitude < kLeastSpan) {
    spare = magnitude > kLeastSpan ? 0.1 * magnitude : 1.0;
  }
  return {range.low - spare, range.high + spare};
}

}  // namespace quorvane
