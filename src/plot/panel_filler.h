// What stands in one panel of a plot. For the sources of plot/ only.
#pragma once

#include <QColor>
#include <QString>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "base/chart.h"

class QCPAbstractPlottable;
class QCPAxis;
class QCPAxisRect;
class QCPItemPosition;
class QCPItemText;
class QCPLegend;
class QCustomPlot;

namespace quorvane {

// Whether a point can be drawn: axes reach to 1e250. False for what is not finite.
inline bool Drawable(double x, double y) {
  constexpr double kGreatestValue = 1e200;
  return std::abs(x) < kGreatestValue && std::abs(y) < kGreatestValue;
}

// Calls `visit(x, y)` for each point of `series` that can be drawn.
template <class Visit>
void ForEachPoint(const ChartSeries& series, Visit&& visit) {
  const std::size_t count = std::min(series.x.size(), series.y.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (Drawable(series.x[i], series.y[i])) visit(series.x[i], series.y[i]);
  }
}

// The name of the line of the top panel's mark at `index` (from 0).
QString MarkName(std::size_t index);

// One panel in a plot: its axes and what stands between them, from back to front.
class PanelFiller {
 public:
  PanelFiller(QCustomPlot& plot, QCPAxisRect& rect);

  void StyleAxes(const std::string& leftPattern, bool small, bool lowest);
  void Draw(const ChartPanel& panel);
  void SayNoData(bool lowest);

 private:
  void DrawSeries(const ChartSeries& series);
  void DrawLine(const ChartSeries& series);
  void DrawScatter(const ChartSeries& series);
  void List(QCPAbstractPlottable* plottable);
  Qt::Alignment LegendPlace(const ChartPanel& panel) const;
  QCPLegend* NewLegend(const ChartPanel& panel);
  void DrawMarks(const std::vector<ChartMark>& marks);
  QCPItemText* NewText(const QString& text, int pixels, const QColor& color);
  void Attach(QCPItemPosition* position);

  QCustomPlot& plot_;
  QCPAxisRect& rect_;
  QCPAxis* bottom_;
  QCPAxis* left_;
  QCPLegend* legend_ = nullptr;
  bool crowded_ = false;
};

}  // namespace quorvane
