// The points of a dataset as a picture for editing.
#pragma once

#include "base/chart.h"
#include "scan/dataset.h"

namespace quorvane {

struct PointColors {
  ChartColor good = kChartBlue;
  ChartColor deleted = kChartRed;
};

// Good and deleted points against the radius, and marks at meniscus and base unless it is a blank.
Chart PlotPoints(const Dataset& dataset, const PointColors& colors);

}  // namespace quorvane
