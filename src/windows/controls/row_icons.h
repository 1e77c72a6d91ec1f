// Small drawings on the buttons of a dataset's row: sharp at every scale, in the palette's colours.
#pragma once

#include <QColor>
#include <QIcon>

namespace quorvane {

enum class RowGlyph {
  kPencil,    // not yet edited
  kTick,      // edited
  kLines,     // comment lines
  kSubtract,  // a curve and a minus sign
  kCross,     // unload
};

// In `color`, or in the colour of a button's text if it is not valid.
QIcon RowIcon(RowGlyph glyph, const QColor& color = {});

}  // namespace quorvane
