#include "windows/print/text_printing.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "windows/log/log_edit.h"
#include "windows/log/picture_object.h"
#include "windows/log/rich_text_document.h"
#include "windows/print/printing.h"

namespace quorvane {

namespace {

constexpr double kMargin = 3.0;  // points; without any, a sliver of the next page shows

// `document` becomes a copy of what is to be printed, laid out for `device`.
void FillDocument(QTextDocument& document, const QTextEdit& box, bool selectionOnly,
                  QPagedPaintDevice& device) {
  PictureObject::Install(document);
  document.setDefaultFont(box.document()->defaultFont());
  document.setDocumentMargin(kMargin);
  document.documentLayout()->setPaintDevice(&device);
  ShowRichText(selectionOnly ? SelectedRichText(box.textCursor()) : RichTextOf(*box.document()),
               document);
}

// Width of the text before it must be broken: its widest line, but no more than a report needs.
double WidthOf(const QTextDocument& document, QPagedPaintDevice& device) {
  const QFontMetricsF metrics(document.defaultFont(), &device);
  return std::min(std::ceil(document.idealWidth()),
                  metrics.horizontalAdvance('0') * (kTableColumns + 2));
}

void PaintPage(QTextDocument& document, QPainter& painter, const QRectF& page) {
  QAbstractTextDocumentLayout::PaintContext context;
  context.clip = page;
  context.palette.setColor(QPalette::Text, Qt::black);
  painter.setClipRect(page);
  document.documentLayout()->draw(&painter, context);
}

void PaintText(const QTextEdit& box, bool selectionOnly, QPagedPaintDevice& device) {
  QPainter painter;
  if (!painter.begin(&device)) throw std::runtime_error("the printer cannot be painted on");
  QTextDocument document;
  FillDocument(document, box, selectionOnly, device);
  const QSizeF area = PrintableArea(device).size();
  const double shrink = std::max(1.0, WidthOf(document, device) / area.width());
  const QSizeF page = area * shrink;
  document.setPageSize(page);
  const int pages = document.pageCount();
  for (int k = 0; k < pages; ++k) {
    if (k > 0 && !device.newPage()) throw std::runtime_error("the printer takes no further page");
    painter.save();
    painter.scale(1.0 / shrink, 1.0 / shrink);
    painter.translate(0.0, -k * page.height());
    PaintPage(document, painter, {QPointF(0.0, k * page.height()), page});
    painter.restore();
  }
  if (!painter.end()) throw std::runtime_error("the last page cannot be finished");
}

}  // namespace

PrintJob TextJob(const QTextEdit& box, const QString& title) {
  return {.title = title,
          .selection = box.textCursor().hasSelection(),
          .paint = [&box](QPagedPaintDevice& device, bool selectionOnly) {
            PaintText(box, selectionOnly, device);
          }};
}

}  // namespace quorvane
