#include "fit/overlay_plot.h"

#include <array>
#include <cmath>

namespace quorvane {

namespace {

// Colours that readers tell apart on white, colour-blind ones too, and dark enough for thin marks.
constexpr std::array<std::array<int, 3>, 7> kPalette = {{{0, 90, 170},
                                                         {200, 70, 0},
                                                         {0, 130, 90},
                                                         {170, 40, 120},
                                                         {150, 110, 0},
                                                         {40, 140, 190},
                                                         {60, 60, 60}}};
constexpr std::array kSymbols = {SeriesStyle::kDot,       SeriesStyle::kCross,
                                 SeriesStyle::kTriangle,  SeriesStyle::kDiagonalCross,
                                 SeriesStyle::kRectangle, SeriesStyle::kDownTriangle};

double Abscissa(double r, const Dataset& dataset, bool usingPsi) {
  return usingPsi ? (r * r - dataset.RefRadius * dataset.RefRadius) / 2.0 : r;
}

ChartSeries Marks(const OverlaySet& set, bool usingPsi) {
  const Dataset& dataset = *set.dataset;
  const OverlayLook look = OverlayLookOf(set.look);
  ChartSeries series{NameOf(dataset), look.style, look.color, {}, {}};
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    if (dataset.Good[k] == kFalse) continue;
    series.x.push_back(Abscissa(dataset.R[k], dataset, usingPsi));
    series.y.push_back(dataset.C[k]);
  }
  return series;
}

// Without a name, so that the legend lists the dataset once.
ChartSeries Curve(const OverlaySet& set, const FitState& fit, bool usingPsi) {
  ChartSeries series{"", SeriesStyle::kLine, OverlayLookOf(set.look).color, {}, {}};
  const int first = fit.SetFirstPoint(set.fitted);
  for (int i = first; i < first + fit.SetPointCount(set.fitted); ++i) {
    if (fit.PointKind(i) != 0) continue;
    series.x.push_back(Abscissa(fit.FitR(i), *set.dataset, usingPsi));
    series.y.push_back(fit.FitYCalc(i));
  }
  return series;
}

}  // namespace

OverlayLook OverlayLookOf(std::size_t index) {
  constexpr std::size_t kPairs = kPalette.size() * kSymbols.size();  // they share no factor
  constexpr double kDarker = 0.5;
  const double shade = index / kPairs % 2 == 0 ? 1.0 : kDarker;
  ChartColor color = 0;
  for (std::size_t c = 0; c < 3; ++c) {
    const double part = shade * kPalette[index % kPalette.size()][c];
    color |= static_cast<ChartColor>(std::lround(part)) << 8U * c;
  }
  return {kSymbols[index % kSymbols.size()], color};
}

Chart PlotOverlay(const std::vector<OverlaySet>& sets, const FitState* fit, bool usingPsi) {
  constexpr std::size_t kLegendRoom = 24;  // more names would cover the data
  ChartPanel panel{.leftTitle = "Concentration", .series = {}, .marks = {}};
  panel.legend = sets.size() <= kLegendRoom;
  for (const OverlaySet& set : sets) panel.series.push_back(Marks(set, usingPsi));
  for (const OverlaySet& set : sets) {
    if (fit != nullptr && set.fitted > 0) panel.series.push_back(Curve(set, *fit, usingPsi));
  }
  Chart chart;
  chart.title = "Overlay";
  chart.bottomTitle = usingPsi ? "(R^2-R0^2)/2 (cm^2)" : "Radius (cm)";
  chart.panels.push_back(std::move(panel));
  return chart;
}

}  // namespace quorvane
