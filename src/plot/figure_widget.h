// A Figure in a window, as it will be on paper. This header pulls in nothing of QCustomPlot.
#pragma once

#include <QPixmap>
#include <QPointer>
#include <QWidget>
#include <memory>

#include "base/figure.h"
#include "plot/figure_export.h"

class QCustomPlot;
class QRubberBand;

namespace quorvane {

// The mark of a dataset on white, `side` pixels high and wide, for a list.
QPixmap MarkPicture(const FigureLook& look, int side);

// Shows the page as large as there is room for it. A drag to the right in a data panel chooses its
// part to be shown, a drag to the left asks for everything again.
class FigureWidget : public QWidget {
  Q_OBJECT
 public:
  explicit FigureWidget(QWidget* parent = nullptr);
  ~FigureWidget() override;

  void SetFigure(Figure figure, FigureSize size);
  const Figure& GetFigure() const { return figure_; }
  FigureSize PageSize() const { return size_; }

  // Where a point of the data panel of the cell at `index` (from 0) is shown, in this widget.
  QPointF PlaceOf(std::size_t index, double x, double y) const;

  QSize sizeHint() const override { return {640, 520}; }
  QSize minimumSizeHint() const override { return {260, 220}; }

 signals:
  void ZoomWanted(int cell, const ChartArea& area);  // cell from 0; of its data panel
  void ZoomOutWanted();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QRectF Page() const;   // in this widget
  QSize Units() const;   // of the layout
  double Scale() const;  // pixels of the widget a unit of the layout
  void Render();
  void WantZoom(const QRect& rectangle);

  Figure figure_;
  FigureSize size_;
  std::unique_ptr<QCustomPlot> plot_;  // laid out, never shown
  QPixmap picture_;                    // null: to be rendered
  QRubberBand* band_;
  QPoint pressed_;
};

}  // namespace quorvane
