// The text of a report laid out on pages. For the sources of plot/ only.
#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QTextObjectInterface>

#include "base/figure.h"

class QCPPainter;
class QPaintDevice;
class QTextDocument;

namespace quorvane {

inline const QColor kReportGrey(0x55, 0x55, 0x55);  // rules and the foot

QFont ReportFont(double points);

// A figure as a letter of a document, as large as on paper unless a page has no room for that.
class FigureObject : public QObject, public QTextObjectInterface {
  Q_OBJECT
  Q_INTERFACES(QTextObjectInterface)
 public:
  // Of a page of `page`, in the units of `painter`'s device, which draws the document. Both
  // `figure` and `painter` outlive this.
  FigureObject(const Figure& figure, QSizeF page, QCPPainter& painter);

  QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;
  void drawObject(QPainter* painter, const QRectF& place, QTextDocument* document, int position,
                  const QTextFormat& format) override;

 private:
  const Figure& figure_;
  QCPPainter& painter_;
  QSizeF millimetres_;
  QSizeF size_;
};

// Fills `document` with `body`, elements of HTML, on pages of `page` of `device`. An image of
// kFigureImage becomes `figure`, which outlives the document. Numbers of a column stand with their
// decimal points below each other; nothing that leads on, as the title of a table, is left behind
// at the foot of a page.
void LayOutReport(QTextDocument& document, const QString& body, FigureObject& figure,
                  QPaintDevice& device, QSizeF page);

}  // namespace quorvane
