// How a Figure looks: fills a QCustomPlot from it. For the sources of plot/ only.
#pragma once

#include <QSizeF>

#include "base/figure.h"

class QCPAxisRect;
class QCustomPlot;

namespace quorvane {

// A figure is laid out in quarters of a point, in which whole numbers are fine enough.
inline constexpr double kFigureUnitsPerMm = 4 * 72.0 / 25.4;

// Replaces all that `plot` shows by `figure` on a page of `millimetres`.
// Cells stand in rows of equal length as far as it goes, each at least 50 mm wide; their axes have
// the same width, the residual axes the same range. Letters are of 7 and 8 points, axes half a
// point wide. From back to front: zero line, data, points left out, curves.
void FillFigure(QCustomPlot& plot, const Figure& figure, QSizeF millimetres);

// The axes of the data panel of the cell at `index` (from 0), null if there is none.
QCPAxisRect* DataPanel(const QCustomPlot& plot, std::size_t index);

// How many cells stand side by side on a page of that width in mm.
int CellsAcross(const Figure& figure, double width);

}  // namespace quorvane
