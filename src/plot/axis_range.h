// The stretch that an axis shows. For the sources of plot/ only.
#pragma once

#include <qcustomplot.h>

#include "base/chart.h"

namespace quorvane {

// Room for `range` with `margin` of its span to spare at each end; about a single value a tenth of
// it, 0 to 1 for an empty one.
QCPRange AxisRange(const ChartRange& range, double margin);

}  // namespace quorvane
