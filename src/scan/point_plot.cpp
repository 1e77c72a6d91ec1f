#include "scan/point_plot.h"

namespace quorvane {

namespace {

constexpr ChartColor kGreen = 0x008000;

ChartSeries PointsWhere(const Dataset& dataset, bool good, const char* name, ChartColor color) {
  ChartSeries series{name, SeriesStyle::kDot, color, {}, {}};
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    if ((dataset.Good[k] != kFalse) != good) continue;
    series.x.push_back(dataset.R[k]);
    series.y.push_back(dataset.C[k]);
  }
  return series;
}

}  // namespace

Chart PlotPoints(const Dataset& dataset, const PointColors& colors) {
  ChartPanel panel;
  panel.leftTitle = "Concentration";
  panel.series = {PointsWhere(dataset, true, "good", colors.good),
                  PointsWhere(dataset, false, "deleted", colors.deleted)};
  if (!IsBlank(dataset)) {
    panel.marks = {{dataset.Rmen, kGreen, "meniscus"}, {dataset.Rbase, kGreen, "base"}};
  }
  return {NameOf(dataset), "Radius (cm)", {panel}};
}

}  // namespace quorvane
