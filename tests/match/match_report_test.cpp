// Faults caught here: a changed text or number format, a chart with other scans, axes or offsets.
#include "match/match_report.h"

#include <gtest/gtest.h>

#include "match/match_plots.h"

using namespace quorvane;

namespace {

const MatchSeries kSeries{"/data/run", {"1.RA1", "2.RA1", "3.RA1"}, std::vector<RawScan>(3)};

// Two scans against a reference; the numbers are made up.
const MatchResult kResult{
    {5.9, 6, 6.12345},
    {{5400, {0.1, 0.0234, 1e-3}, {}, {-0.05, 2e-12}, -1.239e-4, {}},
     {360000, {0, 0, 0}, {}, {0, 0}, 0, {std::vector<double>{}, {}, {7, 8, 9}}}}};

TEST(WriteMatchReport, TextIsExact) {
  std::string text;
  for (const MatchReportItem& item : WriteMatchReport(kSeries, kResult, "DATE, TIME")) {
    const auto* line = std::get_if<std::string>(&item);
    text += line != nullptr ? *line + "|\n" : "chart " + std::get<Chart>(item).title + "\n";
  }
  EXPECT_EQ(
      text,
      "\r\nMatching Files :: DATE, TIME|\n"
      "Current Directory :: /data/run|\n"
      "Reference File :: 3.RA1|\n"
      "Fitting Range :: 5.9 to 6.1235|\n"
      " |\n"
      "                                 RMS w/      RMS w/                  RMS w/|\n"
      "  #      Filename   Time(hrs)  No Offsets   Y-Offset    Y-Offset   X&Y Offsets  "
      "Y-Offset    X-Offset|\n"
      " 001 :   1.RA1   001.500    1.00E-01    2.34E-02   -5.00E-02    1.00E-03    2.00E-12   "
      "-1.24E-04|\n"
      " 002 :   2.RA1   100.000    0.00E+00    0.00E+00    0.00E+00    0.00E+00    0.00E+00   "
      " 0.00E+00|\n"
      " |\nchart Matched Using No Offsets\n"
      " |\nchart Matched Using Y Offset Only\n"
      " |\nchart Matched Using Both X & Y Offsets\n");
}

TEST(MatchPlots, ShowTheChosenNumbers) {
  const ChartSeries rms{"", SeriesStyle::kDot, kChartBlue, {1.5, 100}, {0.0234, 0}};
  EXPECT_EQ(
      PlotRms(kResult, Offsets::kY),
      (Chart{"Matched Using Y Offset Only", "time (hrs)", {{"rms deviations", 1.0, {rms}, {}}}}));
  const std::vector<std::size_t> chosen = {1, 2};
  const ChartSeries two{"2.RA1", SeriesStyle::kLine, kChartBlack, kResult.rr, {7, 8, 9}};
  const ChartSeries reference{"3.RA1", SeriesStyle::kLine, kChartRed, kResult.rr, {0, 0, 0}};
  EXPECT_EQ(PlotMatchDeviations(kSeries, kResult, Offsets::kXY, chosen,
                                std::vector<ChartColor>{kChartRed, kChartBlack}),
            (Chart{"Deviations", "radius (cm)", {{"deviation", 1.0, {two, reference}, {}}}}));
}

}  // namespace

TEST(ScanColors, RunFromBlueToRedAndEndInBlack) {
  EXPECT_EQ(ScanColors(1), std::vector<ChartColor>{kChartBlack});
  EXPECT_EQ(ScanColors(2), (std::vector<ChartColor>{0xB4461E, kChartBlack}));
  const std::vector<ChartColor> four = ScanColors(4);
  EXPECT_EQ(four.front(), 0xB4461EU);
  EXPECT_EQ(four[2], 0x1E1EC8U);
  EXPECT_EQ(four.back(), kChartBlack);
}
