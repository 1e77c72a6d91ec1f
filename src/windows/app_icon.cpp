#include "windows/app_icon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <cmath>

namespace {

// A profile at equilibrium: concentration rising towards the base.
QPixmap Draw(int side) {
  QPixmap pixmap(side, side);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(side / 64.0, side / 64.0);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 90, 140));
  painter.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);
  QPainterPath curve(QPointF(12, 51));
  for (int x = 12; x <= 52; x += 2) curve.lineTo(x, 52 - std::exp((x - 12) / 10.6));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(Qt::white, 5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(curve);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(240, 190, 60));
  for (const int x : {18, 30, 40, 47}) {
    painter.drawEllipse(QPointF(x, 47 - std::exp((x - 12) / 10.6)), 3.5, 3.5);
  }
  return pixmap;
}

}  // namespace

QIcon AppIcon() {
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) icon.addPixmap(Draw(side));
  return icon;
}
