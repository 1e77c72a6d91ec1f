#include "core/screen_check.h"

namespace quorvane {

// Words run together in both texts: kept on purpose.
std::optional<std::string> ScreenRefusal(const ScreenSize& screen) {
  constexpr double kUsual = 96.0;
  if (screen.height < 600 || screen.width < 800) {
    return "This application requires a minimum screen resolution"
           "of 800x600.  If your system is using a Display setting"
           "of > 96 DPI then the minimum screen resolution is 1024x768."
           "Please adjust your system settings.";
  }
  const bool large = screen.height >= 768 && screen.width >= 1024;
  if (!large && screen.pixelsPerInchX > kUsual && screen.pixelsPerInchY > kUsual) {
    return "If your system is using a Display setting of > 96 DPI then the"
           "minimum screen resolution for this application is 1024x768."
           "Please adjust your system settings.";
  }
  return std::nullopt;
}

}  // namespace quorvane
