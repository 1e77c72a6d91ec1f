#include "plot/point_chart.h"

#include <qcustomplot.h>

#include <algorithm>
#include <cmath>

#include "plot/chart_layout.h"

namespace quorvane {

namespace {

const QColor kMarqueeLine(60, 60, 60);
const QColor kMarqueeFill(0, 114, 178, 25);

// The overlay of a plot has a buffer of its own, so that it is drawn without the points.
const QString kOverlay = QStringLiteral("overlay");

}  // namespace

PointChart::PointChart(QWidget* parent) : ChartWidget(parent) {
  QCustomPlot& plot = Plot();
  plot.setSelectionRectMode(QCP::srmNone);
  connect(&plot, &QCustomPlot::mousePress, this, [this](QMouseEvent* event) { Press(*event); });
  connect(&plot, &QCustomPlot::mouseMove, this, [this](QMouseEvent* event) { Move(*event); });
  connect(&plot, &QCustomPlot::mouseRelease, this, [this](QMouseEvent* event) { Release(*event); });
  PlotFilled();
}

void PointChart::PlotFilled() {
  dragging_ = false;
  mark_.reset();
  marquee_ = new QCPItemRect(&Plot());
  marquee_->setLayer(kOverlay);
  marquee_->setClipToAxisRect(false);
  marquee_->setPen(QPen(kMarqueeLine, 1.0, Qt::DashLine));
  marquee_->setBrush(kMarqueeFill);
  marquee_->setVisible(false);
  marquee_->topLeft->setType(QCPItemPosition::ptAbsolute);
  marquee_->bottomRight->setType(QCPItemPosition::ptAbsolute);
  for (QCPAbstractItem* item : Plot().findChildren<QCPItemText*>()) item->setLayer(kOverlay);
  for (QCPAbstractItem* item : Plot().findChildren<QCPItemStraightLine*>()) {
    item->setLayer(kOverlay);
  }
}

void PointChart::HideMarquee() {
  marquee_->setVisible(false);
  DrawOverlay();
}

void PointChart::Press(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return;
  if (event.modifiers().testFlag(Qt::ControlModifier)) {
    emit CtrlPressed();
  } else if (event.modifiers().testFlag(Qt::ShiftModifier)) {
    GrabMark(event.position().x());
  } else {
    dragging_ = true;
    marquee_->topLeft->setCoords(event.position());
    DrawMarquee(event.position());
  }
}

void PointChart::Move(const QMouseEvent& event) {
  if (!event.buttons().testFlag(Qt::LeftButton)) {  // went up where nobody told
    if (dragging_) HideMarquee();
    dragging_ = false;
    mark_.reset();
  }
  if (dragging_) DrawMarquee(event.position());
  if (mark_) MoveMark(event.position().x());
}

void PointChart::Release(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return;
  mark_.reset();
  if (!dragging_) return;
  dragging_ = false;
  DrawMarquee(event.position());
  const QPointF from = marquee_->topLeft->coords();
  const QPointF to = marquee_->bottomRight->coords();
  if (from == to) {
    HideMarquee();
    return;
  }
  const QCPAxis* x = Plot().axisRect(0)->axis(QCPAxis::atBottom);
  const QCPAxis* y = Plot().axisRect(0)->axis(QCPAxis::atLeft);
  emit MarqueeDrawn(
      {x->pixelToCoord(std::min(from.x(), to.x())), y->pixelToCoord(std::max(from.y(), to.y())),
       x->pixelToCoord(std::max(from.x(), to.x())), y->pixelToCoord(std::min(from.y(), to.y()))},
      event.globalPosition().toPoint());
}

void PointChart::GrabMark(double pixel) {
  double nearest = 10.0;  // pixels; how far off a line may be taken
  const QCPAxis* x = Plot().axisRect(0)->axis(QCPAxis::atBottom);
  const std::vector<ChartPanel>& panels = GetChart().panels;
  for (std::size_t k = 0; !panels.empty() && k < panels.front().marks.size(); ++k) {
    const QCPItemStraightLine* line = MarkLine(Plot(), k);
    if (line == nullptr) continue;
    const double distance = std::abs(x->coordToPixel(line->point1->coords().x()) - pixel);
    if (distance >= nearest) continue;
    nearest = distance;
    mark_ = k;
  }
}

// Within the axes, so that it can be taken again.
void PointChart::MoveMark(double pixel) {
  const QCPAxisRect& panel = *Plot().axisRect(0);
  const double inside = std::clamp<double>(pixel, panel.left(), panel.right());
  const double at = panel.axis(QCPAxis::atBottom)->pixelToCoord(inside);
  QCPItemStraightLine* line = MarkLine(Plot(), *mark_);
  line->point1->setCoords(at, line->point1->coords().y());
  line->point2->setCoords(at, line->point2->coords().y());
  TakeMark(*mark_, at);
  DrawOverlay();
}

void PointChart::DrawMarquee(const QPointF& corner) {
  marquee_->bottomRight->setCoords(corner);
  marquee_->setVisible(true);
  DrawOverlay();
}

void PointChart::DrawOverlay() {
  Plot().layer(kOverlay)->replot();
}

}  // namespace quorvane
