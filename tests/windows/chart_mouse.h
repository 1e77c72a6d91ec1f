// The mouse on a chart, at places in axis values.
#pragma once

#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include "plot/chart_widget.h"

namespace quorvane {

class ChartMouse {
 public:
  explicit ChartMouse(ChartWidget& chart)
      : chart_(chart), plot_(*chart.childAt(chart.rect().center())) {
    QCoreApplication::processEvents();  // a new chart gets its places as it is drawn
  }

  // The pixel nearest to (x, y).
  QPoint At(double x, double y) const {
    const QPoint corner(100, 100);
    const QPoint other(200, 200);
    const auto [x1, y1] = Values(corner);
    const auto [x2, y2] = Values(other);
    return {corner.x() + qRound((x - x1) / (x2 - x1) * (other.x() - corner.x())),
            corner.y() + qRound((y - y1) / (y2 - y1) * (other.y() - corner.y()))};
  }

  // With the left button.
  void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers keys = {}) const {
    Send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton, keys);
    Send(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton, keys);
    Send(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, keys);
    Send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton, keys);
  }

 private:
  std::pair<double, double> Values(QPoint at) const {
    const QSignalSpy moves(&chart_, &ChartWidget::PointerMoved);
    Send(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, {});
    return {moves.value(0).value(0).toDouble(), moves.value(0).value(1).toDouble()};
  }
  void Send(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons down,
            Qt::KeyboardModifiers keys) const {
    QMouseEvent event(type, at, plot_.mapToGlobal(at), button, down, keys);
    QCoreApplication::sendEvent(&plot_, &event);
  }

  ChartWidget& chart_;
  QWidget& plot_;
};

}  // namespace quorvane
