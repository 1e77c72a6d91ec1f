#include "plot/report_pages.h"

#include <qcustomplot.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBuffer>
#include <QPdfWriter>
#include <QTextDocument>
#include <algorithm>
#include <stdexcept>

#include "plot/chart_layout.h"
#include "plot/figure_export.h"
#include "plot/report_document.h"

namespace quorvane {

namespace {

// All lengths in points, the unit of the pages.
constexpr int kPointsPerInch = 72;
constexpr double kFoot = 22.0;         // height of the line at the foot
constexpr double kGap = 14.0;          // between charts
constexpr double kChartWidth = 600.0;  // of a chart's layout, in its own units
constexpr double kChartHeight = 540.0;
// The pages of one report.
class Pages {
 public:
  Pages(QPdfWriter& writer, QString title) : writer_(writer), title_(std::move(title)) {
    if (!painter_.begin(&writer)) throw std::runtime_error("the PDF cannot be painted");
    painter_.setModes(QCPPainter::pmVectorized | QCPPainter::pmNoCaching |
                      QCPPainter::pmNonCosmetic);
    area_ = QRectF(QPointF(), QSizeF(writer.pageLayout().paintRectPixels(kPointsPerInch).size()));
    area_.setHeight(area_.height() - kFoot);
  }

  void AddText(const QString& body, const Figure& figure) {
    QTextDocument document;
    FigureObject object(figure, area_.size(), painter_);
    LayOutReport(document, body, object, writer_, area_.size());
    const int pages = document.pageCount();
    for (int k = 0; k < pages; ++k) {
      Begin();
      painter_.save();
      painter_.translate(0.0, -k * area_.height());
      QAbstractTextDocumentLayout::PaintContext context;
      context.clip = area_.translated(0.0, k * area_.height());
      context.palette.setColor(QPalette::Text, Qt::black);
      painter_.setClipRect(context.clip);
      document.documentLayout()->draw(&painter_, context);
      painter_.restore();
    }
  }

  void AddCharts(const std::vector<Chart>& charts) {
    const int columns = charts.size() > 2 ? 2 : 1;
    const double width = (area_.width() - kGap * (columns - 1)) / columns;
    const double height = std::min(width * kChartHeight / kChartWidth, (area_.height() - kGap) / 2);
    const int rows = static_cast<int>((area_.height() + kGap) / (height + kGap));
    int place = 0;  // on the page
    for (const Chart& chart : charts) {
      if (place == 0) Begin();
      const QPointF corner(place % columns * (width + kGap), place / columns * (height + kGap));
      Draw(chart, {corner, QSizeF(width, height)});
      place = (place + 1) % (columns * rows);
    }
  }

  void Finish() {
    if (!painter_.end()) throw std::runtime_error("the PDF cannot be finished");
  }

 private:
  // A new page with its foot.
  void Begin() {
    if (number_ > 0 && !writer_.newPage()) throw std::runtime_error("the PDF takes no more pages");
    ++number_;
    painter_.save();
    painter_.setFont(ReportFont(7.5));
    painter_.setPen(kReportGrey);
    const QRectF foot(0.0, area_.height(), area_.width(), kFoot);
    const QString number = QString::number(number_);
    painter_.drawText(foot, Qt::AlignRight | Qt::AlignBottom, number);
    const QFontMetricsF metrics(painter_.font(), &writer_);
    const double room = foot.width() - metrics.horizontalAdvance(number) - kGap;
    painter_.drawText(foot, Qt::AlignLeft | Qt::AlignBottom,
                      metrics.elidedText(title_, Qt::ElideRight, room));
    painter_.restore();
  }

  void Draw(const Chart& chart, const QRectF& place) {
    QCustomPlot plot;
    FillPlot(plot, chart);
    const double scale = place.width() / kChartWidth;
    painter_.save();
    painter_.translate(place.topLeft());
    painter_.scale(scale, scale);
    plot.toPainter(&painter_, static_cast<int>(kChartWidth),
                   static_cast<int>(place.height() / scale));
    painter_.restore();
  }

  QPdfWriter& writer_;
  QString title_;
  QCPPainter painter_;
  QRectF area_;  // of a page, without its foot
  int number_ = 0;
};

}  // namespace

std::string RenderReportChart(const Chart& chart) {
  return RenderChart(chart, PictureFormat::kSvg, kReportChart);
}

std::string RenderReportFigure(const Figure& figure) {
  return RenderFigure(figure, PictureFormat::kSvg, SizeOf(figure));
}

std::string RenderReportPages(const std::string& title, const std::string& body,
                              const Figure& figure, const std::vector<Chart>& charts) {
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    throw std::runtime_error("a report cannot be drawn before the drawing system is started");
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly)) throw std::runtime_error("no buffer for the PDF");
  {
    QPdfWriter writer(&buffer);
    writer.setCreator(QStringLiteral("Quorvane"));
    writer.setTitle(QString::fromStdString(title));
    writer.setResolution(kPointsPerInch);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(16, 16, 16, 12), QPageLayout::Millimeter);
    Pages pages(writer, QString::fromStdString(title));
    pages.AddText(QString::fromStdString(body), figure);
    pages.AddCharts(charts);
    pages.Finish();
  }
  return bytes.toStdString();
}

}  // namespace quorvane
