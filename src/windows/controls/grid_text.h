// Cells of a grid as text for other programs.
#pragma once

#include <QString>

class QTableView;

namespace quorvane {

// What is selected in `grid`, rows and columns between left out; without a selection the whole grid
// with its headers. Cells are parted by TABs, lines end in a line feed; texts without
// blanks at their ends.
QString GridText(const QTableView& grid);

}  // namespace quorvane
