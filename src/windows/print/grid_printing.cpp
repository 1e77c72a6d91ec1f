#include "windows/print/grid_printing.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>
#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <vector>

#include "windows/print/printing.h"

namespace quorvane {

namespace {

constexpr double kTextPoints = 10.0;
constexpr double kTitlePoints = 13.0;
constexpr double kFootPoints = 8.0;
const QColor kHeadColor(235, 235, 235);
const QColor kLineColor(150, 150, 150);

struct Span {
  int first = 0;
  int last = 0;  // one past
};

// A grid laid out for one device; lengths in its units.
class GridPages {
 public:
  GridPages(const PrintedGrid& grid, const GridPrintOptions& options,
            const QPagedPaintDevice& device)
      : grid_(grid), device_(device), area_(PrintableArea(device)) {
    SetScale(options.scale / 100.0);
    // Widths follow the size of the text closely, not exactly.
    for (int round = 0; options.fitWidth && Width() > area_.width() && round < 5; ++round) {
      SetScale(scale_ * std::min(0.99, area_.width() / Width()));
    }
    SplitColumns();
    SplitRows();
  }

  int Count() const { return static_cast<int>(columns_.size() * rows_.size()); }

  void Paint(QPainter& painter, int page) const {
    const Span rows = rows_[static_cast<std::size_t>(page) % rows_.size()];
    const Span columns = columns_[static_cast<std::size_t>(page) / rows_.size()];
    painter.save();
    painter.setClipRect(area_);
    PaintTitle(painter);
    PaintCells(painter, rows, columns);
    PaintFoot(painter, page);
    painter.restore();
  }

 private:
  QFont FontOf(double points, bool bold = false) const {
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
  }

  QString HeaderText(int section, Qt::Orientation orientation) const {
    return grid_.cells->headerData(section, orientation).toString();
  }

  void SetScale(double scale) {
    scale_ = scale;
    const QFontMetricsF plain(FontOf(kTextPoints * scale), &device_);
    const QFontMetricsF bold(FontOf(kTextPoints * scale, true), &device_);
    padding_ = plain.horizontalAdvance('0') * 0.6;
    rowHeight_ = plain.height() * 1.35;
    headWidth_ = 0.0;
    widths_.clear();
    for (int row = 0; row < grid_.cells->rowCount(); ++row) {
      headWidth_ = std::max(headWidth_, bold.horizontalAdvance(HeaderText(row, Qt::Vertical)));
    }
    headWidth_ += 2.0 * padding_;
    for (int column = 0; column < grid_.cells->columnCount(); ++column) {
      double width = bold.horizontalAdvance(HeaderText(column, Qt::Horizontal));
      for (int row = 0; row < grid_.cells->rowCount(); ++row) {
        width = std::max(width, plain.horizontalAdvance(
                                    grid_.cells->index(row, column).data().toString().trimmed()));
      }
      widths_.push_back(width + 2.0 * padding_);
    }
  }

  double Width() const { return std::accumulate(widths_.begin(), widths_.end(), headWidth_); }

  void SplitColumns() {
    const int count = static_cast<int>(widths_.size());
    double used = headWidth_;
    Span span;
    for (int column = 0; column < count; ++column) {
      const double width = widths_[static_cast<std::size_t>(column)];
      if (column > span.first && used + width > area_.width()) {
        columns_.push_back(span);
        span.first = column;
        used = headWidth_;
      }
      used += width;
      span.last = column + 1;
    }
    columns_.push_back(span);
  }

  void SplitRows() {
    const double top = TitleHeight() + rowHeight_;
    const int fitting =
        std::max(1, static_cast<int>((area_.height() - FootHeight() - top) / rowHeight_));
    const int count = grid_.cells->rowCount();
    int first = 0;
    do {
      const int last = std::min(count, first + fitting);
      rows_.push_back({first, last});
      first = last;
    } while (first < count);
  }

  double TitleHeight() const {
    return grid_.title.isEmpty()
               ? 0.0
               : 1.6 * QFontMetricsF(FontOf(kTitlePoints, true), &device_).height();
  }
  double FootHeight() const { return 1.6 * QFontMetricsF(FontOf(kFootPoints), &device_).height(); }

  void PaintTitle(QPainter& painter) const {
    painter.setPen(Qt::black);
    painter.setFont(FontOf(kTitlePoints, true));
    painter.drawText(area_, Qt::AlignTop | Qt::AlignLeft | Qt::TextSingleLine, grid_.title);
  }

  void PaintFoot(QPainter& painter, int page) const {
    painter.setPen(Qt::black);
    painter.setFont(FontOf(kFootPoints));
    painter.drawText(area_, Qt::AlignBottom | Qt::AlignHCenter | Qt::TextSingleLine,
                     QObject::tr("Page %1 of %2").arg(page + 1).arg(Count()));
  }

