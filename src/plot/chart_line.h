// The lines of a chart. For the sources of plot/ only.
#pragma once

#include <qcustomplot.h>

namespace quorvane {

// A line that keeps the order of its points, as a graph would not. The screen gets it quickly: the
// time to smooth a line grows with the square of how often it passes the same height, so it is
// drawn in pieces, which a smooth curve is too short for. Noise that fills the panel, or one line
// among very many points, is not smoothed at all. Pictures and prints are drawn whole and smooth.
class ChartLine : public QCPCurve {
 public:
  // `crowded`: one line among very many points.
  ChartLine(QCPAxis* bottom, QCPAxis* left, bool crowded)
      : QCPCurve(bottom, left), crowded_(crowded) {}

 protected:
  void drawCurveLine(QCPPainter* painter, const QVector<QPointF>& points) const override;

 private:
  void DrawInPieces(QCPPainter* painter, const QVector<QPointF>& points) const;

  bool crowded_;
};

}  // namespace quorvane
