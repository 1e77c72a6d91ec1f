// A chart on which points are chosen by a rectangle and lines are moved by hand.
#pragma once

#include <optional>

#include "plot/chart_widget.h"

class QCPItemRect;
class QMouseEvent;

namespace quorvane {

// The left button does not zoom here: a plain drag draws a marquee, Shift and a drag moves the mark
// of the top panel under the pointer, Ctrl and a press are told on. The wheel zooms as ever. While
// the pointer moves only marquee and marks are drawn, in a layer of their own.
class PointChart : public ChartWidget {
  Q_OBJECT
 public:
  explicit PointChart(QWidget* parent = nullptr);

  void HideMarquee();

 signals:
  // A drag that moved has ended; the marquee stays until it is hidden. `where` is the pointer on
  // the screen.
  void MarqueeDrawn(const ChartArea& area, const QPoint& where);
  void CtrlPressed();

 protected:
  void PlotFilled() override;

 private:
  void Press(const QMouseEvent& event);
  void Move(const QMouseEvent& event);
  void Release(const QMouseEvent& event);
  void GrabMark(double pixel);
  void MoveMark(double pixel);
  void DrawMarquee(const QPointF& corner);
  void DrawOverlay();

  QCPItemRect* marquee_ = nullptr;   // its corners are in pixels
  bool dragging_ = false;            // the marquee
  std::optional<std::size_t> mark_;  // that is being moved
};

}  // namespace quorvane
