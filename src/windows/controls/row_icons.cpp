#include "windows/controls/row_icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace quorvane {

namespace {

constexpr double kUnits = 16.0;  // the paths stand on a square of 16 units
constexpr double kPenWidth = 1.6;
constexpr float kDisabledAlpha = 0.35F;

QPainterPath PathOf(RowGlyph glyph) {
  QPainterPath path;
  const auto stroke = [&path](std::initializer_list<QPointF> points) {
    path.moveTo(*points.begin());
    for (const QPointF& point : points) path.lineTo(point);
  };
  switch (glyph) {
    case RowGlyph::kPencil:
      stroke({{2, 14}, {3, 10.5}, {11, 2.5}, {13.5, 5}, {5.5, 13}, {2, 14}});
      stroke({{9, 4.5}, {11.5, 7}});
      break;
    case RowGlyph::kTick:
      stroke({{2.5, 8.5}, {6.5, 12.5}, {13.5, 3.5}});
      break;
    case RowGlyph::kLines:
      path.addRoundedRect(QRectF(2, 2, 12, 12), 1.5, 1.5);
      for (const double y : {5.5, 8.0, 10.5}) stroke({{4.5, y}, {11.5, y}});
      break;
    case RowGlyph::kSubtract:
      stroke({{1, 8}, {6, 8}});
      path.moveTo(7, 13.5);
      path.cubicTo(11.5, 13, 13.5, 9, 14.5, 2.5);
      break;
    case RowGlyph::kCross:
      stroke({{3.5, 3.5}, {12.5, 12.5}});
      stroke({{12.5, 3.5}, {3.5, 12.5}});
      break;
  }
  return path;
}

// Asks for the palette each time it paints, so that a change of theme needs no new icons.
class GlyphEngine : public QIconEngine {
 public:
  GlyphEngine(RowGlyph glyph, const QColor& color) : glyph_(glyph), color_(color) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const bool disabled = mode == QIcon::Disabled;
    QColor color = color_.isValid() && !disabled
                       ? color_
                       : QGuiApplication::palette().color(QPalette::ButtonText);
    if (disabled) color.setAlphaF(kDisabledAlpha);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / kUnits, rect.height() / kUnits);
    painter->setPen(QPen(color, kPenWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(PathOf(glyph_));
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    if (size.isEmpty()) return pixmap;
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new GlyphEngine(*this); }

 private:
  RowGlyph glyph_;
  QColor color_;
};

}  // namespace

QIcon RowIcon(RowGlyph glyph, const QColor& color) {
  return QIcon(new GlyphEngine(glyph, color));
}

}  // namespace quorvane
