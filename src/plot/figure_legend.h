// The legend of a figure, and the pens and marks of its datasets. For the sources of plot/ only.
#pragma once

#include <qcustomplot.h>

#include <vector>

#include "base/figure.h"

namespace quorvane {

// Marks with a rim of the colour, filled with a paler one, or `hollow`.
QCPScatterStyle FigureMark(const FigureLook& look, double size, bool hollow);

// The curve, or `thin` that of a species: a darker shade of the colour, so that it is seen on the
// marks.
QPen FigurePen(const FigureLook& look, bool thin);

// The keys in columns of equal width, as many as the page has room for, read row by row.
class FigureLegend : public QCPLayoutElement {
 public:
  // `width`: of the page, in units of figure_page.h.
  FigureLegend(QCustomPlot* plot, std::vector<FigureKey> keys, int width);

  QSize minimumOuterSizeHint() const override { return {1, Height()}; }
  QSize maximumOuterSizeHint() const override { return {QWIDGETSIZE_MAX, Height()}; }
  int Height() const;

 protected:
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(true);
  }
  void draw(QCPPainter* painter) override;

 private:
  std::vector<FigureKey> keys_;
  int entryWidth_ = 1;
  int columns_ = 1;
};

}  // namespace quorvane
