// Drawing in a program without windows.
#pragma once

#include <memory>

namespace quorvane {

// Starts what RenderChart needs in a program that shows nothing: while the object lives there is a
// QApplication that uses no display. To be made in the main thread, and only when a picture is
// asked for, because it takes a tenth of a second. A QApplication that already exists is used as
// it is. Numbers keep their decimal point: LC_NUMERIC and QLocale's default are set to "C".
// This header pulls in nothing of Qt.
class OffscreenDrawing {
 public:
  OffscreenDrawing();
  ~OffscreenDrawing();
  OffscreenDrawing(const OffscreenDrawing&) = delete;
  OffscreenDrawing& operator=(const OffscreenDrawing&) = delete;

 private:
  struct Application;
  std::unique_ptr<Application> application_;  // empty when somebody else's is used
};

}  // namespace quorvane
