// Charts and figures on the clipboard.
#pragma once

#include "plot/chart_export.h"
#include "plot/figure_export.h"

class QWidget;

namespace quorvane {

class Dialogs;

// Puts `chart` on the clipboard as an image of `size` and as SVG. A failure is told on `parent`.
void CopyChart(const Chart& chart, PictureSize size, Dialogs& ask, QWidget* parent);

// The same of a figure; the image has 300 dots an inch.
void CopyFigure(const Figure& figure, FigureSize size, Dialogs& ask, QWidget* parent);

}  // namespace quorvane
