// What a window hands to the menu "Print".
#pragma once

#include <QString>
#include <variant>

class QAbstractItemModel;
class QTextEdit;

namespace quorvane {

class ChartWidget;
class FigureWidget;

struct PrintedGrid {
  QString title;
  const QAbstractItemModel* cells = nullptr;  // with its headers
};

// A chart as it is shown; a figure at its size; a text box, of which the selection or all is
// printed; a grid. Nothing: there is nothing to print on the open tab.
using PrintContent = std::variant<std::monostate, const ChartWidget*, const FigureWidget*,
                                  const QTextEdit*, PrintedGrid>;

// A child window of frmMain that can be printed.
class Printable {
 public:
  virtual ~Printable() = default;
  // What the open tab shows; it lives as long as the window.
  virtual PrintContent Printed() const = 0;
};

}  // namespace quorvane
