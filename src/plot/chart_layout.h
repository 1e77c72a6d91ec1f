// How a Chart looks: fills a QCustomPlot from it. For the sources of plot/ only.
#pragma once

#include <cstddef>

class QCPItemStraightLine;
class QCustomPlot;

namespace quorvane {

struct Chart;

// Replaces all that `plot` shows by `chart`, in the given order within a panel but for two things:
// lines stand above marks of data, and a line at 0 throughout stands behind them.
//   Axes:     from the points that are finite in x and y (and below 1e200), with 4 % (x) and 6 %
//             (y) to spare at each end; marks do not widen them. A view of the Chart replaces the
//             ranges of the top panel. The panels' bottom axes stay linked when `plot` is zoomed;
//             only the lowest one bears labels and the title.
//   Lines:    broken at points that are not finite.
//   No point: the panel says "No data"; a Chart without panels is shown as one such panel.
// Titles that would not fit shrink, then are cut.
void FillPlot(QCustomPlot& plot, const Chart& chart);

// The line of the top panel's mark at `index` (from 0), null if it was not drawn. Its text goes
// with it when it is moved.
QCPItemStraightLine* MarkLine(const QCustomPlot& plot, std::size_t index);

}  // namespace quorvane
