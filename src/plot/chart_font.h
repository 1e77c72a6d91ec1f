// The letters of charts. For the sources of plot/ only.
#pragma once

#include <QFont>

namespace quorvane {

constexpr int kTitlePixels = 15;
constexpr int kAxisTitlePixels = 14;
constexpr int kLabelPixels = 12;

// Without hinting letters have the same widths in all formats and at all enlargements.
inline QFont ChartFont(int pixels) {
  QFont font;
  font.setFamilies({"Liberation Sans", "Arial", "Helvetica"});
  font.setStyleHint(QFont::SansSerif);
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setPixelSize(pixels);
  return font;
}

}  // namespace quorvane
