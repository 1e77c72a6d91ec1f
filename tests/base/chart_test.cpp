// Faults caught here: a field lost or swapped between writing and reading, a length that is
// believed before it is checked. Damaged bytes: tests/robust.
#include "base/chart.h"

#include <cstddef>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

using namespace quorvane;

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
  data.leftPattern = "0.00E+00";
  data.legend = true;
  return chart;
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

TEST(ParseChart, ReadsTheLayoutWithoutLegendAndRefusesUnknownStyles) {
  Chart chart;
  chart.panels.resize(1);
  chart.panels[0].series = {{"", SeriesStyle::kDownTriangle, kChartRed, {1.0}, {2.0}}};
  std::vector<std::byte> bytes = SerializeChart(chart);
  constexpr std::size_t kVersionPlace = 4;
  constexpr std::size_t kStylePlace = 40;
  std::vector<std::byte> old(bytes.begin(), bytes.end() - 8);  // pattern and legend
  old[kVersionPlace] = std::byte{1};
  EXPECT_EQ(ParseChart(old), chart);
  ASSERT_EQ(bytes[kStylePlace], std::byte{6});
  bytes[kStylePlace] = std::byte{7};
  EXPECT_THROW(ParseChart(bytes), std::runtime_error);
}
