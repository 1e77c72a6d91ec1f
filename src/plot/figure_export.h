// Figures as the bytes of PDF, SVG and PNG files.
#pragma once

#include <string>

#include "base/figure.h"
#include "base/picture_format.h"

class QPaintDevice;
class QRectF;

namespace quorvane {

// `width` with a height that suits the cells and the legend of `figure`, at most 240 mm.
// A QApplication must exist.
FigureSize NaturalSize(const Figure& figure, double width);

// The size that `figure` says, with a natural height where it says none.
FigureSize SizeOf(const Figure& figure);

// The bytes of a file that shows `figure` in `size`; all formats show the same layout. A PNG has
// `dpi` dots an inch, 72 to 1200, and says so. Equal figures give equal PNG and SVG bytes.
// A QApplication must exist; a command line makes one with OffscreenDrawing (offscreen.h).
// Throws std::runtime_error when there is none, when size or dpi are out of bounds, and when the
// picture cannot be made (memory).
std::string RenderFigure(const Figure& figure, PictureFormat format, FigureSize size,
                         int dpi = 300);

// Paints `figure` at its size, or as large as it fits, at the middle of the top of `place`, which
// is in units of `device`; nobody paints on that yet. Throws std::runtime_error if it cannot be
// painted on.
void PaintFigure(const Figure& figure, FigureSize size, QPaintDevice& device, const QRectF& place);

}  // namespace quorvane
