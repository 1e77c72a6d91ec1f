// Charts on the clipboard.
#pragma once

#include "plot/chart_export.h"

namespace quorvane {

// Puts `chart` on the clipboard as an image of `size` and as SVG. Throws what RenderChart throws.
void CopyChart(const Chart& chart, PictureSize size = {});

}  // namespace quorvane
