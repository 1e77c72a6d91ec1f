#include "stats/comparison_plot.h"

namespace quorvane {

namespace {

ChartSeries ResidualsOf(const FittedCurve& curve) {
  ChartSeries series{"Residuals", SeriesStyle::kCross, kChartBlue, curve.r, {}};
  for (std::size_t k = 0; k < curve.y.size(); ++k) {
    series.y.push_back(curve.y[k] - curve.calculated[k]);
  }
  return series;
}

ChartSeries ZeroLine(const std::vector<double>& x) {
  ChartSeries line{{}, SeriesStyle::kLine, kChartBlack, {}, {}};
  if (x.empty()) return line;
  line.x = {x.front(), x.back()};
  line.y = {0.0, 0.0};
  return line;
}

}  // namespace

Chart PlotComparedResiduals(const std::string& dataset, const std::vector<NamedCurve>& fits) {
  Chart chart;
  chart.title = dataset + " : Residuals";
  chart.bottomTitle = "Radius (cm)";
  ChartRange common;
  for (const NamedCurve& fit : fits) {
    ChartPanel& panel = chart.panels.emplace_back();
    panel.leftTitle = fit.name;
    panel.series = {ZeroLine(fit.curve.r), ResidualsOf(fit.curve)};
    common.Include(panel.series.back().y);
  }
  for (ChartPanel& panel : chart.panels) panel.leftRange = common;
  return chart;
}

}  // namespace quorvane
