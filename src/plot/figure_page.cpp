#include "plot/figure_page.h"

#include <qcustomplot.h>

#include <algorithm>
#include <cmath>

#include "plot/axis_range.h"
#include "plot/chart_font.h"
#include "plot/chart_line.h"
#include "plot/figure_legend.h"
#include "plot/figure_style.h"
#include "plot/number_ticker.h"
#include "plot/panel_filler.h"
#include "plot/title_element.h"

namespace quorvane {

namespace {

constexpr double kMarginX = 0.03;  // of the data's range, at each end
constexpr double kMarginY = 0.05;
constexpr double kResidualMargin = 0.08;
constexpr double kTitleShare = 0.001;  // width of the titles in that of a cell: none to spare
constexpr double kDataShare = 2.6;     // height of a data panel in that of its residual panel

constexpr QMargins kMargins(4, 4, 10, 4);
constexpr int kRowGap = 40;  // room for the numbers below a cell, and a little more

constexpr int kNameRoom = 42;  // for the title of a cell

QString PanelName(std::size_t index) {
  return QStringLiteral("cell(%1)").arg(index);
}

void Include(ChartRange& x, ChartRange& y, const FigurePoints& points) {
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    if (!Drawable(points.x[i], points.y[i])) continue;
    x.Include({&points.x[i], 1});
    y.Include({&points.y[i], 1});
  }
}

std::size_t CountPoints(const Figure& figure) {
  std::size_t points = 0;
  for (const FigureCell& cell : figure.cells) {
    for (const FigureSeries& series : cell.series) points += series.data.x.size();
  }
  return points;
}

// Numbers with a true minus sign.
class FigureTicker : public NumberTicker {
 public:
  FigureTicker() : NumberTicker({}) {}

 protected:
  QVector<QString> createLabelVector(const QVector<double>& ticks, const QLocale& locale,
                                     QChar format, int precision) override {
    constexpr QChar kMinus(0x2212);
    QVector<QString> labels = NumberTicker::createLabelVector(ticks, locale, format, precision);
    for (QString& label : labels) label.replace(u'-', kMinus);
    return labels;
  }
};

class FigureFiller {
 public:
  FigureFiller(QCustomPlot& plot, const Figure& figure, QSizeF millimetres)
      : plot_(plot),
        figure_(figure),
        units_((millimetres * kFigureUnitsPerMm).toSize()),
        across_(CellsAcross(figure, millimetres.width())) {}

  void Fill() {
    plot_.clearItems();
    plot_.clearPlottables();
    plot_.plotLayout()->clear();
    plot_.setAutoAddPlottableToLegend(false);
    const std::size_t cells = std::max<std::size_t>(figure_.cells.size(), 1);
    const double perCell = double(CountPoints(figure_)) / double(cells);
    constexpr double kMany = 800.0;
    mark_ = perCell > kMany ? kFigureManyMark : kFigureMark;
    QCPLayoutGrid& page = *plot_.plotLayout();
    page.setMargins(QMargins(4, 8, 8, 8));
    page.setRowSpacing(6);
    auto* grid = new QCPLayoutGrid;
    auto* titled = new QCPLayoutGrid;  // with a title for all panels, if there is one
    titled->setColumnSpacing(0);
    page.addElement(1, 0, titled);
    titled->addElement(0, 1, grid);
    page.addElement(0, 0, Title(figure_.title, kFigureHead, Qt::Horizontal, grid));
    page.addElement(2, 0, Title(figure_.bottomTitle, kFigureTitle, Qt::Horizontal, grid));
    int legendHeight = 0;
    if (!figure_.keys.empty()) {
      auto* legend = new FigureLegend(&plot_, figure_.keys, units_.width() - 12);
      legendHeight = legend->Height();
      page.addElement(3, 0, legend);
      legend->setMargins(QMargins(0, 8, 0, 0));
    }
    ShareHeight(legendHeight);
    if (low_) titled->addElement(0, 0, Title(TitleOfAll(), kFigureTitle, Qt::Vertical, grid));
    titled->setColumnStretchFactor(0, kTitleShare);
    FillGrid(*grid);
  }

 private:
  // Low rows have no room for titles of their own, and a residual panel of them keeps the height
  // that its numbers need.
  void ShareHeight(int legendHeight) {
    constexpr double kLeastResiduals = 100.0;
    constexpr double kTitles = 130.0;  // above and below all cells
    const int rows = (std::max(int(figure_.cells.size()), 1) + across_ - 1) / across_;
    const double row = (units_.height() - legendHeight - kTitles) / rows;
    const double panels = row - kNameRoom - kRowGap - kMargins.top() - kMargins.bottom();
    if (!figure_.residuals || rows == 1) return;
    low_ = panels / (1.0 + kDataShare) < kLeastResiduals;
    if (low_) dataShare_ = std::clamp(panels / kLeastResiduals - 1.0, 1.0, kDataShare);
  }

