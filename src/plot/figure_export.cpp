#include "plot/figure_export.h"

#include <qcustomplot.h>

#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "plot/figure_legend.h"
#include "plot/figure_page.h"
#include "plot/png_bytes.h"
#include "plot/svg_device.h"

namespace quorvane {

namespace {

constexpr double kMmPerInch = 25.4;

QSizeF Millimetres(FigureSize size) {
  return {size.width, size.height};
}

QSize Units(FigureSize size) {
  return (Millimetres(size) * kFigureUnitsPerMm).toSize();
}

// Draws at `corner` of the device, `scale` of its units a unit of the layout.
void Paint(const Figure& figure, FigureSize size, QPaintDevice& device, QPointF corner,
           double scale) {
  QCPPainter painter;
  if (!painter.begin(&device)) throw std::runtime_error("the picture cannot be painted");
  painter.setModes(QCPPainter::pmVectorized | QCPPainter::pmNoCaching | QCPPainter::pmNonCosmetic);
  const QSize units = Units(size);
  painter.translate(corner);
  painter.scale(scale, scale);
  painter.fillRect(QRect(QPoint(0, 0), units), Qt::white);
  QCustomPlot plot;
  FillFigure(plot, figure, Millimetres(size));
  plot.toPainter(&painter, units.width(), units.height());
  if (!painter.end()) throw std::runtime_error("the picture cannot be finished");
}

QByteArray RenderPng(const Figure& figure, FigureSize size, int dpi) {
  const double dotsPerMm = dpi / kMmPerInch;
  QImage image((Millimetres(size) * dotsPerMm).toSize(), QImage::Format_RGB32);
  if (image.isNull()) throw std::runtime_error("not enough memory for the picture");
  image.fill(Qt::white);
  Paint(figure, size, image, {}, dotsPerMm / kFigureUnitsPerMm);
  return PngBytes(std::move(image), 1000.0 * dotsPerMm);
}

QByteArray RenderSvg(const Figure& figure, FigureSize size) {
  SvgDevice device(Units(size), QString::fromStdString(figure.title), Millimetres(size));
  Paint(figure, size, device, {}, 1.0);
  return device.Document();
}

QByteArray RenderPdf(const Figure& figure, FigureSize size) {
  constexpr int kUnitsPerInch = 4 * 72;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly)) throw std::runtime_error("no buffer for the PDF");
  {
    QPdfWriter writer(&buffer);
    writer.setCreator(QStringLiteral("Quorvane"));
    writer.setTitle(QString::fromStdString(figure.title));
    writer.setResolution(kUnitsPerInch);
    writer.setPageSize(
        QPageSize(Millimetres(size), QPageSize::Millimeter, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    Paint(figure, size, writer, {}, 1.0);
  }
  return bytes;
}

void Check(FigureSize size, int dpi) {
  constexpr int kLeastDpi = 72;
  constexpr int kGreatestDpi = 1200;
  const auto [least, greatest] = std::minmax(size.width, size.height);
  if (!(least >= kLeastFigureSide && greatest <= kGreatestFigureSide)) {
    throw std::runtime_error("each side of a figure must be 30 to 500 mm");
  }
  if (dpi < kLeastDpi || dpi > kGreatestDpi) {
    throw std::runtime_error("a figure must have 72 to 1200 dots an inch");
  }
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    throw std::runtime_error("a figure cannot be drawn before the drawing system is started");
  }
}

}  // namespace

FigureSize NaturalSize(const Figure& figure, double width) {
  constexpr double kGreatestHeight = 240.0;
  constexpr double kTitleLine = 5.0;  // mm
  constexpr double kSpare = 7.0;      // the bottom title and the numbers above it
  const int across = CellsAcross(figure, width);
  const int cells = std::max(int(figure.cells.size()), 1);
  const int rows = (cells + across - 1) / across;
  const double cell = width / across;
  // A single large panel is wider than high, small ones about square.
  const double panel = std::clamp(cell * (across == 1 ? 0.56 : 0.8), 38.0, 90.0);
  const double row = figure.residuals ? panel * 1.36 : panel;
  const FigureLegend legend(nullptr, figure.keys, int(width * kFigureUnitsPerMm) - 12);
  double height = rows * row + kSpare + legend.Height() / kFigureUnitsPerMm;
  if (!figure.title.empty()) height += kTitleLine;
  return {width, std::round(std::clamp(height, kLeastFigureSide, kGreatestHeight))};
}

FigureSize SizeOf(const Figure& figure) {
  if (figure.height) return {figure.width, *figure.height};
  return NaturalSize(figure, figure.width);
}

std::string RenderFigure(const Figure& figure, PictureFormat format, FigureSize size, int dpi) {
  Check(size, dpi);
  switch (format) {
    case PictureFormat::kPng:
      return RenderPng(figure, size, dpi).toStdString();
    case PictureFormat::kSvg:
      return RenderSvg(figure, size).toStdString();
    case PictureFormat::kPdf:
      return RenderPdf(figure, size).toStdString();
  }
  throw std::runtime_error("unknown picture format");
}

void PaintFigure(const Figure& figure, FigureSize size, QPaintDevice& device, const QRectF& place) {
  const double perMm = device.logicalDpiX() / kMmPerInch;
  const QSizeF natural = Millimetres(size) * perMm;
  const double shrink =
      std::min({1.0, place.width() / natural.width(), place.height() / natural.height()});
  const double left = place.left() + (place.width() - natural.width() * shrink) / 2.0;
  Paint(figure, size, device, {left, place.top()}, shrink * perMm / kFigureUnitsPerMm);
}

}  // namespace quorvane
