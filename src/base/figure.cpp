#include "base/figure.h"

namespace quorvane {

Chart NumbersOf(const Figure& figure) {
  Chart chart{.title = figure.title, .bottomTitle = figure.bottomTitle, .panels = {}};
  for (const FigureCell& cell : figure.cells) {
    ChartPanel panel{.leftTitle = cell.title, .series = {}, .marks = {}};
    const auto add = [&](const FigureSeries& series, const std::string& kind,
                         const FigurePoints& points) {
      if (points.x.empty()) return;
      panel.series.push_back(
          {series.name + ": " + kind, SeriesStyle::kDot, series.look.color, points.x, points.y});
    };
    for (const FigureSeries& series : cell.series) {
      add(series, "data", series.data);
      add(series, "left out", series.leftOut);
      add(series, "curve", series.curve);
      add(series, "residuals", series.residuals);
      for (const FigureSpecies& species : series.species) add(series, species.name, species.curve);
    }
    chart.panels.push_back(std::move(panel));
  }
  return chart;
}

}  // namespace quorvane