  std::string TitleOfAll() const {
    return QObject::tr("%1 (above), %2 (below)")
        .arg(QString::fromStdString(figure_.leftTitle))
        .arg(QString::fromStdString(figure_.residualTitle))
        .toStdString();
  }

  TitleElement* Title(const std::string& text, int size, Qt::Orientation orientation,
                      const QCPLayoutElement* centre) {
    return new TitleElement(&plot_, QString::fromStdString(text), size, orientation, centre,
                            kFigureLeast);
  }

  // Rows of data panels, each with a row of residual panels below.
  void FillGrid(QCPLayoutGrid& grid) {
    grid.setRowSpacing(2);
    grid.setColumnSpacing(6);
    margins_ = new QCPMarginGroup(&plot_);
    margins_->setParent(&grid);  // goes with the panels when the plot is filled anew
    const int rowsPerCell = figure_.residuals ? 2 : 1;
    for (std::size_t k = 0; k < figure_.cells.size(); ++k) {
      const int row = int(k) / across_ * rowsPerCell;
      const int column = 1 + int(k) % across_;
      const bool lowest = k + std::size_t(across_) >= figure_.cells.size();
      QCPAxisRect* data = AddPanel(grid, row, column, figure_.leftTitle);
      data->setObjectName(PanelName(k));
      FillCell(figure_.cells[k], *data);
      grid.setRowStretchFactor(row, dataShare_);
      QCPAxisRect* last = data;
      if (figure_.residuals) {
        last = AddPanel(grid, row + 1, column, figure_.residualTitle);
        FillResiduals(figure_.cells[k], *data, *last);
      }
      if (!lowest) last->setMinimumMargins(last->minimumMargins() + QMargins(0, 0, 0, kRowGap));
    }
    for (int k = 0; k < grid.columnCount(); ++k) {
      grid.setColumnStretchFactor(k, k == 0 ? kTitleShare : 1.0);
    }
  }

  QCPAxisRect* AddPanel(QCPLayoutGrid& grid, int row, int column, const std::string& title) {
    auto* rect = new QCPAxisRect(&plot_);
    grid.addElement(row, column, rect);
    if (column == 1 && !low_)
      grid.addElement(row, 0, Title(title, kFigureTitle, Qt::Vertical, rect));
    rect->setMinimumMargins(kMargins);
    rect->setMinimumSize(40, 30);
    rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins_);
    return rect;
  }

  void StyleAxes(QCPAxisRect& rect, bool labels, int ticksUp) {
    for (QCPAxis* axis : rect.axes()) {
      const bool across = axis->orientation() == Qt::Horizontal;
      const bool left = axis == rect.axis(QCPAxis::atLeft);
      const bool bottom = axis == rect.axis(QCPAxis::atBottom);
      const auto ticker = QSharedPointer<FigureTicker>::create();
      ticker->setTickCount(across ? 4 : ticksUp);
      axis->setTicker(ticker);
      axis->setVisible(true);
      axis->setTickLabels(left || (bottom && labels));
      axis->setNumberFormat("gbc");
      axis->setTickLabelFont(ChartFont(kFigureLabel));
      axis->setTickLabelPadding(across ? 6 : 8);
      axis->setTickLength(12);
      axis->setSubTicks(false);
      const QPen pen(Qt::black, kFigureAxisWidth);
      axis->setBasePen(pen);
      axis->setTickPen(pen);
      axis->grid()->setVisible(false);
    }
  }

  // The axes at the top and at the right bear the ticks of those opposite.
  static void Mirror(QCPAxisRect& rect) {
    rect.axis(QCPAxis::atTop)->setRange(rect.axis(QCPAxis::atBottom)->range());
    rect.axis(QCPAxis::atRight)->setRange(rect.axis(QCPAxis::atLeft)->range());
  }

  void FillCell(const FigureCell& cell, QCPAxisRect& rect) {
    ChartRange x;
    ChartRange y;
    for (const FigureSeries& series : cell.series) {
      for (const FigurePoints* points : {&series.data, &series.leftOut, &series.curve}) {
        Include(x, y, *points);
      }
      for (const FigureSpecies& species : series.species) Include(x, y, species.curve);
    }
    StyleAxes(rect, !figure_.residuals, 5);
    rect.axis(QCPAxis::atBottom)->setRange(AxisRange(x, kMarginX));
    rect.axis(QCPAxis::atLeft)->setRange(AxisRange(y, kMarginY));
    if (cell.view) {
      rect.axis(QCPAxis::atBottom)->setRange(cell.view->x1, cell.view->x2);
      rect.axis(QCPAxis::atLeft)->setRange(cell.view->y1, cell.view->y2);
    }
    Mirror(rect);
    for (const FigurePoints& guide : cell.guides) AddCurve(rect, guide, GuidePen());
    for (const FigureSeries& series : cell.series) {
      AddMarks(rect, series.data, FigureMark(series.look, mark_, false));
    }
    for (const FigureSeries& series : cell.series) {
      AddMarks(rect, series.leftOut, FigureMark(series.look, mark_, true));
    }
    for (const FigureSeries& series : cell.series) {
      AddCurve(rect, series.curve, FigurePen(series.look, false));
      for (const FigureSpecies& species : series.species) {
        AddCurve(rect, species.curve,
                 FigurePen({series.look.color, series.look.symbol, species.stroke}, true));
      }
    }
    if (y.Empty()) SayNoData(rect);
    NameCell(rect, cell.title);
  }

