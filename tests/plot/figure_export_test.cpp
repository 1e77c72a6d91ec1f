// Faults caught here: a picture of another size than asked for or without its resolution, a title
// or an entry of the legend that gets lost, residuals off their common scale, marks that hide a
// hollow one, a zoom in the wrong panel.
#include "plot/figure_export.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <cmath>

#include "plot/figure_widget.h"

using namespace quorvane;

namespace {

Figure TwoCells() {
  Figure figure;
  figure.title = "T";
  figure.bottomTitle = "Radius (cm)";
  figure.leftTitle = "Fringes";
  figure.residualTitle = "Residuals";
  figure.residuals = true;
  figure.residualReach = 0.25;
  const FigureLook look{0x0000FF, FigureSymbol::kStar, FigureStroke::kDashed};
  for (const double start : {6.0, 6.5}) {
    FigureSeries series{.name = "one", .look = look};
    for (int k = 0; k < 20; ++k) {
      const double x = start + 0.01 * k;
      series.data.Add(x, k);
      series.curve.Add(x, k + 0.1);
      series.residuals.Add(x, k % 2 == 0 ? 0.1 : -0.1);
    }
    figure.cells.push_back({start == 6.0 ? "Left" : "Right", {series}});
  }
  figure.cells[0].series[0].leftOut.Add(6.1, 3.0);
  figure.keys = {{look, true, true, "10,000 rpm, channel A, 5.1 \xC2\xB5M"}};
  return figure;
}

TEST(FigureExport, AllFormatsHaveTheAskedSizeAndTheirTexts) {
  const Figure figure = TwoCells();
  const FigureSize size{85.0, 110.0};
  for (const int dpi : {300, 600}) {
    const QImage image = QImage::fromData(
        QByteArray::fromStdString(RenderFigure(figure, PictureFormat::kPng, size, dpi)));
    EXPECT_EQ(image.width(), std::lround(85.0 / 25.4 * dpi));
    EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, dpi, 0.1);
  }
  const QString svg = QString::fromStdString(RenderFigure(figure, PictureFormat::kSvg, size));
  EXPECT_TRUE(svg.contains("width=\"85mm\" height=\"110mm\""));
  for (const char* text : {">T<", ">Radius (cm)<", ">Fringes<", ">Residuals<", ">Left<", ">Right<",
                           ">10,000 rpm, channel A, 5.1 \xC2\xB5M<"}) {
    EXPECT_TRUE(svg.contains(QString::fromUtf8(text))) << text;
  }
  // The same numbers at both residual axes, with a true minus.
  EXPECT_EQ(svg.count(QString::fromUtf8(">\xE2\x88\x92"
                                        "0.2<")),
            2);
  EXPECT_EQ(svg.toStdString(), RenderFigure(figure, PictureFormat::kSvg, size));
  EXPECT_GT(svg.count("<use "), 40);  // marks of one shape are references to it
  const std::string pdf = RenderFigure(figure, PictureFormat::kPdf, size);
  EXPECT_NE(pdf.find("/MediaBox [0 0 241.000000 312.000000]"), std::string::npos);
  for (const double side : {29.0, 501.0, std::nan("")}) {
    EXPECT_THROW(RenderFigure(figure, PictureFormat::kPdf, {85.0, side}), std::runtime_error);
  }
  EXPECT_EQ(RenderFigure({}, PictureFormat::kSvg, size).substr(0, 5), "<?xml");
}

TEST(FigureExport, HeightsSuitTheirCells) {
  Figure figure = TwoCells();
  const FigureSize page = NaturalSize(figure, kFigurePageWidth);
  EXPECT_EQ(page.width, kFigurePageWidth);
  const FigureSize column = NaturalSize(figure, kFigureColumnWidth);
  EXPECT_GT(column.height, page.height);  // one cell above the other
  figure.residuals = false;
  EXPECT_LT(NaturalSize(figure, kFigureColumnWidth).height, column.height);
  figure.cells.resize(30, figure.cells[0]);
  EXPECT_EQ(NaturalSize(figure, kFigureColumnWidth).height, 240.0);
  // Rows too low for titles of their own share one.
  figure.residuals = true;
  figure.width = kFigureColumnWidth;
  const QString svg =
      QString::fromStdString(RenderFigure(figure, PictureFormat::kSvg, SizeOf(figure)));
  EXPECT_EQ(svg.count(">Fringes (above), Residuals (below)<"), 1);
  EXPECT_EQ(svg.count(">Residuals<"), 0);
  figure.height = 60.0;
  EXPECT_EQ(SizeOf(figure), (FigureSize{kFigureColumnWidth, 60.0}));
}

TEST(FigureExport, ADragAsksForItsPartOfItsPanel) {
  FigureWidget widget;
  widget.resize(900, 600);
  widget.SetFigure(TwoCells(), {175.0, 100.0});
  widget.show();
  widget.grab();  // laid out
  int cell = -1;
  int zoomedOut = 0;
  ChartArea area;
  QObject::connect(&widget, &FigureWidget::ZoomWanted, &widget, [&](int one, const ChartArea& a) {
    cell = one;
    area = a;
  });
  QObject::connect(&widget, &FigureWidget::ZoomOutWanted, &widget, [&] { ++zoomedOut; });
  const auto drag = [&](double x1, double y1, double x2, double y2) {
    const auto send = [&](QEvent::Type type, QPointF place, Qt::MouseButtons buttons) {
      QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton, buttons, {});
      QCoreApplication::sendEvent(&widget, &event);
    };
    send(QEvent::MouseButtonPress, widget.PlaceOf(1, x1, y1), Qt::LeftButton);
    send(QEvent::MouseButtonRelease, widget.PlaceOf(1, x2, y2), {});
  };
  EXPECT_LT(widget.PlaceOf(0, 6.0, 10.0).x(), 120.0);  // panels fill the page
  drag(6.55, 15.0, 6.65, 5.0);
  EXPECT_EQ(cell, 1);
  EXPECT_NEAR(area.x1, 6.55, 0.002);
  EXPECT_NEAR(area.x2, 6.65, 0.002);
  EXPECT_NEAR(area.y1, 5.0, 0.3);
  EXPECT_NEAR(area.y2, 15.0, 0.3);
  drag(6.65, 15.0, 6.55, 5.0);
  EXPECT_EQ(zoomedOut, 1);
}

}  // namespace
