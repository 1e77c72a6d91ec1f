#include "plot/title_element.h"

#include <algorithm>
#include <utility>

#include "plot/chart_font.h"

namespace quorvane {

namespace {

double Inside(double value, double low, double high) {
  return low < high ? std::clamp(value, low, high) : (low + high) / 2;
}

}  // namespace

TitleElement::TitleElement(QCustomPlot* plot, QString text, int pixels, Qt::Orientation orientation,
                           const QCPLayoutElement* centre, int leastPixels)
    : QCPLayoutElement(plot),
      text_(std::move(text)),
      pixels_(pixels),
      orientation_(orientation),
      centre_(centre),
      leastPixels_(leastPixels) {}

void TitleElement::draw(QCPPainter* painter) {
  const bool upwards = orientation_ == Qt::Vertical;
  const QRect axes = centre_->rect();
  const int room = upwards ? rect().height() : rect().width();
  QFont font = ChartFont(pixels_);
  while (QFontMetricsF(font).horizontalAdvance(text_) > room && font.pixelSize() > leastPixels_) {
    font.setPixelSize(font.pixelSize() - 1);
  }
  const QFontMetricsF metrics(font);
  const QString text = metrics.elidedText(text_, Qt::ElideRight, room);
  const double width = metrics.horizontalAdvance(text);
  QPointF middle = QRectF(axes).center();
  if (upwards) {
    middle.setX(QRectF(rect()).center().x());
    middle.setY(Inside(middle.y(), rect().top() + width / 2, rect().bottom() - width / 2));
  } else {
    middle.setY(QRectF(rect()).center().y());
    middle.setX(Inside(middle.x(), rect().left() + width / 2, rect().right() - width / 2));
  }
  painter->save();
  painter->setFont(font);
  painter->setPen(Qt::black);
  painter->translate(middle);
  if (upwards) painter->rotate(-90);
  painter->drawText(QPointF(-width / 2, (metrics.ascent() - metrics.descent()) / 2), text);
  painter->restore();
}

QSize TitleElement::Extent(int along) const {
  const int across = text_.isEmpty() ? 1 : QFontMetrics(ChartFont(pixels_)).height();
  return orientation_ == Qt::Vertical ? QSize(across, along) : QSize(along, across);
}

}  // namespace quorvane
