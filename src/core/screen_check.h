// Whether a screen is large enough for the program.
#pragma once

#include <optional>
#include <string>

namespace quorvane {

struct ScreenSize {
  int width = 0;  // pixels
  int height = 0;
  double pixelsPerInchX = 96.0;  // logical
  double pixelsPerInchY = 96.0;
};

// What the user is told before the program ends; nothing if the screen will do: 800 by 600, and
// 1024 by 768 where both directions have more than 96 logical pixels an inch.
std::optional<std::string> ScreenRefusal(const ScreenSize& screen);

}  // namespace quorvane