  void FillResiduals(const FigureCell& cell, const QCPAxisRect& above, QCPAxisRect& rect) {
    StyleAxes(rect, true, 3);
    const double reach = figure_.residualReach * (1.0 + kResidualMargin);
    rect.axis(QCPAxis::atBottom)->setRange(above.axis(QCPAxis::atBottom)->range());
    rect.axis(QCPAxis::atLeft)->setRange(-reach, reach);
    Mirror(rect);
    const QCPRange across = rect.axis(QCPAxis::atBottom)->range();
    AddCurve(rect, {{across.lower, across.upper}, {0.0, 0.0}}, GuidePen());
    for (const FigureSeries& series : cell.series) {
      AddMarks(rect, series.residuals,
               FigureMark(series.look, std::min(mark_, kFigureResidualMark), false));
    }
  }

  static QPen GuidePen() { return {QColor(128, 128, 128), kFigureAxisWidth}; }

  void AddMarks(QCPAxisRect& rect, const FigurePoints& points, const QCPScatterStyle& style) {
    if (points.x.empty()) return;
    auto* graph = new QCPGraph(rect.axis(QCPAxis::atBottom), rect.axis(QCPAxis::atLeft));
    graph->setLineStyle(QCPGraph::lsNone);
    graph->setScatterStyle(style);
    graph->setAntialiasedScatters(true);
    graph->setAdaptiveSampling(false);
    for (std::size_t i = 0; i < points.x.size(); ++i) {
      if (Drawable(points.x[i], points.y[i])) graph->addData(points.x[i], points.y[i]);
    }
  }

  void AddCurve(QCPAxisRect& rect, const FigurePoints& points, const QPen& pen) {
    if (points.x.empty()) return;
    auto* curve = new ChartLine(rect.axis(QCPAxis::atBottom), rect.axis(QCPAxis::atLeft), false);
    curve->setPen(pen);
    curve->setAntialiased(true);
    QVector<QCPCurveData> data;
    data.reserve(qsizetype(points.x.size()));
    for (std::size_t i = 0; i < points.x.size(); ++i) {
      const bool drawable = Drawable(points.x[i], points.y[i]);
      data += QCPCurveData(double(i), drawable ? points.x[i] : qQNaN(),
                           drawable ? points.y[i] : qQNaN());
    }
    curve->data()->set(data, true);
  }

  QCPItemText* AddText(QCPAxisRect& rect, const QString& text, double x, double y) {
    auto* item = new QCPItemText(&plot_);
    item->setClipAxisRect(&rect);
    item->setText(text);
    item->setFont(ChartFont(kFigureTitle));
    item->position->setAxisRect(&rect);
    item->position->setType(QCPItemPosition::ptAxisRectRatio);
    item->position->setCoords(x, y);
    return item;
  }

  // Above the axes, where no data are.
  void NameCell(QCPAxisRect& rect, const std::string& title) {
    if (title.empty()) return;
    rect.setMinimumMargins(rect.minimumMargins() + QMargins(0, kNameRoom, 0, 0));
    QCPItemText* text = AddText(rect, QString::fromStdString(title), 0.0, 0.0);
    text->setClipToAxisRect(false);
    text->setPositionAlignment(Qt::AlignBottom | Qt::AlignLeft);
    text->setPadding(QMargins(0, 0, 0, 4));
  }

  void SayNoData(QCPAxisRect& rect) {
    for (const auto side : {QCPAxis::atLeft, QCPAxis::atBottom}) {
      rect.axis(side)->setTickLabels(false);
    }
    AddText(rect, QObject::tr("No data"), 0.5, 0.5)->setColor(Qt::gray);
  }

  QCustomPlot& plot_;
  const Figure& figure_;
  QSize units_;
  int across_;
  QCPMarginGroup* margins_ = nullptr;
  double mark_ = kFigureMark;
  bool low_ = false;  // one title for all rows
  double dataShare_ = kDataShare;
};

}  // namespace

void FillFigure(QCustomPlot& plot, const Figure& figure, QSizeF millimetres) {
  FigureFiller(plot, figure, millimetres).Fill();
}

QCPAxisRect* DataPanel(const QCustomPlot& plot, std::size_t index) {
  return plot.findChild<QCPAxisRect*>(PanelName(index));
}

int CellsAcross(const Figure& figure, double width) {
  constexpr double kLeastWidth = 50.0;  // mm
  const int cells = std::max(int(figure.cells.size()), 1);
  const int most = std::clamp(int(width / kLeastWidth), 1, cells);
  const int rows = (cells + most - 1) / most;
  return (cells + rows - 1) / rows;
}

}  // namespace quorvane
