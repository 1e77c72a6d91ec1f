// Faults caught here: points in the wrong place or colour, a series or a title that gets lost, data
// on the frame or outside the axes, points without a number that change a picture, broken files,
// curves that lose what is narrow.
#include "plot/chart_export.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <utility>

#include "plot/chart_widget.h"
#include "svg_reading.h"

using namespace quorvane;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kPixels = 1.0;  // where the middle of a mark may be off

constexpr ChartColor kOrange = 0x0080FF;  // red 255, green 128, blue 0
constexpr ChartColor kGreen = 0x00C000;

ChartSeries Marks(ChartColor color, std::vector<double> x, std::vector<double> y,
                  SeriesStyle style = SeriesStyle::kCross) {
  return {"", style, color, std::move(x), std::move(y)};
}

ChartSeries Line(ChartColor color, std::vector<double> x, std::vector<double> y) {
  return Marks(color, std::move(x), std::move(y), SeriesStyle::kLine);
}

Chart OnePanel(std::vector<ChartSeries> series) {
  return {"Title", "Radius (cm)", {{"Concentration", 1.0, std::move(series), {}}}};
}

Chart TwoPanels() {
  Chart chart = OnePanel({Marks(kChartRed, {6.4, 6.5, 6.6}, {0.1, 0.4, 1.2}),
                          Line(kChartBlue, {6.4, 6.5, 6.6}, {0.1, 0.4, 1.2})});
  chart.panels.push_back(
      {"Residual",
       0.4,
       {Marks(kOrange, {6.4, 6.5, 6.6}, {-0.01, 0.0, 0.02}, SeriesStyle::kDiagonalCross),
        Line(kChartBlack, {6.4, 6.6}, {0.0, 0.0})},
       {}});
  return chart;
}

QImage Png(const Chart& chart, PictureSize size = {}) {
  const QImage image =
      QImage::fromData(QByteArray::fromStdString(RenderChart(chart, PictureFormat::kPng, size)));
  return image.convertToFormat(QImage::Format_RGB32);
}

QByteArray Svg(const Chart& chart) {
  return QByteArray::fromStdString(RenderChart(chart, PictureFormat::kSvg));
}

struct Blob {
  int pixels = 0;
  QRect box;
};

// All pixels of just this colour.
Blob Find(const QImage& image, ChartColor color) {
  const QRgb wanted = qRgb(int(color & 0xFF), int(color >> 8 & 0xFF), int(color >> 16));
  Blob blob;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixel(x, y) != wanted) continue;
      ++blob.pixels;
      blob.box |= QRect(x, y, 1, 1);
    }
  }
  return blob;
}

}  // namespace

TEST(RenderChart, PngHasTheAskedSizeAndEverySeries) {
  for (const PictureSize size : {PictureSize{801, 603}, {2500, 2161}, {200, 200}}) {
    EXPECT_EQ(Png(TwoPanels(), size).size(), QSize(size.width, size.height));
  }
  const QImage image = Png(TwoPanels());
  EXPECT_EQ(image.size(), QSize(1200, 1080));
  EXPECT_EQ(image.pixel(1199, 1079), qRgb(255, 255, 255));
  for (const ChartColor color : {kChartBlack, kChartRed, kChartBlue, kOrange}) {
    EXPECT_GT(Find(image, color).pixels, 3) << "colour " << color;
  }
}

TEST(RenderChart, PointsLieWhereTheirCoordinatesSayAndClearOfTheFrame) {
  for (const SeriesStyle style : {SeriesStyle::kCross, SeriesStyle::kDiagonalCross,
                                  SeriesStyle::kDot, SeriesStyle::kRectangle}) {
    const QImage image =
        Png(OnePanel({Marks(kChartRed, {6.4}, {0.2}, style), Marks(kGreen, {6.6}, {1.0}, style),
                      Marks(kOrange, {6.45}, {0.8}, style)}));
    const QRectF low = Find(image, kChartRed).box;
    const QRectF high = Find(image, kGreen).box;
    const QRectF between = Find(image, kOrange).box;
    const QPointF way = high.center() - low.center();
    EXPECT_GT(way.x(), 900);  // most of the picture is used
    EXPECT_LT(way.y(), -700);
    EXPECT_NEAR(between.center().x(), low.center().x() + 0.25 * way.x(), kPixels);
    EXPECT_NEAR(between.center().y(), low.center().y() + 0.75 * way.y(), kPixels);
    EXPECT_NEAR(low.width(), between.width(), 2 * kPixels);  // not cut by the frame
    EXPECT_NEAR(high.height(), between.height(), 2 * kPixels);
  }
}

TEST(RenderChart, SkipsWhatIsNotFinite) {
  const Chart clean = OnePanel({Marks(kChartRed, {1, 2, 3}, {1, 2, 3})});
  for (const double bad : {kNaN, kInfinity, -kInfinity, 1e300}) {
    const Chart inY = OnePanel({Marks(kChartRed, {1, 900, 2, 3}, {1, bad, 2, 3})});
    const Chart inX = OnePanel({Marks(kChartRed, {bad, 1, 2, 3}, {-900, 1, 2, 3})});
    EXPECT_EQ(Svg(inY), Svg(clean)) << bad;
    EXPECT_EQ(Svg(inX), Svg(clean)) << bad;
  }
  Chart longer = clean;
  longer.panels[0].series[0].x.push_back(99);  // without its y
  EXPECT_EQ(Svg(longer), Svg(clean));
}

