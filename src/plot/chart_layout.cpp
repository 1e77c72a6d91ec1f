#include "plot/chart_layout.h"

#include <qcustomplot.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "base/chart.h"
#include "plot/axis_range.h"
#include "plot/chart_font.h"
#include "plot/panel_filler.h"
#include "plot/title_element.h"

namespace quorvane {

namespace {

constexpr double kMarginX = 0.04;    // of the data's range, at each end
constexpr double kMarginY = 0.06;    // enough for a whole cross in a low panel
constexpr double kSmallPanel = 0.4;  // share of the height below which ticks are few

struct PanelRange {
  ChartRange x;
  ChartRange y;
};

PanelRange RangeOf(const ChartPanel& panel) {
  PanelRange range;
  for (const ChartSeries& series : panel.series) {
    ForEachPoint(series, [&](double x, double y) {
      range.x.Include({&x, 1});
      range.y.Include({&y, 1});
    });
  }
  if (panel.map) {
    range.x.Include(panel.map->x);
    range.y.Include(panel.map->y);
  }
  if (!panel.leftRange.Empty()) {
    range.y.Include({&panel.leftRange.low, 1});
    range.y.Include({&panel.leftRange.high, 1});
  }
  return range;
}

double HeightShare(const ChartPanel& panel) {
  return panel.heightShare > 0.0 && std::isfinite(panel.heightShare) ? panel.heightShare : 1.0;
}

void LinkBothWays(QCPAxis* one, QCPAxis* other) {
  const auto changed = qOverload<const QCPRange&>(&QCPAxis::rangeChanged);
  const auto follow = qOverload<const QCPRange&>(&QCPAxis::setRange);
  QObject::connect(one, changed, other, follow);
  QObject::connect(other, changed, one, follow);
}

void Clear(QCustomPlot& plot) {
  plot.clearItems();
  plot.clearPlottables();
  plot.plotLayout()->clear();
  plot.setAutoAddPlottableToLegend(false);
}

// Axis rectangles for `panels` in the column right of the left titles, below the Chart's title and
// above the bottom title. Titles are elements of their own, not the axes' labels, so that those of
// all panels stand in one line and a long one takes no room from the axes.
std::vector<QCPAxisRect*> LayOut(QCustomPlot& plot, const Chart& chart,
                                 const std::vector<ChartPanel>& panels) {
  QCPLayoutGrid& grid = *plot.plotLayout();
  grid.setMargins(QMargins(2, 3, 0, 5));
  grid.setRowSpacing(3);
  grid.setColumnSpacing(2);
  std::vector<QCPAxisRect*> rects;
  for (const ChartPanel& panel : panels) {
    auto* rect = new QCPAxisRect(&plot);
    const int row = int(rects.size()) + 1;
    grid.addElement(row, 1, rect);
    grid.addElement(row, 0,
                    new TitleElement(&plot, QString::fromStdString(panel.leftTitle),
                                     kAxisTitlePixels, Qt::Vertical, rect));
    grid.setRowStretchFactor(row, HeightShare(panel));
    rect->setMinimumMargins(QMargins(8, 3, 14, 3));
    rects.push_back(rect);
  }
  const auto addAcross = [&](int row, const std::string& title, int pixels) {
    grid.addElement(row, 1,
                    new TitleElement(&plot, QString::fromStdString(title), pixels, Qt::Horizontal,
                                     rects.front()));
  };
  addAcross(0, chart.title, kTitlePixels);
  addAcross(int(rects.size()) + 1, chart.bottomTitle, kAxisTitlePixels);
  auto* margins = new QCPMarginGroup(&plot);
  margins->setParent(rects.front());  // goes with the panels when the plot is filled anew
  for (QCPAxisRect* rect : rects) rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins);
  return rects;
}

}  // namespace

void FillPlot(QCustomPlot& plot, const Chart& chart) {
  const std::vector<ChartPanel> panels =
      chart.panels.empty() ? std::vector<ChartPanel>(1) : chart.panels;
  Clear(plot);
  const std::vector<QCPAxisRect*> rects = LayOut(plot, chart, panels);

  ChartRange common;
  double height = 0.0;
  for (const ChartPanel& panel : panels) {
    const ChartRange x = RangeOf(panel).x;
    if (!x.Empty()) common.Include(std::vector<double>{x.low, x.high});
    height += HeightShare(panel);
  }
  for (std::size_t i = 0; i < panels.size(); ++i) {
    const bool lowest = i + 1 == panels.size();
    QCPAxis* bottom = rects[i]->axis(QCPAxis::atBottom);
    PanelFiller filler(plot, *rects[i]);
    filler.StyleAxes(panels[i].leftPattern, HeightShare(panels[i]) < kSmallPanel * height, lowest);
    if (i > 0) LinkBothWays(rects[i - 1]->axis(QCPAxis::atBottom), bottom);
    const ChartRange y = RangeOf(panels[i]).y;
    bottom->setRange(AxisRange(common, kMarginX));
    rects[i]->axis(QCPAxis::atLeft)->setRange(AxisRange(y, kMarginY));
    filler.Draw(panels[i]);
    if (y.Empty()) filler.SayNoData(lowest && common.Empty());
  }
  if (chart.view) {
    rects.front()->axis(QCPAxis::atBottom)->setRange(chart.view->x1, chart.view->x2);
    rects.front()->axis(QCPAxis::atLeft)->setRange(chart.view->y1, chart.view->y2);
  }
}

QCPItemStraightLine* MarkLine(const QCustomPlot& plot, std::size_t index) {
  return plot.findChild<QCPItemStraightLine*>(MarkName(index));
}

}  // namespace quorvane
