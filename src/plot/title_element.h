// The titles of a chart and its axes. For the sources of plot/ only.
#pragma once

#include <qcustomplot.h>

namespace quorvane {

// A line of text beside an axis rectangle, or beside a layout of them, and centred on it: across,
// or turned upwards. It shrinks to `leastPixels`, then is cut, where it has no room.
class TitleElement : public QCPLayoutElement {
 public:
  // `centre` is of the same layout.
  TitleElement(QCustomPlot* plot, QString text, int pixels, Qt::Orientation orientation,
               const QCPLayoutElement* centre, int leastPixels = 9);

  QSize minimumOuterSizeHint() const override { return Extent(1); }
  QSize maximumOuterSizeHint() const override { return Extent(QWIDGETSIZE_MAX); }

 protected:
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(true);
  }
  void draw(QCPPainter* painter) override;

 private:
  QSize Extent(int along) const;

  QString text_;
  int pixels_;
  Qt::Orientation orientation_;
  const QCPLayoutElement* centre_;
  int leastPixels_;
};

}  // namespace quorvane
