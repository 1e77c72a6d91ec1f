// Faults caught here: a field lost or swapped between writing and reading, a length that is
// believed before it is checked, and foreign or damaged bytes that crash the reader.
#include "base/chart.h"

#include <cstddef>
#include <random>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

namespace {

Chart SampleChart() {
  Chart chart;
  chart.title = "(1) 12_3B20280.dat : Data Plot";
  chart.bottomTitle = "Radius (cm)";
  chart.panels.resize(2);
  ChartPanel& data = chart.panels[0];
  data.leftTitle = "Conc.";
  data.heightShare = 3.0;
  data.series = {{"data", SeriesStyle::kDot, kChartBlue, {6.0, 6.1, 6.2}, {0.1, -0.0, 1e300}},
                 {"", SeriesStyle::kLine, kChartRed, {}, {}}};
  data.marks = {{6.05, kChartRed, "meniscus \u00B1"}, {6.9, kChartBlack, ""}};
  chart.panels[1].series = {{"dev", SeriesStyle::kDiagonalCross, 0xFFFFFFFF, {1.0}, {5e-324}}};
  return chart;
}

// Places taken by all vectors of a chart.
std::size_t SizeOf(const Chart& chart) {
  std::size_t size = chart.title.size() + chart.bottomTitle.size() + chart.panels.size();
  for (const ChartPanel& panel : chart.panels) {
    size += panel.leftTitle.size() + panel.series.size() + panel.marks.size();
    for (const ChartSeries& series : panel.series) size += series.x.size() + series.y.size();
  }
  return size;
}

}  // namespace

TEST(ParseChart, GivesBackWhatWasSerialized) {
  for (const Chart& chart : {SampleChart(), Chart{}}) {
    EXPECT_EQ(ParseChart(SerializeChart(chart)), chart);
  }
}

TEST(ParseChart, RefusesEveryTruncation) {
  const std::vector<std::byte> bytes = SerializeChart(SampleChart());
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_THROW(ParseChart(std::span(bytes).first(length)), std::runtime_error) << length;
  }
}

// A damaged byte may still make a chart, yet one no larger than its bytes.
TEST(ParseChart, SurvivesDamage) {
  const std::vector<std::byte> bytes = SerializeChart(SampleChart());
  std::mt19937 random(7);
  int refused = 0;
  for (std::size_t round = 0; round < bytes.size() * 20; ++round) {
    std::vector<std::byte> damaged = bytes;
    damaged[round % bytes.size()] ^= std::byte(1 + random() % 255);
    if (round % 3 == 0) damaged[random() % bytes.size()] = std::byte(random() % 256);
    try {
      EXPECT_LE(SizeOf(ParseChart(damaged)), bytes.size());
    } catch (const std::runtime_error&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 0);
}
