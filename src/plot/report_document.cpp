#include "plot/report_document.h"

#include <qcustomplot.h>

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextTable>
#include <algorithm>

#include "base/number_column.h"
#include "plot/figure_export.h"
#include "plot/figure_page.h"

namespace quorvane {

namespace {

constexpr int kFigureType = QTextFormat::UserObject + 1;

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

// The cells of a column below the head.
std::vector<QTextTableCell> ColumnOf(const QTextTable& table, int column) {
  std::vector<QTextTableCell> cells;
  for (int row = table.format().headerRowCount(); row < table.rows(); ++row) {
    cells.push_back(table.cellAt(row, column));
  }
  return cells;
}

// Margins that put the decimal points of a column of numbers below each other.
void AlignPoints(const QTextTable& table, int column) {
  const std::vector<QTextTableCell> cells = ColumnOf(table, column);
  std::vector<std::string> texts;
  for (const QTextTableCell& cell : cells) {
    texts.push_back(cell.firstCursorPosition().block().text().toStdString());
  }
  if (!PlaceOfPoints({texts.begin(), texts.end()})) return;
  std::vector<double> widths;  // before the point; a margin is scaled as a font is
  for (std::size_t k = 0; k < cells.size(); ++k) {
    const QFontMetricsF metrics(cells[k].firstCursorPosition().charFormat().font());
    const std::string whole = texts[k].substr(0, PlaceOfPoint(texts[k]).value_or(0));
    widths.push_back(metrics.horizontalAdvance(QString::fromStdString(whole)));
  }
  const double widest = *std::max_element(widths.begin(), widths.end());
  for (std::size_t k = 0; k < cells.size(); ++k) {
    if (!PlaceOfPoint(texts[k])) continue;
    QTextBlockFormat format;
    format.setLeftMargin(widest - widths[k]);
    cells[k].firstCursorPosition().mergeBlockFormat(format);
  }
}

// Rules above and below the head and at the end, no grid; rows stay whole.
void StyleTable(QTextTable& table) {
  const QBrush rule(kReportGrey);
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
  QTextBlockFormat title;
  title.setBottomMargin(2.0);
  QTextCursor(table.firstCursorPosition().block().previous()).mergeBlockFormat(title);
  if (format.headerRowCount() == 0) return;
  for (int column = 0; column < table.columns(); ++column) AlignPoints(table, column);
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

// Whether a block makes no sense at the foot of a page: a heading, the title of a table, a figure
// without its caption.
bool LeadsOn(const QTextBlock& block) {
  if (!block.isValid() || InTable(block)) return false;
  return block.blockFormat().headingLevel() > 0 ||
         block.text().contains(QChar::ObjectReplacementCharacter) ||
         (block.next().isValid() && InTable(block.next()));
}

// The last block that should stand on the page of one that leads on: the next one, or the end of a
// short table.
QTextBlock EndOfLed(const QTextBlock& block) {
  constexpr int kShortTable = 24;
  const QTextTable* table = QTextCursor(block.next()).currentTable();
  if (table == nullptr || table->rows() > kShortTable) return block.next();
  return table->lastCursorPosition().block();
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
    if (pageOf(block) == pageOf(EndOfLed(block))) continue;
    QTextBlock first = block;
    while (LeadsOn(first.previous())) first = first.previous();
    QTextBlockFormat format;
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCursor(first).mergeBlockFormat(format);
    // Laid out anew from there alone, blocks behind tables keep places of before.
    document.markContentsDirty(0, document.characterCount());
  }
}

// Puts the figure in the place of its image.
void PlaceFigure(QTextDocument& document) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextCharFormat look = part.fragment().charFormat();
      if (!look.isImageFormat() || look.toImageFormat().name() != QLatin1String(kFigureImage)) {
        continue;
      }
      QTextCursor cursor(&document);
      cursor.setPosition(part.fragment().position());
      cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
      QTextCharFormat format;
      format.setObjectType(kFigureType);
      cursor.insertText(QString(QChar::ObjectReplacementCharacter), format);
      return;
    }
  }
}

}  // namespace

QFont ReportFont(double points) {
  QFont font;
  font.setFamilies({"Liberation Sans", "Arial", "Helvetica", "DejaVu Sans"});
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(points);
  return font;
}

FigureObject::FigureObject(const Figure& figure, QSizeF page, QCPPainter& painter)
    : figure_(figure), painter_(painter) {
  constexpr double kMmPerInch = 25.4;
  constexpr double kMostOfPage = 0.85;  // heading and caption need the rest
  const FigureSize natural = SizeOf(figure);
  millimetres_ = {natural.width, natural.height};
  size_ = millimetres_ * (painter.device()->logicalDpiX() / kMmPerInch);
  const QSizeF room(page.width(), page.height() * kMostOfPage);
  if (size_.width() > room.width() || size_.height() > room.height()) {
    size_.scale(room, Qt::KeepAspectRatio);
  }
}

QSizeF FigureObject::intrinsicSize(QTextDocument*, int, const QTextFormat&) {
  return size_;
}

void FigureObject::drawObject(QPainter*, const QRectF& place, QTextDocument*, int,
                              const QTextFormat&) {
  const QSizeF units = millimetres_ * kFigureUnitsPerMm;
  QCustomPlot plot;
  FillFigure(plot, figure_, millimetres_);
  painter_.save();
  painter_.translate(place.topLeft());
  painter_.scale(place.width() / units.width(), place.height() / units.height());
  plot.toPainter(&painter_, qRound(units.width()), qRound(units.height()));
  painter_.restore();
}

void LayOutReport(QTextDocument& document, const QString& body, FigureObject& figure,
                  QPaintDevice& device, QSizeF page) {
  document.documentLayout()->setPaintDevice(&device);
  document.documentLayout()->registerHandler(kFigureType, &figure);
  document.setDefaultFont(ReportFont(9.5));
  document.setDocumentMargin(0.0);
  QTextOption wrap = document.defaultTextOption();
  wrap.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  document.setDefaultTextOption(wrap);
  document.setDefaultStyleSheet(QStringLiteral(
      "h1{font-size:15pt}h2{font-size:12pt}p.origin{color:#555555}figcaption p{font-size:8.5pt}"
      "caption{font-weight:bold;font-size:8.5pt}th{text-align:left;font-weight:bold}td,th{font-"
      "size:8pt}"
      "th.name{font-weight:normal}"));
  document.setHtml(body);
  QTextCursor edit(&document);
  edit.beginEditBlock();  // one layout for all cells, not one for each
  PlaceFigure(document);
  StyleTables(*document.rootFrame());
  edit.endEditBlock();
  document.setPageSize(page);
  KeepTogether(document);
}

}  // namespace quorvane
