// Charts as the bytes of PNG, SVG and PDF files.
#pragma once

#include <string>

#include "base/chart.h"
#include "base/picture_format.h"

namespace quorvane {

// Width and height of a picture, each from 200 to 10000: pixels of a PNG, user units (CSS pixels)
// of an SVG, points (1/72 inch) of a PDF page.
struct PictureSize {
  int width = 1200;
  int height = 1080;
};

// The size of the layout that RenderChart enlarges to fill `size`: what a preview shows.
PictureSize LayoutSize(PictureSize size);

// The bytes of a file that shows `chart` in `size`.
// All formats draw the same layout of about 600 x 540 units with 1 unit wide axes and 12 unit tick
// labels, enlarged by a whole factor: the lesser of width / 600 and height / 540, rounded, at least
// 1. A 1200 x 1080 PNG is that layout with two pixels a unit. Equal Charts give equal PNG and SVG
// bytes; a PDF bears the time at which it was made.
// A QApplication must exist; a command line makes one with OffscreenDrawing (offscreen.h).
// Throws std::runtime_error when there is none, when `size` is out of bounds, and when the picture
// cannot be made (memory).
std::string RenderChart(const Chart& chart, PictureFormat format, PictureSize size = {});

}  // namespace quorvane
