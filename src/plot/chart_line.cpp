#include "plot/chart_line.h"

#include <cmath>

namespace quorvane {

namespace {

// The points of a line without those that it passes anyway within a pixel: what drawing a smooth
// curve of many points costs. Those that are not finite stay.
QVector<QPointF> Thinned(const QVector<QPointF>& points) {
  constexpr double kNear = 1.0;     // pixels, from the last point that is kept
  constexpr double kBeside = 0.05;  // from the way to the next point
  QVector<QPointF> kept;
  kept.reserve(points.size());
  for (qsizetype i = 0; i < points.size(); ++i) {
    if (!kept.isEmpty() && i + 1 < points.size()) {
      const QPointF step = points[i] - kept.back();
      const QPointF way = points[i + 1] - kept.back();
      const double along = QPointF::dotProduct(step, way);
      const double length = std::hypot(way.x(), way.y());
      const double beside = std::abs(step.x() * way.y() - step.y() * way.x());
      if (std::hypot(step.x(), step.y()) < kNear && along >= 0.0 && along <= length * length &&
          beside <= kBeside * length) {
        continue;
      }
    }
    kept += points[i];
  }
  return kept;
}

// Pixels up or down to the point at `i`, from 1; 0 across a gap.
double Climb(const QVector<QPointF>& points, qsizetype i) {
  const double climb = std::abs(points[i].y() - points[i - 1].y());
  return std::isfinite(climb) ? climb : 0.0;
}

bool IsWild(const QVector<QPointF>& points) {
  constexpr double kMostClimb = 150000.0;
  double climb = 0.0;
  for (qsizetype i = 1; i < points.size(); ++i) climb += Climb(points, i);
  return climb > kMostClimb;
}

}  // namespace

void ChartLine::drawCurveLine(QCPPainter* painter, const QVector<QPointF>& points) const {
  if (painter->modes().testFlag(QCPPainter::pmVectorized)) {
    QCPCurve::drawCurveLine(painter, points);
  } else if (crowded_ || IsWild(points)) {
    painter->setAntialiasing(false);
    painter->setPen(QPen(pen().color(), 0));  // one pixel
    QCPCurve::drawCurveLine(painter, points);
  } else {
    DrawInPieces(painter, Thinned(points));
  }
}

void ChartLine::DrawInPieces(QCPPainter* painter, const QVector<QPointF>& points) const {
  constexpr double kLongestPiece = 2000.0;  // pixels up and down
  double climb = 0.0;
  qsizetype first = 0;
  for (qsizetype i = 1; i < points.size(); ++i) {
    climb += Climb(points, i);
    if (climb < kLongestPiece && i + 1 < points.size()) continue;
    QCPCurve::drawCurveLine(painter, points.mid(first, i - first + 1));
    first = i;
    climb = 0.0;
  }
}

}  // namespace quorvane
