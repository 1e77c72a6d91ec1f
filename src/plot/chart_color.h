// The colours of charts and texts as Qt has them: both keep red in the lowest byte of a number.
#pragma once

#include <QColor>

#include "base/chart.h"

namespace quorvane {

inline QColor ToQColor(ChartColor color) {
  return QColor(int(color & 0xFF), int(color >> 8 & 0xFF), int(color >> 16 & 0xFF));
}

inline ChartColor FromQColor(const QColor& color) {
  return static_cast<ChartColor>(color.red() | color.green() << 8 | color.blue() << 16);
}

}  // namespace quorvane
