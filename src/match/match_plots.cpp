#include "match/match_plots.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace quorvane {

namespace {

constexpr std::array<const char*, 3> kRmsTitles = {
    "Matched Using No Offsets", "Matched Using Y Offset Only", "Matched Using Both X & Y Offsets"};

// The colour at `place` of the way, 0 to 1, along blue, green, ochre and red.
ChartColor Mixed(double place) {
  constexpr double kStops[][3] = {{30, 70, 180}, {0, 135, 90}, {190, 130, 0}, {200, 30, 30}};
  constexpr std::size_t kParts = std::size(kStops) - 1;
  const double along = place * double(kParts);
  const std::size_t part = std::min(std::size_t(along), kParts - 1);
  ChartColor color = 0;
  for (std::size_t c = 0; c < 3; ++c) {
    const double from = kStops[part][c];
    const double value = from + (kStops[part + 1][c] - from) * (along - double(part));
    color |= ChartColor(std::lround(value)) << 8U * c;
  }
  return color;
}

Chart OnePanel(const char* title, const char* bottomTitle, const char* leftTitle) {
  Chart chart{title, bottomTitle, {}};
  chart.panels.push_back({leftTitle, 1.0, {}, {}});
  return chart;
}

}  // namespace

std::vector<ChartColor> ScanColors(std::size_t count) {
  std::vector<ChartColor> colors(count, kChartBlack);
  for (std::size_t i = 0; i + 1 < count; ++i) {
    colors[i] = Mixed(i == 0 ? 0.0 : double(i) / double(count - 2));
  }
  return colors;
}

Chart PlotScans(const MatchSeries& series, std::span<const ChartColor> colors) {
  Chart chart = OnePanel("", "radius (cm)", "concentration");
  for (std::size_t i = 0; i < series.scans.size(); ++i) {
    const RawScan& scan = series.scans[i];
    chart.panels[0].series.push_back(
        {series.names[i], SeriesStyle::kLine, colors[i % colors.size()], scan.radius, scan.signal});
  }
  return chart;
}

Chart PlotRms(const MatchResult& result, Offsets offsets) {
  const auto k = static_cast<std::size_t>(offsets);
  Chart chart = OnePanel(kRmsTitles[k], "time (hrs)", "rms deviations");
  ChartSeries points{"", SeriesStyle::kDot, kChartBlue, {}, {}};
  for (const ScanMatch& match : result.scans) {
    points.x.push_back(TimeInHours(match));
    points.y.push_back(match.rms[k]);
  }
  chart.panels[0].series.push_back(std::move(points));
  return chart;
}

Chart PlotMatchDeviations(const MatchSeries& series, const MatchResult& result, Offsets offsets,
                          std::span<const std::size_t> chosen, std::span<const ChartColor> colors) {
  const auto k = static_cast<std::size_t>(offsets);
  Chart chart = OnePanel("Deviations", "radius (cm)", "deviation");
  for (const std::size_t i : chosen) {
    const bool reference = i >= result.scans.size();
    const std::vector<double> zeros(reference ? result.rr.size() : 0);
    chart.panels[0].series.push_back({series.names[i], SeriesStyle::kLine,
                                      colors[i % colors.size()], result.rr,
                                      reference ? zeros : result.scans[i].dev[k]});
  }
  return chart;
}

}  // namespace quorvane
