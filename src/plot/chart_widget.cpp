#include "plot/chart_widget.h"

#include <qcustomplot.h>

#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "plot/chart_layout.h"

namespace quorvane {

namespace {

const QColor kBandColor(0, 114, 178, 30);

void ApplyAxes(QCustomPlot& plot, bool shown) {
  for (QCPAxisRect* panel : plot.axisRects()) {
    for (QCPAxis* axis : panel->axes()) axis->setVisible(shown && axis->visible());
  }
}

}  // namespace

ChartWidget::ChartWidget(QWidget* parent) : QWidget(parent), plot_(new QCustomPlot(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(plot_);
  plot_->setMinimumSize(1, 1);  // a plot squeezed to nothing has nothing to paint on
  plot_->setInteractions(QCP::iRangeZoom);
  plot_->setSelectionRectMode(QCP::srmCustom);
  plot_->installEventFilter(this);
  connect(plot_, &QCustomPlot::mousePress, this,
          [this](const QMouseEvent* event) { pressed_ = event->pos(); });
  connect(plot_->selectionRect(), &QCPSelectionRect::accepted, this,
          [this](const QRect& rectangle) { Zoom(rectangle); });
  connect(plot_, &QCustomPlot::mouseMove, this, [this](const QMouseEvent* event) {
    const QCPAxisRect* panel = plot_->axisRect(0);
    const double x = panel->axis(QCPAxis::atBottom)->pixelToCoord(event->pos().x());
    const double y = panel->axis(QCPAxis::atLeft)->pixelToCoord(event->pos().y());
    // New axes have no place, and the pointer none on them, until they are drawn.
    if (std::isfinite(x) && std::isfinite(y)) emit PointerMoved(x, y);
  });
  SetChart({});
}

void ChartWidget::SetChart(const Chart& chart) {
  chart_ = chart;
  bands_.clear();
  FillPlot(*plot_, chart_);
  ApplyAxes(*plot_, axesShown_);
  whole_ = Area();
  PlotFilled();
  connect(plot_->axisRect(0)->axis(QCPAxis::atBottom),
          qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this,
          &ChartWidget::BottomRangeChanged);
  emit BottomRangeChanged();
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ChartWidget::UpdateChart(Chart chart) {
  const std::optional<ChartArea> zoomed = ShownChart().view;
  SetChart(chart);
  if (zoomed) ZoomTo(*zoomed);
}

Chart ChartWidget::ShownChart() const {
  Chart shown = chart_;
  if (Area() != whole_) shown.view = Area();
  return shown;
}

void ChartWidget::ZoomTo(const ChartArea& area) {
  plot_->axisRect(0)->axis(QCPAxis::atBottom)->setRange(area.x1, area.x2);
  plot_->axisRect(0)->axis(QCPAxis::atLeft)->setRange(area.y1, area.y2);
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

ChartArea ChartWidget::Area() const {
  const QCPRange x = plot_->axisRect(0)->axis(QCPAxis::atBottom)->range();
  const QCPRange y = plot_->axisRect(0)->axis(QCPAxis::atLeft)->range();
  return {x.lower, y.lower, x.upper, y.upper};
}

void ChartWidget::SetBands(const std::vector<ChartBand>& bands) {
  bands_ = bands;
  QCPAxisRect* panel = plot_->axisRect(0);
  for (const ChartBand& band : bands) {
    auto* shade = new QCPItemRect(plot_);
    shade->setLayer("background");
    shade->setPen(Qt::NoPen);
    shade->setBrush(kBandColor);
    shade->topLeft->setTypeX(QCPItemPosition::ptPlotCoords);
    shade->topLeft->setTypeY(QCPItemPosition::ptAxisRectRatio);
    shade->bottomRight->setTypeX(QCPItemPosition::ptPlotCoords);
    shade->bottomRight->setTypeY(QCPItemPosition::ptAxisRectRatio);
    shade->topLeft->setCoords(band.low, 0.0);
    shade->bottomRight->setCoords(band.high, 1.0);
    auto* name = new QCPItemText(plot_);
    name->setText(band.name);
    name->setPositionAlignment(Qt::AlignTop | Qt::AlignHCenter);
    name->position->setTypeX(QCPItemPosition::ptPlotCoords);
    name->position->setTypeY(QCPItemPosition::ptAxisRectRatio);
    name->position->setCoords((band.low + band.high) / 2.0, 0.02);
    for (QCPAbstractItem* item :
         {static_cast<QCPAbstractItem*>(shade), static_cast<QCPAbstractItem*>(name)}) {
      item->setClipAxisRect(panel);
      item->setClipToAxisRect(true);
    }
  }
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ChartWidget::SetAxesShown(bool shown) {
  const Chart zoomed = ShownChart();
  const std::vector<ChartBand> bands = bands_;
  axesShown_ = shown;
  SetChart(Chart(chart_));
  SetBands(bands);
  if (zoomed.view) ZoomTo(*zoomed.view);
}

bool ChartWidget::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ContextMenu && contextMenuPolicy() == Qt::ActionsContextMenu) {
    return QCoreApplication::sendEvent(this, event);
  }
  if (event->type() == QEvent::ToolTip && !chart_.title.empty()) {
    const auto* help = static_cast<QHelpEvent*>(event);
    if (help->pos().y() >= plot_->axisRect(0)->top()) return false;
    const QString title = QString::fromStdString(chart_.title);
    QToolTip::showText(help->globalPos(),
                       Qt::mightBeRichText(title) ? Qt::convertFromPlainText(title) : title, this);
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void ChartWidget::ShowAll() {
  const std::vector<ChartBand> bands = bands_;
  SetChart(Chart(chart_));
  SetBands(bands);
}

ChartRange ChartWidget::BottomRange() const {
  const QCPRange range = plot_->axisRect(0)->axis(QCPAxis::atBottom)->range();
  return {range.lower, range.upper};
}

void ChartWidget::Paint(QPaintDevice& device, const QRectF& place) const {
  constexpr double kUnitsPerInch = 96.0;
  QCPPainter painter;
  if (!painter.begin(&device)) throw std::runtime_error("the page cannot be painted");
  painter.setModes(QCPPainter::pmVectorized | QCPPainter::pmNoCaching | QCPPainter::pmNonCosmetic);
  const QSizeF size = QSizeF(plot_->size()).scaled(place.size(), Qt::KeepAspectRatio);
  const double scale = device.logicalDpiX() / kUnitsPerInch;
  painter.translate(place.left() + (place.width() - size.width()) / 2.0, place.top());
  painter.scale(scale, scale);
  plot_->toPainter(&painter, qRound(size.width() / scale), qRound(size.height() / scale));
  if (!painter.end()) throw std::runtime_error("the page cannot be finished");
}

void ChartWidget::Zoom(const QRect& rectangle) {
  constexpr int kLeastDrag = 4;  // pixels
  const int left = std::min(rectangle.left(), rectangle.right());
  const int right = std::max(rectangle.left(), rectangle.right());
  const int top = std::min(rectangle.top(), rectangle.bottom());
  const int bottom = std::max(rectangle.top(), rectangle.bottom());
  if (pressed_.x() > (left + right) / 2) {
    ShowAll();
    return;
  }
  if (right - left < kLeastDrag || bottom - top < kLeastDrag) return;
  QCPAxisRect* panel = plot_->axisRectAt(pressed_);
  if (panel == nullptr) panel = plot_->axisRect(0);
  QCPAxis* x = panel->axis(QCPAxis::atBottom);
  QCPAxis* y = panel->axis(QCPAxis::atLeft);
  x->setRange(x->pixelToCoord(left), x->pixelToCoord(right));
  y->setRange(y->pixelToCoord(bottom), y->pixelToCoord(top));
  plot_->replot();
}

}  // namespace quorvane
