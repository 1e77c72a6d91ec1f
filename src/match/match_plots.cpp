#include "match/match_plots.h"

#include <array>

namespace {

constexpr std::array<const char*, 3> kRmsTitles = {
    "Matched Using No Offsets", "Matched Using Y Offset Only", "Matched Using Both X & Y Offsets"};

Chart OnePanel(const char* title, const char* bottomTitle, const char* leftTitle) {
  Chart chart{title, bottomTitle, {}};
  chart.panels.push_back({leftTitle, 1.0, {}, {}});
  return chart;
}

}  // namespace

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
