#include "core/report/report_figure.h"

#include <algorithm>

#include "core/page/figure_sets.h"
#include "core/report/report_view.h"
#include "fit/fit_plots.h"

namespace quorvane {

namespace {

// What the user has set up, or what "Figure..." has at first; always data and fit.
FigureSetup SetupOf(const QuorvaneModule& module) {
  FigureSetup setup = module.Figure.value_or(FigureSetup{});
  setup.choices.content = FigureContent::kData;
  return setup;
}

int CountLeftOut(const std::vector<FigureSet>& sets) {
  int count = 0;
  for (const FigureSet& set : sets) count += set.dataset->NumPoints - CountGoodPoints(*set.dataset);
  return count;
}

std::string WhoIsShown(const ReportView& view, std::size_t shown) {
  const auto all = static_cast<std::size_t>(view.fit.NumFitSets);
  if (all == 1) return "The dataset";
  if (shown == all) return "All " + std::to_string(all) + " datasets";
  return std::to_string(shown) + " of the " + std::to_string(all) + " datasets";
}

bool HasSpecies(const Figure& figure) {
  return std::any_of(figure.cells.begin(), figure.cells.end(), [](const FigureCell& cell) {
    return std::any_of(cell.series.begin(), cell.series.end(),
                       [](const FigureSeries& series) { return !series.species.empty(); });
  });
}

std::string WhatIsDrawn(const FigureChoices& choices, const Figure& figure) {
  const bool logarithm = choices.signal == FigureSignal::kLogarithm;
  std::string text = logarithm ? "ln(signal \u2212 baseline)" : "signal";
  text += " (symbols)";
  if (choices.curves) text += " and fitted curve (lines)";
  if (HasSpecies(figure)) text += ", with what each species adds to it (thin lines),";
  text += choices.abscissa == FigureAbscissa::kPsi
              ? " against (r\u00B2 \u2212 r\u2080\u00B2)/2, r\u2080 being the reference radius"
              : " against the radius";
  if (figure.residuals) text += "; below, residuals, signal less curve, all on one scale";
  return text + ".";
}

std::string Caption(const ReportView& view, const FigureChoices& choices,
                    const std::vector<FigureSet>& sets, const Figure& figure) {
  std::string text = "Figure 1. " + WhoIsShown(view, sets.size()) + " of the fit with the model " +
                     view.ModelName() + ": " + WhatIsDrawn(choices, figure);
  const int leftOut = CountLeftOut(sets);
  if (leftOut > 0 && choices.leftOut) {
    text += " Hollow symbols are points that were left out.";
  } else if (leftOut > 0) {
    text += " Points that were left out (" + std::to_string(leftOut) + ") are not shown.";
  }
  for (const std::string& remark : figure.remarks) text += " " + remark;
  return text;
}

// Whether it shows each dataset of the fit in a cell of its own.
bool ShowsEachAlone(const ReportView& view, const std::vector<FigureSet>& sets,
                    const Figure& figure) {
  return sets.size() == static_cast<std::size_t>(view.fit.NumFitSets) &&
         std::all_of(figure.cells.begin(), figure.cells.end(),
                     [](const FigureCell& cell) { return cell.series.size() == 1; });
}

}  // namespace

void AddFigure(const ReportView& view, PaperReport& report) {
  const FigureSetup setup = SetupOf(view.module);
  const std::vector<FigureSet> sets = FigureSets(view.record, setup.hidden);
  report.figure = MakeFigure(sets, &view.fit, setup.choices);
  report.figureCaption = Caption(view, setup.choices, sets, report.figure);
  if (ShowsEachAlone(view, sets, report.figure)) return;
  for (int set = 0; set < view.fit.NumFitSets; ++set) {
    report.charts.push_back(
        PlotDataFit(view.fit, view.record.datasets, set, view.module.Preferences.Plots));
  }
}

}  // namespace quorvane
