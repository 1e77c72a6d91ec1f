#include "plot/chart_export.h"

#include <qcustomplot.h>

#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "plot/chart_layout.h"
#include "plot/png_bytes.h"
#include "plot/svg_device.h"

namespace quorvane {

namespace {

constexpr int kLeastSide = 200;
constexpr int kGreatestSide = 10000;
constexpr double kLayoutWidth = 600.0;
constexpr double kLayoutHeight = 540.0;
constexpr double kScreenDotsPerMeter = 96.0 / 0.0254;

int Enlargement(PictureSize size) {
  const double factor = std::min(size.width / kLayoutWidth, size.height / kLayoutHeight);
  return std::max(1, static_cast<int>(std::lround(factor)));
}

// Draws `chart` on `device`, whose own units are those of `size`, `factor` of them a layout unit.
void Paint(const Chart& chart, QPaintDevice& device, PictureSize size, int factor) {
  QCPPainter painter;
  if (!painter.begin(&device)) throw std::runtime_error("the picture cannot be painted");
  painter.setModes(QCPPainter::pmVectorized | QCPPainter::pmNoCaching | QCPPainter::pmNonCosmetic);
  painter.fillRect(0, 0, size.width, size.height, Qt::white);
  painter.scale(factor, factor);
  QCustomPlot plot;
  FillPlot(plot, chart);
  const PictureSize layout = LayoutSize(size);
  plot.toPainter(&painter, layout.width, layout.height);
  if (!painter.end()) throw std::runtime_error("the picture cannot be finished");
}

QByteArray RenderPng(const Chart& chart, PictureSize size) {
  QImage image(size.width, size.height, QImage::Format_RGB32);
  if (image.isNull()) throw std::runtime_error("not enough memory for the picture");
  const int factor = Enlargement(size);
  Paint(chart, image, size, factor);
  // Programs that place the picture by its resolution then show the layout's natural size.
  return PngBytes(std::move(image), kScreenDotsPerMeter * factor);
}

QByteArray RenderSvg(const Chart& chart, PictureSize size) {
  SvgDevice device(QSize(size.width, size.height), QString::fromStdString(chart.title));
  Paint(chart, device, size, Enlargement(size));
  return device.Document();
}

QByteArray RenderPdf(const Chart& chart, PictureSize size) {
  constexpr int kPointsPerInch = 72;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly)) throw std::runtime_error("no buffer for the PDF");
  {
    QPdfWriter writer(&buffer);
    writer.setCreator(QStringLiteral("Quorvane"));
    writer.setTitle(QString::fromStdString(chart.title));
    writer.setResolution(kPointsPerInch);
    writer.setPageSize(QPageSize(QSizeF(size.width, size.height), QPageSize::Point, QString(),
                                 QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    Paint(chart, writer, size, Enlargement(size));
  }
  return bytes;
}

void CheckSize(PictureSize size) {
  const auto [least, greatest] = std::minmax(size.width, size.height);
  if (least >= kLeastSide && greatest <= kGreatestSide) return;
  throw std::runtime_error("picture size " + std::to_string(size.width) + " x " +
                           std::to_string(size.height) + ": each side must be " +
                           std::to_string(kLeastSide) + " to " + std::to_string(kGreatestSide));
}

}  // namespace

PictureSize LayoutSize(PictureSize size) {
  const int factor = Enlargement(size);
  return {size.width / factor, size.height / factor};
}

std::string RenderChart(const Chart& chart, PictureFormat format, PictureSize size) {
  CheckSize(size);
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    throw std::runtime_error("a chart cannot be drawn before the drawing system is started");
  }
  switch (format) {
    case PictureFormat::kPng:
      return RenderPng(chart, size).toStdString();
    case PictureFormat::kSvg:
      return RenderSvg(chart, size).toStdString();
    case PictureFormat::kPdf:
      return RenderPdf(chart, size).toStdString();
  }
  throw std::runtime_error("unknown picture format");
}

}  // namespace quorvane
