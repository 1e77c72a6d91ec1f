// Charts on the clipboard.
#pragma once

#include "plot/chart_export.h"

class QWidget;

namespace quorvane {

class Dialogs;

// Puts `chart` on the clipboard as an image of `size` and as SVG. A failure is told on `parent`.
void CopyChart(const Chart& chart, PictureSize size, Dialogs& ask, QWidget* parent);

}  // namespace quorvane
