#include "plot/figure_widget.h"

#include <qcustomplot.h>

#include <QMouseEvent>
#include <QRubberBand>
#include <algorithm>
#include <utility>

#include "plot/figure_legend.h"
#include "plot/figure_page.h"

namespace quorvane {

namespace {

constexpr double kRim = 8.0;  // about the page, pixels

}  // namespace

QPixmap MarkPicture(const FigureLook& look, int side) {
  constexpr double kShare = 0.6;
  QPixmap picture(side, side);
  picture.fill(Qt::white);
  QCPPainter painter(&picture);
  painter.setAntialiasing(true);
  const QCPScatterStyle mark = FigureMark(look, kShare * side, false);
  mark.applyTo(&painter, QPen());
  mark.drawShape(&painter, side / 2.0, side / 2.0);
  return picture;
}

FigureWidget::FigureWidget(QWidget* parent)
    : QWidget(parent),
      plot_(std::make_unique<QCustomPlot>()),
      band_(new QRubberBand(QRubberBand::Rectangle, this)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setCursor(Qt::CrossCursor);
}

FigureWidget::~FigureWidget() = default;

void FigureWidget::SetFigure(Figure figure, FigureSize size) {
  if (figure == figure_ && size == size_) return;
  figure_ = std::move(figure);
  size_ = size;
  plot_->setViewport({{0, 0}, Units()});
  FillFigure(*plot_, figure_, {size_.width, size_.height});
  picture_ = {};
  update();
}

QRectF FigureWidget::Page() const {
  const QRectF room = QRectF(rect()).adjusted(kRim, kRim, -kRim, -kRim);
  QRectF page({}, QSizeF(size_.width, size_.height).scaled(room.size(), Qt::KeepAspectRatio));
  page.moveCenter(room.center());
  return page;
}

QSize FigureWidget::Units() const {
  return (QSizeF(size_.width, size_.height) * kFigureUnitsPerMm).toSize();
}

double FigureWidget::Scale() const {
  return Page().width() / (size_.width * kFigureUnitsPerMm);
}

void FigureWidget::Render() {
  const QSizeF pixels = Page().size() * devicePixelRatio();
  picture_ = QPixmap(pixels.toSize().expandedTo({1, 1}));
  picture_.fill(Qt::white);
  QCPPainter painter(&picture_);
  painter.setModes(QCPPainter::pmNoCaching | QCPPainter::pmNonCosmetic);
  const double scale = Scale() * devicePixelRatio();
  painter.scale(scale, scale);
  plot_->toPainter(&painter, Units().width(), Units().height());
  painter.end();
  picture_.setDevicePixelRatio(devicePixelRatio());
}

void FigureWidget::paintEvent(QPaintEvent*) {
  if (picture_.isNull() || picture_.devicePixelRatio() != devicePixelRatio()) Render();
  const QRectF page = Page();
  QPainter painter(this);
  painter.drawPixmap(page.topLeft(), picture_);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(page);
}

void FigureWidget::resizeEvent(QResizeEvent*) {
  picture_ = {};
}

void FigureWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_ = event->position().toPoint();
  band_->setGeometry(QRect(pressed_, QSize()));
  band_->show();
}

void FigureWidget::mouseMoveEvent(QMouseEvent* event) {
  if (band_->isVisible()) {
    band_->setGeometry(QRect(pressed_, event->position().toPoint()).normalized());
  }
}

void FigureWidget::mouseReleaseEvent(QMouseEvent* event) {
  constexpr int kLeastDrag = 4;  // pixels
  if (!band_->isVisible() || event->button() != Qt::LeftButton) return;
  band_->hide();
  const QPoint released = event->position().toPoint();
  if (released.x() < pressed_.x() - kLeastDrag) {
    emit ZoomOutWanted();
    return;
  }
  const QRect rectangle = QRect(pressed_, released).normalized();
  if (rectangle.width() < kLeastDrag || rectangle.height() < kLeastDrag) return;
  WantZoom(rectangle);
}

void FigureWidget::WantZoom(const QRect& rectangle) {
  const auto toUnits = [this](const QPointF& point) {
    return (point - Page().topLeft()) / Scale();
  };
  const QPointF from = toUnits(rectangle.topLeft());
  const QPointF to = toUnits(rectangle.bottomRight());
  for (std::size_t k = 0; k < figure_.cells.size(); ++k) {
    QCPAxisRect* panel = DataPanel(*plot_, k);
    if (panel == nullptr || !panel->rect().contains(toUnits(pressed_).toPoint())) continue;
    QCPAxis* x = panel->axis(QCPAxis::atBottom);
    QCPAxis* y = panel->axis(QCPAxis::atLeft);
    emit ZoomWanted(int(k), {x->pixelToCoord(from.x()), y->pixelToCoord(to.y()),
                             x->pixelToCoord(to.x()), y->pixelToCoord(from.y())});
    return;
  }
}

QPointF FigureWidget::PlaceOf(std::size_t index, double x, double y) const {
  const QCPAxisRect* panel = DataPanel(*plot_, index);
  if (panel == nullptr) return {};
  const QPointF units(panel->axis(QCPAxis::atBottom)->coordToPixel(x),
                      panel->axis(QCPAxis::atLeft)->coordToPixel(y));
  return Page().topLeft() + units * Scale();
}

}  // namespace quorvane
