// The colour of warnings.
#pragma once

#include <QColor>
#include <QPalette>

namespace quorvane {

// Readable on the light and on the dark ground of lists and windows.
inline QColor WarningInk(const QPalette& palette) {
  constexpr int kMiddle = 128;
  const bool dark = palette.color(QPalette::Base).lightness() < kMiddle;
  return dark ? QColor(255, 180, 80) : QColor(150, 60, 0);
}

}  // namespace quorvane