TEST(RenderChart, TellsSeriesApartAndNamesThemInALegend) {
  QSet<QByteArray> pictures;
  for (int style = 0; style <= static_cast<int>(SeriesStyle::kDownTriangle); ++style) {
    pictures += Svg(OnePanel({Marks(kChartRed, {6.4, 6.6}, {0, 1}, SeriesStyle(style))}));
  }
  EXPECT_EQ(pictures.size(), 7);
  Chart chart = OnePanel({{"dimer", SeriesStyle::kDot, kChartRed, {6.4, 6.6}, {0, 1}}});
  EXPECT_EQ(ReadSvg(Svg(chart)).FindText("dimer"), nullptr);
  chart.panels[0].legend = true;
  chart.panels[0].leftPattern = "0.00E+00";
  EXPECT_NE(ReadSvg(Svg(chart)).FindText("dimer"), nullptr);
  EXPECT_NE(ReadSvg(Svg(chart)).FindText("2.00E-01"), nullptr);
  chart.panels[0].leftPattern = "0";  // would write 0, 0, 0, 1, 1, 1
  EXPECT_NE(ReadSvg(Svg(chart)).FindText("0.2"), nullptr);
}

TEST(RenderChart, SaysWhereThereIsNoData) {
  EXPECT_NE(ReadSvg(Svg(Chart{})).FindText("No data"), nullptr);
  EXPECT_NE(ReadSvg(Svg(OnePanel({Marks(kChartRed, {kNaN}, {1})}))).FindText("No data"), nullptr);
  Chart half = TwoPanels();
  half.panels[1].series.clear();
  const SvgFile file = ReadSvg(Svg(half));
  EXPECT_NE(file.FindText("No data"), nullptr);
  EXPECT_NE(file.FindText("6.50"), nullptr);  // the other panel's radii
}

TEST(RenderChart, SvgKeepsTextsAndClipsDataToTheAxes) {
  Chart chart = TwoPanels();
  chart.title = "(1) a&b <c> \u00b1 5 \u00b5g : \"Plot\"";
  chart.panels[0].marks = {{6.45, kGreen, "men & iscus"}, {kNaN, kGreen, "nowhere"}};
  const SvgFile file = ReadSvg(Svg(chart));
  ASSERT_EQ(file.error, QString());
  for (const std::string& text : {chart.title, chart.bottomTitle, std::string("men & iscus")}) {
    EXPECT_NE(file.FindText(QString::fromStdString(text)), nullptr) << text;
  }
  EXPECT_EQ(file.FindText("nowhere"), nullptr);
  const SvgElement* left = file.FindText("Residual");
  ASSERT_NE(left, nullptr);
  EXPECT_TRUE(left->transform.startsWith("matrix(0 -2 2 0"));
  int clipped = 0;
  for (const SvgElement& element : file.elements) {
    if (element.stroke != "#ff0000" && element.stroke != "#0000ff") continue;
    ++clipped;
    const QRectF axes = file.clips.value(element.clip);
    EXPECT_GT(axes.left(), 50);
    EXPECT_LT(axes.right(), 1190);
    EXPECT_LT(axes.bottom(), 800);  // the residuals' panel is below
  }
  EXPECT_GE(clipped, 2);  // the crosses and the line
}

TEST(RenderChart, PdfIsOnePageOfTheAskedSize) {
  const QByteArray bytes = QByteArray::fromStdString(
      RenderChart(TwoPanels(), PictureFormat::kPdf, PictureSize{700, 500}));
  EXPECT_TRUE(bytes.startsWith("%PDF-"));
  EXPECT_TRUE(bytes.trimmed().endsWith("%%EOF"));
  const QString text = QString::fromLatin1(bytes);
  EXPECT_EQ(text.count(QRegularExpression("/Type\\s*/Page\\b")), 1);
  const auto box = QRegularExpression("/MediaBox\\s*\\[0 0 ([0-9.]+) ([0-9.]+)\\s*\\]").match(text);
  EXPECT_NEAR(box.captured(1).toDouble(), 700, 0.5);
  EXPECT_NEAR(box.captured(2).toDouble(), 500, 0.5);
  EXPECT_FALSE(text.contains("/Subtype /Image"));  // lines, not pixels
}

TEST(ChartWidget, ACurveOfManyPointsKeepsItsSpikesAndGaps) {
  Chart chart = OnePanel({Line(kChartBlue, {}, {})});
  ChartSeries& line = chart.panels[0].series[0];
  for (int k = 0; k <= 4000; ++k) {
    line.x.push_back(k);
    line.y.push_back(k == 1000 ? 1.0 : k > 2000 && k < 2400 ? kNaN : 0.0);
  }
  ChartWidget widget;
  widget.resize(600, 500);
  widget.SetChart(chart);
  const QImage image = widget.grab().toImage();
  std::vector<int> columns;  // where there is some blue
  int top = image.height();
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) {
      const QColor color = image.pixelColor(x, y);
      if (color.blue() - color.red() < 80) continue;
      if (columns.empty() || columns.back() != x) columns.push_back(x);
      top = std::min(top, y);
    }
  }
  ASSERT_GT(columns.size(), 300u);
  EXPECT_LT(top, 100);
  const int width = columns.back() - columns.front();
  EXPECT_NEAR(width + 1 - static_cast<int>(columns.size()), width / 10, 2);
}
