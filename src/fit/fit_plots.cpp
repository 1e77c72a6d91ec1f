#include "fit/fit_plots.h"

#include <array>

#include "base/number_format.h"
#include "fit/model_terms.h"
#include "fit/species_curves.h"

namespace quorvane {

namespace {

std::string TitleOf(int number, const Dataset& dataset, const char* kind) {
  return FormatNumber(number, "(###) ") + NameOf(dataset) + kind;
}

std::string TitleOf(const FitState& fit, const std::vector<Dataset>& datasets, int set,
                    const char* kind) {
  const auto place = static_cast<std::size_t>(fit.FitSetList[static_cast<std::size_t>(set)]);
  return TitleOf(set + 1, datasets[place], kind);
}

void AddPoint(ChartSeries& series, double x, double y) {
  series.x.push_back(x);
  series.y.push_back(y);
}

}  // namespace

Chart PlotDataFit(const FitState& fit, const std::vector<Dataset>& datasets, int set,
                  const PlotOptions& options) {
  ChartSeries data{"Data", SeriesStyle::kCross, kChartRed, {}, {}};
  ChartSeries curve{"Fit", SeriesStyle::kLine, kChartBlue, {}, {}};
  ChartSeries deviations{"Deviation", SeriesStyle::kDiagonalCross, kChartBlue, {}, {}};
  ChartSeries zero{"Zero", SeriesStyle::kLine, kChartBlack, {}, {}};
  const double baseline = options.SubtractOffsets ? fit.FitA(set + 1) : 0.0;
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    if (fit.FitSet(i) != set + 1 || fit.PointKind(i) != 0) continue;
    const double x = options.PlotUsingPSI ? fit.FitX(i) : fit.FitR(i);
    AddPoint(data, x, fit.FitY(i) - baseline);
    AddPoint(curve, x, fit.FitYCalc(i) - baseline);
    AddPoint(deviations, x, fit.FitY(i) - fit.FitYCalc(i));
    AddPoint(zero, x, 0.0);
  }
  Chart chart;
  chart.title = TitleOf(fit, datasets, set, " : Data Plot");
  chart.bottomTitle = options.PlotUsingPSI ? "(R^2-R0^2)/2 (cm^2)" : "Radius (cm)";
  chart.panels.push_back({"Concentration", 2.5, {std::move(data), std::move(curve)}, {}});
  chart.panels.push_back({"Deviation", 1.0, {std::move(deviations), std::move(zero)}, {}});
  return chart;
}

void AddSpeciesCurves(Chart& chart, const FitState& fit, int set, const PlotOptions& options) {
  // Told apart by the colour-blind too, and from the red data and the blue curve.
  constexpr std::array<ChartColor, kMaxSpecies> kColors = {0x739E00, 0x009FE6, 0xA779CC, 0x606060,
                                                           0xE9B456};
  const std::vector<SpeciesCurve> species = SpeciesCurves(fit, set + 1);
  if (species.empty()) return;
  const double baseline = options.SubtractOffsets ? 0.0 : fit.FitA(set + 1);
  ChartPanel& panel = chart.panels.front();
  // The abscissae are those of the curve, one a data point.
  const std::vector<double> x = panel.series.front().x;
  for (std::size_t k = 0; k < species.size(); ++k) {
    ChartSeries curve{
        .name = species[k].name, .color = kColors[k % kColors.size()], .x = x, .y = {}};
    for (const double signal : species[k].signal) curve.y.push_back(signal + baseline);
    panel.series.push_back(std::move(curve));
  }
  panel.legend = true;
}

Chart PlotDeviations(const FitState& fit, const std::vector<Dataset>& datasets, int set) {
  ChartSeries deviations{"Deviation", SeriesStyle::kDiagonalCross, kChartBlue, {}, {}};
  ChartSeries zero{"Zero", SeriesStyle::kLine, kChartBlack, {}, {}};
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    if (fit.FitSet(i) != set + 1) continue;
    AddPoint(deviations, fit.FitR(i), fit.FitY(i) - fit.FitYCalc(i));
    AddPoint(zero, fit.FitR(i), 0.0);
  }
  Chart chart;
  chart.title = TitleOf(fit, datasets, set, " : Deviation Plot");
  chart.bottomTitle = "Radius (cm)";
  chart.panels.push_back({"Deviation", 1.0, {std::move(deviations), std::move(zero)}, {}});
  return chart;
}

Chart PlotDataCurve(const FitState& fit, const std::vector<Dataset>& datasets, int set) {
  ChartSeries data{"Data", SeriesStyle::kCross, kChartRed, {}, {}};
  ChartSeries curve{"Fit", SeriesStyle::kLine, kChartBlue, {}, {}};
  const int first = fit.SetFirstPoint(set + 1);
  for (int i = first; i < first + fit.SetPointCount(set + 1); ++i) {
    if (fit.PointKind(i) != 0) continue;
    AddPoint(data, fit.FitR(i), fit.FitY(i));
    AddPoint(curve, fit.FitR(i), fit.FitYCalc(i));
  }
  const std::int16_t dataset = fit.FitSetList[static_cast<std::size_t>(set)];
  Chart chart;
  chart.title = TitleOf(dataset + 1, datasets[static_cast<std::size_t>(dataset)], " : Data Plot");
  chart.bottomTitle = "Radius (cm)";
  chart.panels.push_back({"Concentration", 1.0, {std::move(data), std::move(curve)}, {}});
  return chart;
}

}  // namespace quorvane
