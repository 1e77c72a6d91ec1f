#include "plot/panel_filler.h"

#include <qcustomplot.h>

#include <algorithm>

#include "plot/chart_color.h"
#include "plot/chart_font.h"
#include "plot/chart_line.h"
#include "plot/chart_map.h"
#include "plot/number_ticker.h"

namespace quorvane {

namespace {

constexpr double kLineWidth = 1.25;
constexpr double kMarkWidth = 1.0;
constexpr double kCrossSize = 7.0;
constexpr double kDotSize = 4.0;
constexpr double kTriangleSize = 5.0;

bool IsZeroLine(const ChartSeries& series) {
  return series.style == SeriesStyle::kLine &&
         std::all_of(series.y.begin(), series.y.end(), [](double y) { return y == 0.0; });
}

QCPScatterStyle ScatterStyle(const ChartSeries& series) {
  const QPen pen(ToQColor(series.color), kMarkWidth);
  const QBrush filled(pen.color());
  switch (series.style) {
    case SeriesStyle::kDot:
      return {QCPScatterStyle::ssDisc, pen, filled, kDotSize};
    case SeriesStyle::kRectangle:
      return {QCPScatterStyle::ssSquare, pen, filled, kDotSize};
    case SeriesStyle::kTriangle:
      return {QCPScatterStyle::ssTriangle, pen, filled, kTriangleSize};
    case SeriesStyle::kDownTriangle:
      return {QCPScatterStyle::ssTriangleInverted, pen, filled, kTriangleSize};
    case SeriesStyle::kDiagonalCross:
      return {QCPScatterStyle::ssCross, pen, Qt::NoBrush, kCrossSize};
    case SeriesStyle::kCross:
    case SeriesStyle::kLine:
      break;
  }
  return {QCPScatterStyle::ssPlus, pen, Qt::NoBrush, kCrossSize};
}

// Whether the lines of a panel have more points than can be smoothed while a user zooms.
bool IsCrowded(const ChartPanel& panel) {
  constexpr std::size_t kMostSmoothed = 20000;
  std::size_t points = 0;
  for (const ChartSeries& series : panel.series) {
    if (series.style == SeriesStyle::kLine) points += series.x.size();
  }
  return points > kMostSmoothed;
}

}  // namespace

QString MarkName(std::size_t index) {
  return QStringLiteral("mark(%1)").arg(index);
}

PanelFiller::PanelFiller(QCustomPlot& plot, QCPAxisRect& rect)
    : plot_(plot),
      rect_(rect),
      bottom_(rect.axis(QCPAxis::atBottom)),
      left_(rect.axis(QCPAxis::atLeft)) {}

void PanelFiller::StyleAxes(const std::string& leftPattern, bool small, bool lowest) {
  for (QCPAxis* axis : rect_.axes()) {
    const bool across = axis->orientation() == Qt::Horizontal;
    const auto ticker =
        QSharedPointer<NumberTicker>::create(axis == left_ ? leftPattern : std::string());
    ticker->setTickCount(across ? 5 : small ? 3 : 6);
    axis->setTicker(ticker);
    axis->setVisible(true);
    axis->setTickLabels(axis == left_ || (axis == bottom_ && lowest));
    axis->setNumberFormat("gbc");  // powers of ten with a cross and raised digits
    axis->setTickLabelFont(ChartFont(kLabelPixels));
    axis->setTickLength(5);
    axis->setSubTickLength(2);
    axis->setTickLabelPadding(across ? 4 : 5);
    axis->grid()->setVisible(false);
  }
  QObject::connect(bottom_, qOverload<const QCPRange&>(&QCPAxis::rangeChanged),
                   rect_.axis(QCPAxis::atTop), qOverload<const QCPRange&>(&QCPAxis::setRange));
  QObject::connect(left_, qOverload<const QCPRange&>(&QCPAxis::rangeChanged),
                   rect_.axis(QCPAxis::atRight), qOverload<const QCPRange&>(&QCPAxis::setRange));
}

void PanelFiller::Draw(const ChartPanel& panel) {
  if (panel.legend) legend_ = NewLegend(panel);
  crowded_ = IsCrowded(panel);
  if (panel.map) DrawMap(*bottom_, *left_, *panel.map);
  const auto draw = [&](auto&& chosen) {
    for (const ChartSeries& series : panel.series) {
      if (chosen(series)) DrawSeries(series);
    }
  };
  draw(IsZeroLine);
  DrawMarks(panel.marks);
  draw([](const ChartSeries& series) { return series.style != SeriesStyle::kLine; });
  draw([](const ChartSeries& series) {
    return series.style == SeriesStyle::kLine && !IsZeroLine(series);
  });
}

void PanelFiller::SayNoData(bool lowest) {
  left_->setTickLabels(false);
  if (lowest) bottom_->setTickLabels(false);
  QCPItemText* text = NewText(QObject::tr("No data"), kAxisTitlePixels, Qt::gray);
  text->position->setType(QCPItemPosition::ptAxisRectRatio);
  text->position->setCoords(0.5, 0.5);
}

void PanelFiller::DrawSeries(const ChartSeries& series) {
  if (series.style == SeriesStyle::kLine) {
    DrawLine(series);
  } else {
    DrawScatter(series);
  }
}

void PanelFiller::DrawLine(const ChartSeries& series) {
  const double width = IsZeroLine(series) ? kMarkWidth : kLineWidth;
  auto* curve = new ChartLine(bottom_, left_, crowded_);
  curve->setName(QString::fromStdString(series.name));
  // Round joins look the same at this width and cost as much as the rest of the curve.
  curve->setPen(QPen(ToQColor(series.color), width, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
  curve->setAntialiased(true);
  const std::size_t count = std::min(series.x.size(), series.y.size());
  QVector<QCPCurveData> points;
  points.reserve(qsizetype(count));
  for (std::size_t i = 0; i < count; ++i) {
    const bool drawable = Drawable(series.x[i], series.y[i]);
    points +=
        QCPCurveData(double(i), drawable ? series.x[i] : qQNaN(), drawable ? series.y[i] : qQNaN());
  }
  curve->data()->set(points, true);
  List(curve);
}

void PanelFiller::DrawScatter(const ChartSeries& series) {
  auto* graph = new QCPGraph(bottom_, left_);
  graph->setName(QString::fromStdString(series.name));
  graph->setPen(QPen(ToQColor(series.color), kMarkWidth));
  graph->setLineStyle(QCPGraph::lsNone);
  graph->setScatterStyle(ScatterStyle(series));
  graph->setAntialiasedScatters(true);
  graph->setAdaptiveSampling(false);
  ForEachPoint(series, [&](double x, double y) { graph->addData(x, y); });
  List(graph);
}

void PanelFiller::List(QCPAbstractPlottable* plottable) {
  if (legend_ != nullptr && !plottable->name().isEmpty()) plottable->addToLegend(legend_);
}

// At the top in the corner with fewer points; in the middle where only that is free, as over a
// valley.
Qt::Alignment PanelFiller::LegendPlace(const ChartPanel& panel) const {
  constexpr double kMiddle = 1.0 / 6.0;  // of the width, on either side of the centre
  int left = 0, middle = 0, right = 0;
  const QCPRange& across = bottom_->range();
  for (const ChartSeries& series : panel.series) {
    ForEachPoint(series, [&](double x, double y) {
      if (y <= left_->range().center()) return;
      (x > across.center() ? right : left) += 1;
      middle += std::abs(x - across.center()) < kMiddle * across.size();
    });
  }
  if (left > 0 && right > 0 && middle == 0) return Qt::AlignTop | Qt::AlignHCenter;
  return Qt::AlignTop | (right > left ? Qt::AlignLeft : Qt::AlignRight);
}

QCPLegend* PanelFiller::NewLegend(const ChartPanel& panel) {
  auto* legend = new QCPLegend;
  rect_.insetLayout()->addElement(legend, LegendPlace(panel));
  legend->setLayer("legend");
  legend->setFont(ChartFont(kLabelPixels));
  legend->setBorderPen(Qt::NoPen);
  legend->setIconSize(16, 14);
  rect_.insetLayout()->setMargins(QMargins(10, 10, 10, 10));  // clear of the axes and ticks
  return legend;
}

// The texts stand at the top, in turn on three lines, on the side where there is more room.
void PanelFiller::DrawMarks(const std::vector<ChartMark>& marks) {
  constexpr int kTextLines = 3;
  int line = 0;
  for (std::size_t i = 0; i < marks.size(); ++i) {
    const ChartMark& mark = marks[i];
    if (!Drawable(mark.x, 0.0)) continue;
    auto* stroke = new QCPItemStraightLine(&plot_);
    if (&rect_ == plot_.axisRect(0)) stroke->setObjectName(MarkName(i));
    stroke->setClipAxisRect(&rect_);
    stroke->setPen(QPen(ToQColor(mark.color), kMarkWidth));
    for (QCPItemPosition* point : {stroke->point1, stroke->point2}) {
      Attach(point);
      point->setTypeY(QCPItemPosition::ptAxisRectRatio);
      point->setCoords(mark.x, point == stroke->point1 ? 0.0 : 1.0);
    }
    if (mark.text.empty()) continue;
    QCPItemText* text =
        NewText(QString::fromStdString(mark.text), kLabelPixels, ToQColor(mark.color));
    const bool atRight = mark.x <= bottom_->range().center();
    text->setPositionAlignment(Qt::AlignTop | (atRight ? Qt::AlignLeft : Qt::AlignRight));
    text->setPadding(QMargins(4, 6 + line * (kLabelPixels + 3), 4, 0));
    text->position->setTypeY(QCPItemPosition::ptAxisRectRatio);
    text->position->setParentAnchorX(stroke->point1);
    text->position->setCoords(0.0, 0.0);
    line = (line + 1) % kTextLines;
  }
}

QCPItemText* PanelFiller::NewText(const QString& text, int pixels, const QColor& color) {
  auto* item = new QCPItemText(&plot_);
  item->setClipAxisRect(&rect_);
  item->setText(text);
  item->setFont(ChartFont(pixels));
  item->setColor(color);
  Attach(item->position);
  return item;
}

void PanelFiller::Attach(QCPItemPosition* position) {
  position->setAxes(bottom_, left_);
  position->setAxisRect(&rect_);
  position->setType(QCPItemPosition::ptPlotCoords);
}

}  // namespace quorvane
