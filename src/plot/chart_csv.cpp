#include "plot/chart_csv.h"

#include <algorithm>
#include <cstddef>

#include "base/csv.h"
#include "base/text.h"

namespace quorvane {

std::string ChartCsv(const Chart& chart) {
  std::string table = "panel,series,x,y";
  table += kLineBreak;
  for (const ChartPanel& panel : chart.panels) {
    for (const ChartSeries& series : panel.series) {
      const std::string names = CsvText(panel.leftTitle) + ',' + CsvText(series.name) + ',';
      const std::size_t points = std::min(series.x.size(), series.y.size());
      for (std::size_t k = 0; k < points; ++k) {
        table += names + CsvNumber(series.x[k]) + ',' + CsvNumber(series.y[k]);
        table += kLineBreak;
      }
    }
  }
  return table;
}

}  // namespace quorvane
