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

bool ShowsEachAlone(const Figure& figure) {
  return std::all_of(figure.cells.begin(), figure.cells.end(),
                     [](const FigureCell& cell) { return cell.series.size() == 1; });
}

}  // namespace

void AddFigure(const ReportView& view, PaperReport& report) {
  report.figure = MakeFigure(FigureSets(view.record), &view.fit, {});
  report.figureCaption = Caption(view, report.figure);
  if (ShowsEachAlone(report.figure)) return;
  for (int set = 0; set < view.fit.NumFitSets; ++set) {
    report.charts.push_back(
        PlotDataFit(view.fit, view.record.datasets, set, view.module.Preferences.Plots));
  }
}

}  // namespace quorvane
