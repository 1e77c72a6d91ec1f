// Faults caught here: a line that loses points or closes its gap on the screen, where long lines
// are drawn in pieces and very long ones without smoothing.
#include "plot/chart_widget.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <limits>

using namespace quorvane;

namespace {

// Up and down over the whole panel, with a gap at the middle fifth.
Chart Zigzag(int points) {
  ChartSeries line{"", SeriesStyle::kLine, kChartRed, {}, {}};
  for (int i = 0; i < points; ++i) {
    const double x = i / (points - 1.0);
    line.x.push_back(x);
    line.y.push_back(x > 0.4 && x < 0.6 ? std::numeric_limits<double>::quiet_NaN() : i % 2);
  }
  return {"", "", {{"", 1.0, {line}, {}}}};
}

bool IsRed(QRgb pixel) {
  return qRed(pixel) > qGreen(pixel) + 60;
}

// The columns of pixels that a red line crosses, as the first and the last of each run.
std::vector<int> RedRuns(const QImage& image) {
  std::vector<int> runs;
  bool inside = false;
  for (int x = 0; x < image.width(); ++x) {
    bool red = false;
    for (int y = 0; y < image.height(); ++y) red = red || IsRed(image.pixel(x, y));
    if (red != inside) runs.push_back(red ? x : x - 1);
    inside = red;
  }
  return runs;
}

int RedPixels(const QImage& image, int y) {
  int count = 0;
  for (int x = 0; x < image.width(); ++x) count += IsRed(image.pixel(x, y));
  return count;
}

}  // namespace

TEST(ChartWidget, DrawsLinesWholeWhateverTheirLength) {
  const auto drawn = [](int points) {
    ChartWidget widget;
    widget.resize(600, 400);
    widget.SetChart(Zigzag(points));
    return widget.grab().toImage();
  };
  const std::vector<int> expected = RedRuns(drawn(101));
  ASSERT_EQ(expected.size(), 4U);
  for (const int points : {401, 2001, 40001}) {
    const QImage image = drawn(points);
    const std::vector<int> runs = RedRuns(image);
    ASSERT_EQ(runs.size(), 4U) << points;
    int columns = 0;
    for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(runs[k], expected[k], 2) << points;
    for (std::size_t k = 0; k < 4; k += 2) columns += runs[k + 1] - runs[k] + 1;
    EXPECT_GT(RedPixels(image, 200), 0.95 * columns) << points;  // nothing but ink between
  }
}
