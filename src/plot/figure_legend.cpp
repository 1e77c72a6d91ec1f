#include "plot/figure_legend.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "plot/chart_color.h"
#include "plot/chart_font.h"
#include "plot/figure_style.h"

namespace quorvane {

namespace {

constexpr int kRow = 38;         // from one line of the legend to the next
constexpr int kSample = 72;      // of the curve; the mark stands in its middle
constexpr int kSampleRoom = 84;  // sample and the gap before the text
constexpr int kColumnGap = 40;

// Turned outlines, sized so that a scatter style of size 6 shows them as large as a circle.
QPainterPath StarPath() {
  constexpr int kCorners = 10;
  constexpr double kOuter = 3.8;
  constexpr double kInner = 1.7;
  QPolygonF corners;
  for (int k = 0; k < kCorners; ++k) {
    const double angle = std::numbers::pi * (2.0 * k / kCorners - 0.5);
    const double radius = k % 2 == 0 ? kOuter : kInner;
    corners << QPointF(radius * std::cos(angle), radius * std::sin(angle));
  }
  QPainterPath path;
  path.addPolygon(corners);
  path.closeSubpath();
  return path;
}

QPainterPath SideTriangle(double direction) {
  QPainterPath path;
  path.addPolygon(
      QPolygonF({{3.2 * direction, 0.0}, {-2.4 * direction, -3.0}, {-2.4 * direction, 3.0}}));
  path.closeSubpath();
  return path;
}

QCPScatterStyle::ScatterShape ShapeOf(FigureSymbol symbol) {
  switch (symbol) {
    case FigureSymbol::kSquare:
      return QCPScatterStyle::ssSquare;
    case FigureSymbol::kTriangle:
      return QCPScatterStyle::ssTriangle;
    case FigureSymbol::kDownTriangle:
      return QCPScatterStyle::ssTriangleInverted;
    case FigureSymbol::kDiamond:
      return QCPScatterStyle::ssDiamond;
    case FigureSymbol::kStar:
    case FigureSymbol::kLeftTriangle:
    case FigureSymbol::kRightTriangle:
      return QCPScatterStyle::ssCustom;
    case FigureSymbol::kCircle:
      break;
  }
  return QCPScatterStyle::ssCircle;
}

QColor Mixed(const QColor& color, const QColor& other, float share) {
  const auto mix = [&](float one, float two) { return one + share * (two - one); };
  return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                          mix(color.blueF(), other.blueF()));
}

// Marks of equal area look equally heavy.
double Share(FigureSymbol symbol) {
  switch (symbol) {
    case FigureSymbol::kSquare:
      return 0.88;
    case FigureSymbol::kTriangle:
    case FigureSymbol::kDownTriangle:
    case FigureSymbol::kDiamond:
      return 1.2;
    default:
      return 1.0;
  }
}

}  // namespace

QCPScatterStyle FigureMark(const FigureLook& look, double size, bool hollow) {
  constexpr float kPale = 0.45F;  // curves stay visible on many marks
  const QColor color = ToQColor(look.color);
  const QColor inside = hollow ? QColor(Qt::white) : Mixed(color, QColor(Qt::white), kPale);
  QCPScatterStyle style(ShapeOf(look.symbol), QPen(color, kFigureMarkWidth), QBrush(inside),
                        size * Share(look.symbol));
  if (look.symbol == FigureSymbol::kStar) style.setCustomPath(StarPath());
  if (look.symbol == FigureSymbol::kLeftTriangle) style.setCustomPath(SideTriangle(-1.0));
  if (look.symbol == FigureSymbol::kRightTriangle) style.setCustomPath(SideTriangle(1.0));
  return style;
}

QPen FigurePen(const FigureLook& look, bool thin) {
  constexpr float kShade = 0.5F;
  QPen pen(Mixed(ToQColor(look.color), Qt::black, kShade),
           thin ? kFigureSpeciesWidth : kFigureCurveWidth);
  pen.setCapStyle(Qt::FlatCap);
  pen.setJoinStyle(Qt::BevelJoin);
  switch (look.stroke) {
    case FigureStroke::kSolid:
      break;
    case FigureStroke::kDashed:
      pen.setDashPattern({5.0, 2.0});
      break;
    case FigureStroke::kDotted:
      pen.setDashPattern({1.5, 1.5});
      break;
    case FigureStroke::kDashDot:
      pen.setDashPattern({5.0, 1.7, 1.3, 1.7});
      break;
  }
  return pen;
}

FigureLegend::FigureLegend(QCustomPlot* plot, std::vector<FigureKey> keys, int width)
    : QCPLayoutElement(plot), keys_(std::move(keys)) {
  const QFontMetricsF metrics(ChartFont(kFigureLabel));
  for (const FigureKey& key : keys_) {
    const double text = metrics.horizontalAdvance(QString::fromStdString(key.text));
    entryWidth_ = std::max(entryWidth_, int(std::ceil(text)) + kSampleRoom);
  }
  columns_ = std::clamp((width + kColumnGap) / (entryWidth_ + kColumnGap), 1,
                        std::max(int(keys_.size()), 1));
  // Rows of equal length: 3 + 3 instead of 4 + 2.
  const int rows = (int(keys_.size()) + columns_ - 1) / columns_;
  if (rows > 0) columns_ = (int(keys_.size()) + rows - 1) / rows;
}

int FigureLegend::Height() const {
  const int count = int(keys_.size());
  return count == 0 ? 1 : (count + columns_ - 1) / columns_ * kRow;
}

void FigureLegend::draw(QCPPainter* painter) {
  const QFont font = ChartFont(kFigureLabel);
  const QFontMetricsF metrics(font);
  const int step = std::min(entryWidth_ + kColumnGap, rect().width() / columns_);
  const int whole = step * columns_ - kColumnGap;
  const double left = rect().left() + std::max(rect().width() - whole, 0) / 2.0;
  painter->setFont(font);
  for (std::size_t k = 0; k < keys_.size(); ++k) {
    const FigureKey& key = keys_[k];
    const double x = left + int(k) % columns_ * step;
    const int row = int(k) / columns_;
    const double y = rect().top() + (row + 0.5) * kRow;
    if (key.symbol) {
      FigureMark(key.look, kFigureKeyMark, false).applyTo(painter, QPen());
      FigureMark(key.look, kFigureKeyMark, false).drawShape(painter, x + kSample / 2.0, y);
    }
    if (key.line) {
      painter->setPen(FigurePen(key.look, key.thin));
      painter->drawLine(QLineF(x, y, x + kSample, y));
    }
    painter->setPen(Qt::black);
    const QString text =
        metrics.elidedText(QString::fromStdString(key.text), Qt::ElideRight, step - kSampleRoom);
    painter->drawText(QPointF(x + kSampleRoom, y + (metrics.ascent() - metrics.descent()) / 2),
                      text);
  }
}

}  // namespace quorvane
