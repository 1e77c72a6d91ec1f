// A Chart in a window. This header pulls in nothing of QCustomPlot.
#pragma once

#include <QWidget>
#include <vector>

#include "base/chart.h"

class QCustomPlot;

namespace quorvane {

// A stretch of the bottom axis that is shaded and named.
struct ChartBand {
  double low = 0.0;  // in units of the bottom axis
  double high = 0.0;
  QString name;
};

// Shows a Chart and lets the user zoom: a drag to the right enlarges its rectangle, a drag to the
// left or ShowAll shows everything again, the wheel zooms about the pointer.
class ChartWidget : public QWidget {
  Q_OBJECT
 public:
  explicit ChartWidget(QWidget* parent = nullptr);

  // Replaces what is shown; the axes hold all points, or the chart's view.
  void SetChart(const Chart& chart);
  const Chart& GetChart() const { return chart_; }

  // Replaces what is shown by `chart`, which has no view; one that the user has zoomed to stays.
  void UpdateChart(Chart chart);

  // The chart with the view that the user has zoomed to.
  Chart ShownChart() const;

  void ZoomTo(const ChartArea& area);

  // Stretches shaded behind the data of the top panel, until the next SetChart.
  void SetBands(const std::vector<ChartBand>& bands);

  // Without axes only the data are drawn, in the room that the axes would take too.
  void SetAxesShown(bool shown);

  void ShowAll();

  // The stretch of the bottom axis that is shown, in its units.
  ChartRange BottomRange() const;

  // Paints what is shown, the zoom included, as large as it fits into `place` at the middle of its
  // top; `device` is not yet painted on, `place` in its units. The layout has 96 units an inch, so
  // texts have the size of the screen. Throws std::runtime_error if the device cannot be painted
  // on.
  void Paint(QPaintDevice& device, const QRectF& place) const;

  QSize sizeHint() const override { return {480, 430}; }
  QSize minimumSizeHint() const override { return {240, 200}; }

 signals:
  // The pointer moved over the chart; in units of the bottom and the top panel's left axis.
  void PointerMoved(double x, double y);
  void BottomRangeChanged();  // by a zoom or another chart

 protected:
  // What the plot itself would keep from its parents: the tool tip of the title, in which one that
  // was cut is whole, and the menu of this widget's actions.
  bool eventFilter(QObject* watched, QEvent* event) override;

  QCustomPlot& Plot() const { return *plot_; }

  // The plot holds new items and axes; those of before are gone.
  virtual void PlotFilled() {}

  // A mark of the top panel was moved; it is already drawn there.
  void TakeMark(std::size_t index, double x) { chart_.panels.front().marks[index].x = x; }

 private:
  void Zoom(const QRect& rectangle);
  ChartArea Area() const;  // that the axes show

  Chart chart_;
  ChartArea whole_;  // that the axes show without a zoom
  std::vector<ChartBand> bands_;
  bool axesShown_ = true;
  QCustomPlot* plot_;
  QPoint pressed_;
};

}  // namespace quorvane
