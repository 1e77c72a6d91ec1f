#include "plot/report_pages.h"

#include <qcustomplot.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBuffer>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextTable>
#include <algorithm>
#include <stdexcept>

#include "plot/chart_layout.h"

namespace quorvane {

namespace {

// All lengths in points, the unit of the pages.
constexpr int kPointsPerInch = 72;
constexpr double kFoot = 22.0;         // height of the line at the foot
constexpr double kGap = 14.0;          // between charts
constexpr double kChartWidth = 600.0;  // of a chart's layout, in its own units
constexpr double kChartHeight = 540.0;
const QColor kGrey(0x55, 0x55, 0x55);  // rules and the foot

QFont ReportFont(double points) {
  QFont font;
  font.setFamilies({"Liberation Sans", "Arial", "Helvetica", "DejaVu Sans"});
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(points);
  return font;
}

// A number or short name is not broken for the sake of other columns.
void KeepWhole(const QTextTableCell& cell) {
  constexpr qsizetype kLongest = 32;
  QTextCursor cursor = cell.firstCursorPosition();
  const QString text = cursor.block().text();
  if (text.size() > kLongest || text.contains(' ')) return;
  QTextBlockFormat format;
  format.setNonBreakableLines(true);
  cursor.mergeBlockFormat(format);
}

// Rules above and below the head and at the end, no grid; rows stay whole.
void StyleTable(QTextTable& table) {
  const QBrush rule(kGrey);
  QTextTableFormat format = table.format();
  format.setBorder(0);
  format.setBorderCollapse(true);
  format.setCellPadding(2.5);
  format.setBottomMargin(9.0);
  format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
  table.setFormat(format);
  const int rows = table.rows();
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < table.columns(); ++column) {
      QTextTableCell cell = table.cellAt(row, column);
      QTextTableCellFormat look = cell.format().toTableCellFormat();
      const bool head = row < format.headerRowCount();
      if (row == 0) {
        look.setTopBorder(1.0);
        look.setTopBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        look.setTopBorderBrush(rule);
      }
      if (head || row + 1 == rows) {
        look.setBottomBorder(0.6);
        look.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        look.setBottomBorderBrush(rule);
      }
      cell.setFormat(look);
      KeepWhole(cell);
    }
  }
}

void StyleTables(QTextFrame& frame) {
  for (QTextFrame* child : frame.childFrames()) {
    if (auto* table = qobject_cast<QTextTable*>(child)) StyleTable(*table);
    StyleTables(*child);
  }
}

bool InTable(const QTextBlock& block) {
  return QTextCursor(block).currentTable() != nullptr;
}

// Whether a block makes no sense at the foot of a page: a heading, or the title of a table.
bool LeadsOn(const QTextBlock& block) {
  if (!block.isValid() || InTable(block)) return false;
  return block.blockFormat().headingLevel() > 0 ||
         (block.next().isValid() && InTable(block.next()));
}

// Moves headings and titles of tables to the page on which begins what they lead to.
void KeepTogether(QTextDocument& document) {
  const auto pageOf = [&](const QTextBlock& block) {
    // A line that does not fit goes to the next page inside its block, whose rectangle stays here.
    const QRectF place = document.documentLayout()->blockBoundingRect(block);
    const QTextLayout& lines = *block.layout();
    const double first = lines.lineCount() > 0 ? lines.lineAt(0).y() : 0.0;
    return static_cast<int>((place.top() + first) / document.pageSize().height());
  };
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (!LeadsOn(block) || !block.next().isValid()) continue;
    if (pageOf(block) == pageOf(block.next())) continue;
    QTextBlock first = block;
    while (LeadsOn(first.previous())) first = first.previous();
    QTextBlockFormat format;
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCursor(first).mergeBlockFormat(format);
  }
}

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

  void AddText(const QString& body) {
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&writer_);
    document.setDefaultFont(ReportFont(9.5));
    document.setDocumentMargin(0.0);
    QTextOption wrap = document.defaultTextOption();
    wrap.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document.setDefaultTextOption(wrap);
    document.setDefaultStyleSheet(QStringLiteral(
        "h1{font-size:15pt}h2{font-size:12pt}p.origin{color:#555555}"
        "caption{font-weight:bold}th{text-align:left;font-weight:bold}td,th{font-size:8pt}"));
    document.setHtml(body);
    QTextCursor edit(&document);
    edit.beginEditBlock();  // one layout for all cells, not one for each
    StyleTables(*document.rootFrame());
    edit.endEditBlock();
    document.setPageSize(area_.size());
    KeepTogether(document);
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
    painter_.setPen(kGrey);
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

std::string RenderReportPages(const std::string& title, const std::string& body,
                              const std::vector<Chart>& charts) {
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
    pages.AddText(QString::fromStdString(body));
    pages.AddCharts(charts);
    pages.Finish();
  }
  return bytes.toStdString();
}

}  // namespace quorvane