  void PaintCells(QPainter& painter, Span rows, Span columns) const {
    double top = TitleHeight();
    double left = headWidth_;
    PaintHead(painter, {0.0, top, headWidth_, rowHeight_}, -1, Qt::Horizontal);
    for (int column = columns.first; column < columns.last; ++column) {
      const double width = widths_[static_cast<std::size_t>(column)];
      PaintHead(painter, {left, top, width, rowHeight_}, column, Qt::Horizontal);
      left += width;
    }
    for (int row = rows.first; row < rows.last; ++row) {
      top += rowHeight_;
      left = headWidth_;
      PaintHead(painter, {0.0, top, headWidth_, rowHeight_}, row, Qt::Vertical);
      for (int column = columns.first; column < columns.last; ++column) {
        const double width = widths_[static_cast<std::size_t>(column)];
        PaintCell(painter, {left, top, width, rowHeight_}, grid_.cells->index(row, column));
        left += width;
      }
    }
  }

  // The header of a row or column; of neither for section -1.
  void PaintHead(QPainter& painter, const QRectF& place, int section,
                 Qt::Orientation orientation) const {
    const QVariant brush = grid_.cells->headerData(section, orientation, Qt::BackgroundRole);
    const QVariant ink = grid_.cells->headerData(section, orientation, Qt::ForegroundRole);
    Frame(painter, place, brush.isValid() ? brush.value<QBrush>() : QBrush(kHeadColor));
    if (section < 0) return;
    painter.setFont(FontOf(kTextPoints * scale_, true));
    Write(painter, place, orientation == Qt::Horizontal ? Qt::AlignCenter : Qt::AlignLeft,
          brush.isValid() ? ink : QVariant(), HeaderText(section, orientation));
  }

  void PaintCell(QPainter& painter, const QRectF& place, const QModelIndex& cell) const {
    const QVariant brush = cell.data(Qt::BackgroundRole);
    Frame(painter, place, brush.isValid() ? brush.value<QBrush>() : QBrush(Qt::white));
    painter.setFont(FontOf(kTextPoints * scale_));
    const QVariant alignment = cell.data(Qt::TextAlignmentRole);
    Write(painter, place,
          alignment.isValid() ? Qt::Alignment(alignment.toInt()) : Qt::Alignment(Qt::AlignLeft),
          brush.isValid() ? cell.data(Qt::ForegroundRole) : QVariant(),
          cell.data().toString().trimmed());
  }

  void Frame(QPainter& painter, const QRectF& place, const QBrush& brush) const {
    painter.fillRect(place, brush);
    painter.setPen(QPen(kLineColor, padding_ / 8.0));
    painter.drawRect(place);
  }

  // An ink belongs to a cell's own background; on white it is black.
  void Write(QPainter& painter, const QRectF& place, Qt::Alignment alignment, const QVariant& ink,
             const QString& text) const {
    painter.setPen(ink.isValid() ? ink.value<QBrush>().color() : QColor(Qt::black));
    const QRectF inner = place.adjusted(padding_, 0.0, -padding_, 0.0);
    painter.drawText(inner, int(alignment & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter, text);
  }

  const PrintedGrid& grid_;
  const QPagedPaintDevice& device_;
  QRectF area_;
  double scale_ = 1.0;
  double padding_ = 0.0;  // beside a text
  double rowHeight_ = 0.0;
  double headWidth_ = 0.0;  // of the row headers
  std::vector<double> widths_;
  std::vector<Span> columns_;
  std::vector<Span> rows_;
};

void PaintGrid(const PrintedGrid& grid, const GridPrintOptions& options,
               QPagedPaintDevice& device) {
  QPainter painter;
  if (!painter.begin(&device)) throw std::runtime_error("the printer cannot be painted on");
  const GridPages pages(grid, options, device);
  const int last = std::clamp(options.toPage, 1, pages.Count());
  const int first = std::clamp(options.fromPage, 1, last);
  for (int page = first; page <= last; ++page) {
    if (page > first && !device.newPage()) {
      throw std::runtime_error("the printer takes no further page");
    }
    pages.Paint(painter, page - 1);
  }
  if (!painter.end()) throw std::runtime_error("the last page cannot be finished");
}

}  // namespace

PrintJob GridJob(const PrintedGrid& grid, const GridPrintOptions& options) {
  return {.title = grid.title, .paint = [grid, options](QPagedPaintDevice& device, bool) {
            PaintGrid(grid, options, device);
          }};
}

int CountGridPages(const PrintedGrid& grid, const GridPrintOptions& options,
                   const QPagedPaintDevice& device) {
  return GridPages(grid, options, device).Count();
}

}  // namespace quorvane
