#include "core/report/report_figure.h"

#include <algorithm>

#include "core/page/figure_sets.h"
#include "core/report/report_view.h"
#include "fit/fit_plots.h"

namespace quorvane {

namespace {

int CountLeftOut(const ReportView& view) {
  int count = 0;
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    const Dataset& set = view.DatasetOf(d);
    count += set.NumPoints - CountGoodPoints(set);
  }
  return count;
}

std::string Caption(const ReportView& view, const Figure& figure) {
  const int sets = view.fit.NumFitSets;
  std::string text = "Figure 1. " +
                     (sets == 1 ? "The dataset" : "All " + std::to_string(sets) + " datasets") +
                     " of the fit with the model " + view.ModelName() +
                     ": signal (symbols) and fitted curve (lines) against the radius; below, "
                     "residuals, signal less curve, all on one scale.";
  const int leftOut = CountLeftOut(view);
  if (leftOut > 0)
    text += " Points that were left out (" + std::to_string(leftOut) + ") are not shown.";
  for (const std::string& remark : figure.remarks) text += " " + remark;
  return text;
}

// Whether two datasets of a cell look the same, as those of one channel at two wavelengths do.
bool LooksMeet(const Figure& figure) {
  for (const FigureCell& cell : figure.cells) {
    for (std::size_t k = 0; k < cell.series.size(); ++k) {
      for (std::size_t other = 0; other < k; ++other) {
        if (cell.series[k].look == cell.series[other].look) return true;
      }
    }
  }
  return false;
}

Figure FigureOf(const ReportView& view) {
  const std::vector<FigureSet> sets = FigureSets(view.record);
  Figure figure = MakeFigure(sets, &view.fit, {});
  return LooksMeet(figure) ? MakeFigure(sets, &view.fit, {.looks = FigureLooks::kByDataset})
                           : figure;
}

bool ShowsEachAlone(const Figure& figure) {
  return std::all_of(figure.cells.begin(), figure.cells.end(),
                     [](const FigureCell& cell) { return cell.series.size() == 1; });
}

}  // namespace

void AddFigure(const ReportView& view, PaperReport& report) {
  report.figure = FigureOf(view);
  report.figureCaption = Caption(view, report.figure);
  if (ShowsEachAlone(report.figure)) return;
  for (int set = 0; set < view.fit.NumFitSets; ++set) {
    report.charts.push_back(
        PlotDataFit(view.fit, view.record.datasets, set, view.module.Preferences.Plots));
  }
}

}  // namespace quorvane
