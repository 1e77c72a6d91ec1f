// What goes to a printer or into a PDF: the way from the menu "Print" to the page.
#pragma once

#include <QString>
#include <functional>

class QPagedPaintDevice;

namespace quorvane {

struct PrintJob {
  QString title;           // of the document
  bool selection = false;  // something is selected: the dialog offers and proposes it

  // Lays the content out within the margins of `device` and paints all of its pages, or the
  // selection's. Throws std::runtime_error if the device cannot be painted on.
  std::function<void(QPagedPaintDevice& device, bool selectionOnly)> paint;
};

}  // namespace quorvane
