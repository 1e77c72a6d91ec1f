#include "plot/chart_layout.h"

#include <qcustomplot.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "base/chart.h"
#include "base/number_format.h"

namespace quorvane {

namespace {

constexpr int kTitlePixels = 15;
constexpr int kAxisTitlePixels = 14;
constexpr int kLabelPixels = 12;
constexpr int kLeastTitlePixels = 9;
constexpr double kMarginX = 0.04;         // of the data's range, at each end
constexpr double kMarginY = 0.06;         // enough for a whole cross in a low panel
constexpr double kGreatestValue = 1e200;  // axes reach to 1e250
constexpr double kSmallPanel = 0.4;       // share of the height below which ticks are few
constexpr double kLineWidth = 1.25;
constexpr double kMarkWidth = 1.0;
constexpr double kCrossSize = 7.0;
constexpr double kDotSize = 4.0;
constexpr double kTriangleSize = 5.0;

// Without hinting letters have the same widths in all formats and at all enlargements.
QFont ChartFont(int pixels) {
  QFont font;
  font.setFamilies({"Liberation Sans", "Arial", "Helvetica"});
  font.setStyleHint(QFont::SansSerif);
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setPixelSize(pixels);
  return font;
}

QString MarkName(std::size_t index) {
  return QStringLiteral("mark(%1)").arg(index);
}

QColor ToColor(ChartColor color) {
  return QColor(int(color & 0xFF), int(color >> 8 & 0xFF), int(color >> 16 & 0xFF));
}

// Numbers at the ticks: by a pattern if it tells them apart, else with as few digits as do, equally
// many at each.
class NumberTicker : public QCPAxisTicker {
 public:
  explicit NumberTicker(std::string pattern) : pattern_(std::move(pattern)) {}

 protected:
  QVector<QString> createLabelVector(const QVector<double>& ticks, const QLocale&, QChar,
                                     int) override {
    const QVector<QString> patterned = PatternLabels(ticks);
    if (!patterned.isEmpty()) return patterned;
    constexpr qsizetype kPlainLength = 7;  // "-0.0005", "1000000"
    QVector<QString> plain = Labels(ticks, 'f');
    if (Longest(plain) <= kPlainLength) return plain;
    QVector<QString> powers = Labels(ticks, 'e');
    return Longest(plain) <= Longest(powers) ? plain : powers;
  }

 private:
  static qsizetype Longest(const QVector<QString>& labels) {
    qsizetype longest = 0;
    for (const QString& label : labels) longest = std::max(longest, label.size());
    return longest;
  }

  static QVector<QString> Labels(const QVector<double>& ticks, char format) {
    constexpr int kMostDecimals = 17;
    const double step = ticks.size() > 1 ? ticks[1] - ticks[0] : 0.0;
    QVector<QString> labels;
    for (int decimals = 0; decimals <= kMostDecimals; ++decimals) {
      labels.clear();
      bool exact = true;
      for (const double tick : ticks) {
        const bool zero = std::abs(tick) < 1e-6 * step;
        labels += QString::number(zero ? 0.0 : tick, format, zero && format == 'e' ? 0 : decimals);
        exact = exact && std::abs(labels.back().toDouble() - tick) <= 1e-3 * step;
        if (zero && format == 'e') labels.back() = QStringLiteral("0");
      }
      if (exact) break;
    }
    return labels;
  }

  // Empty without a pattern, or if two ticks would read alike or one would be very long.
  QVector<QString> PatternLabels(const QVector<double>& ticks) const {
    constexpr qsizetype kLongest = 12;  // "1,000,000.00"
    QVector<QString> labels;
    if (pattern_.empty()) return labels;
    for (const double tick : ticks) {
      labels += QString::fromStdString(FormatNumber(tick, pattern_));
      const bool twice = labels.indexOf(labels.back()) + 1 < labels.size();
      if (twice || labels.back().size() > kLongest) return {};
    }
    return labels;
  }

  std::string pattern_;
};

// A line of text beside an axis rectangle and centred on it: across, or turned upwards.
class TitleElement : public QCPLayoutElement {
 public:
  TitleElement(QCustomPlot* plot, QString text, int pixels, Qt::Orientation orientation,
               const QCPAxisRect* centre)
      : QCPLayoutElement(plot),
        text_(std::move(text)),
        pixels_(pixels),
        orientation_(orientation),
        centre_(centre) {}

  QSize minimumOuterSizeHint() const override { return Extent(1); }
  QSize maximumOuterSizeHint() const override { return Extent(QWIDGETSIZE_MAX); }

 protected:
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(true);
  }

  void draw(QCPPainter* painter) override {
    const bool upwards = orientation_ == Qt::Vertical;
    const QRect axes = centre_->rect();
    const int room = upwards ? rect().height() : rect().width();
    QFont font = ChartFont(pixels_);
    while (QFontMetricsF(font).horizontalAdvance(text_) > room &&
           font.pixelSize() > kLeastTitlePixels) {
      font.setPixelSize(font.pixelSize() - 1);
    }
    const QFontMetricsF metrics(font);
    const QString text = metrics.elidedText(text_, Qt::ElideRight, room);
    const double width = metrics.horizontalAdvance(text);
    QPointF middle = QRectF(axes).center();
    if (upwards) {
      middle.setX(QRectF(rect()).center().x());
      middle.setY(Inside(middle.y(), rect().top() + width / 2, rect().bottom() - width / 2));
    } else {
      middle.setY(QRectF(rect()).center().y());
      middle.setX(Inside(middle.x(), rect().left() + width / 2, rect().right() - width / 2));
    }
    painter->save();
    painter->setFont(font);
    painter->setPen(Qt::black);
    painter->translate(middle);
    if (upwards) painter->rotate(-90);
    painter->drawText(QPointF(-width / 2, (metrics.ascent() - metrics.descent()) / 2), text);
    painter->restore();
  }

 private:
  static double Inside(double value, double low, double high) {
    return low < high ? std::clamp(value, low, high) : (low + high) / 2;
  }

  QSize Extent(int along) const {
    const int across = text_.isEmpty() ? 1 : QFontMetrics(ChartFont(pixels_)).height();
    return orientation_ == Qt::Vertical ? QSize(across, along) : QSize(along, across);
  }

  QString text_;
  int pixels_;
  Qt::Orientation orientation_;
  const QCPAxisRect* centre_;  // of the same layout
};

// The points of a line without those that it passes anyway within a pixel: what drawing a smooth
// curve of many points costs. Those that are not finite stay.
QVector<QPointF> Thinned(const QVector<QPointF>& points) {
  constexpr double kNear = 1.0;     // pixels, from the last point that is kept
  constexpr double kBeside = 0.05;  // from the way to the next point
  QVector<QPointF> kept;
  kept.reserve(points.size());
  for (qsizetype i = 0; i < points.size(); ++i) {
    if (!kept.isEmpty() && i + 1 < points.size()) {
      const QPointF step = points[i] - kept.back();
      const QPointF way = points[i + 1] - kept.back();
      const double along = QPointF::dotProduct(step, way);
      const double length = std::hypot(way.x(), way.y());
      const double beside = std::abs(step.x() * way.y() - step.y() * way.x());
      if (std::hypot(step.x(), step.y()) < kNear && along >= 0.0 && along <= length * length &&
          beside <= kBeside * length) {
        continue;
      }
    }
    kept += points[i];
  }
  return kept;
}

bool Drawable(double x, double y) {
  return std::abs(x) < kGreatestValue && std::abs(y) < kGreatestValue;  // false for NaN
}

// Calls `visit(x, y)` for each point of `series` that can be drawn.
template <class Visit>
void ForEachPoint(const ChartSeries& series, Visit&& visit) {
  const std::size_t count = std::min(series.x.size(), series.y.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (Drawable(series.x[i], series.y[i])) visit(series.x[i], series.y[i]);
  }
}

struct PanelRange {
  ChartRange x;
  ChartRange y;
};

PanelRange RangeOf(const ChartPanel& panel) {
  PanelRange range;
  for (const ChartSeries& series : panel.series) {
    ForEachPoint(series, [&](double x, double y) {
      range.x.Include({&x, 1});
      range.y.Include({&y, 1});
    });
  }
  return range;
}

QCPRange AxisRange(const ChartRange& range, double margin) {
  constexpr double kNegligible = 1e-12;  // relative; less than that is rounding
  if (range.Empty()) return {0.0, 1.0};
  const double magnitude = std::max(std::abs(range.low), std::abs(range.high));
  const double span = range.high - range.low;
  double spare = margin * span;
  if (span <= kNegligible * magnitude || magnitude < 1 / kGreatestValue) {
    spare = magnitude > 1 / kGreatestValue ? 0.1 * magnitude : 1.0;
  }
  return {range.low - spare, range.high + spare};
}

bool IsZeroLine(const ChartSeries& series) {
  return series.style == SeriesStyle::kLine &&
         std::all_of(series.y.begin(), series.y.end(), [](double y) { return y == 0.0; });
}

QCPScatterStyle ScatterStyle(const ChartSeries& series) {
  const QPen pen(ToColor(series.color), kMarkWidth);
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

// A line that keeps the order of its points, as a graph would not. The screen gets it quickly: the
// time to smooth a line grows with the square of how often it passes the same height, so it is
// drawn in pieces, which a smooth curve is too short for. Noise that fills the panel, or one line
// among very many points, is not smoothed at all. Pictures and prints are drawn whole and smooth.
class Line : public QCPCurve {
 public:
  Line(QCPAxis* bottom, QCPAxis* left, bool crowded) : QCPCurve(bottom, left), crowded_(crowded) {}

 protected:
  void drawCurveLine(QCPPainter* painter, const QVector<QPointF>& points) const override {
    if (painter->modes().testFlag(QCPPainter::pmVectorized)) {
      QCPCurve::drawCurveLine(painter, points);
    } else if (crowded_ || IsWild(points)) {
      painter->setAntialiasing(false);
      painter->setPen(QPen(pen().color(), 0));  // one pixel
      QCPCurve::drawCurveLine(painter, points);
    } else {
      DrawInPieces(painter, Thinned(points));
    }
  }

 private:
  // Pixels up or down to the point at `i`, from 1; 0 across a gap.
  static double Climb(const QVector<QPointF>& points, qsizetype i) {
    const double climb = std::abs(points[i].y() - points[i - 1].y());
    return std::isfinite(climb) ? climb : 0.0;
  }

  static bool IsWild(const QVector<QPointF>& points) {
    constexpr double kMostClimb = 150000.0;
    double climb = 0.0;
    for (qsizetype i = 1; i < points.size(); ++i) climb += Climb(points, i);
    return climb > kMostClimb;
  }

  void DrawInPieces(QCPPainter* painter, const QVector<QPointF>& points) const {
    constexpr double kLongestPiece = 2000.0;  // pixels up and down
    double climb = 0.0;
    qsizetype first = 0;
    for (qsizetype i = 1; i < points.size(); ++i) {
      climb += Climb(points, i);
      if (climb < kLongestPiece && i + 1 < points.size()) continue;
      QCPCurve::drawCurveLine(painter, points.mid(first, i - first + 1));
      first = i;
      climb = 0.0;
    }
  }

  bool crowded_;
};

// Whether the lines of a panel have more points than can be smoothed while a user zooms.
bool IsCrowded(const ChartPanel& panel) {
  constexpr std::size_t kMostSmoothed = 20000;
  std::size_t points = 0;
  for (const ChartSeries& series : panel.series) {
    if (series.style == SeriesStyle::kLine) points += series.x.size();
  }
  return points > kMostSmoothed;
}

// One panel in a plot: its axes and what stands between them, from back to front.
class PanelFiller {
 public:
  PanelFiller(QCustomPlot& plot, QCPAxisRect& rect)
      : plot_(plot),
        rect_(rect),
        bottom_(rect.axis(QCPAxis::atBottom)),
        left_(rect.axis(QCPAxis::atLeft)) {}

  void StyleAxes(const std::string& leftPattern, bool small, bool lowest) {
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

  void Draw(const ChartPanel& panel) {
    if (panel.legend) legend_ = NewLegend(panel);
    crowded_ = IsCrowded(panel);
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

  void SayNoData(bool lowest) {
    left_->setTickLabels(false);
    if (lowest) bottom_->setTickLabels(false);
    QCPItemText* text = NewText(QObject::tr("No data"), kAxisTitlePixels, Qt::gray);
    text->position->setType(QCPItemPosition::ptAxisRectRatio);
    text->position->setCoords(0.5, 0.5);
  }

 private:
  void DrawSeries(const ChartSeries& series) {
    if (series.style == SeriesStyle::kLine) {
      DrawLine(series);
    } else {
      DrawScatter(series);
    }
  }

  void DrawLine(const ChartSeries& series) {
    const double width = IsZeroLine(series) ? kMarkWidth : kLineWidth;
    auto* curve = new Line(bottom_, left_, crowded_);
    curve->setName(QString::fromStdString(series.name));
    // Round joins look the same at this width and cost as much as the rest of the curve.
    curve->setPen(QPen(ToColor(series.color), width, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
    curve->setAntialiased(true);
    const std::size_t count = std::min(series.x.size(), series.y.size());
    QVector<QCPCurveData> points;
    points.reserve(qsizetype(count));
    for (std::size_t i = 0; i < count; ++i) {
      const bool drawable = Drawable(series.x[i], series.y[i]);
      points += QCPCurveData(double(i), drawable ? series.x[i] : qQNaN(),
                             drawable ? series.y[i] : qQNaN());
    }
    curve->data()->set(points, true);
    List(curve);
  }

  void DrawScatter(const ChartSeries& series) {
    auto* graph = new QCPGraph(bottom_, left_);
    graph->setName(QString::fromStdString(series.name));
    graph->setPen(QPen(ToColor(series.color), kMarkWidth));
    graph->setLineStyle(QCPGraph::lsNone);
    graph->setScatterStyle(ScatterStyle(series));
    graph->setAntialiasedScatters(true);
    graph->setAdaptiveSampling(false);
    ForEachPoint(series, [&](double x, double y) { graph->addData(x, y); });
    List(graph);
  }

  void List(QCPAbstractPlottable* plottable) {
    if (legend_ != nullptr && !plottable->name().isEmpty()) plottable->addToLegend(legend_);
  }

  // In the upper corner with fewer points.
  QCPLegend* NewLegend(const ChartPanel& panel) {
    int atRight = 0;
    for (const ChartSeries& series : panel.series) {
      ForEachPoint(series, [&](double x, double y) {
        if (y > left_->range().center()) atRight += x > bottom_->range().center() ? 1 : -1;
      });
    }
    auto* legend = new QCPLegend;
    rect_.insetLayout()->addElement(legend,
                                    Qt::AlignTop | (atRight > 0 ? Qt::AlignLeft : Qt::AlignRight));
    legend->setLayer("legend");
    legend->setFont(ChartFont(kLabelPixels));
    legend->setBorderPen(Qt::NoPen);
    legend->setIconSize(16, 14);
    rect_.insetLayout()->setMargins(QMargins(10, 10, 10, 10));  // clear of the axes and ticks
    return legend;
  }

  // The texts stand at the top, in turn on three lines, on the side where there is more room.
  void DrawMarks(const std::vector<ChartMark>& marks) {
    constexpr int kTextLines = 3;
    int line = 0;
    for (std::size_t i = 0; i < marks.size(); ++i) {
      const ChartMark& mark = marks[i];
      if (!Drawable(mark.x, 0.0)) continue;
      auto* stroke = new QCPItemStraightLine(&plot_);
      if (&rect_ == plot_.axisRect(0)) stroke->setObjectName(MarkName(i));
      stroke->setClipAxisRect(&rect_);
      stroke->setPen(QPen(ToColor(mark.color), kMarkWidth));
      for (QCPItemPosition* point : {stroke->point1, stroke->point2}) {
        Attach(point);
        point->setTypeY(QCPItemPosition::ptAxisRectRatio);
        point->setCoords(mark.x, point == stroke->point1 ? 0.0 : 1.0);
      }
      if (mark.text.empty()) continue;
      QCPItemText* text =
          NewText(QString::fromStdString(mark.text), kLabelPixels, ToColor(mark.color));
      const bool atRight = mark.x <= bottom_->range().center();
      text->setPositionAlignment(Qt::AlignTop | (atRight ? Qt::AlignLeft : Qt::AlignRight));
      text->setPadding(QMargins(4, 6 + line * (kLabelPixels + 3), 4, 0));
      text->position->setTypeY(QCPItemPosition::ptAxisRectRatio);
      text->position->setParentAnchorX(stroke->point1);
      text->position->setCoords(0.0, 0.0);
      line = (line + 1) % kTextLines;
    }
  }

  QCPItemText* NewText(const QString& text, int pixels, const QColor& color) {
    auto* item = new QCPItemText(&plot_);
    item->setClipAxisRect(&rect_);
    item->setText(text);
    item->setFont(ChartFont(pixels));
    item->setColor(color);
    Attach(item->position);
    return item;
  }

  void Attach(QCPItemPosition* position) {
    position->setAxes(bottom_, left_);
    position->setAxisRect(&rect_);
    position->setType(QCPItemPosition::ptPlotCoords);
  }

  QCustomPlot& plot_;
  QCPAxisRect& rect_;
  QCPAxis* bottom_;
  QCPAxis* left_;
  QCPLegend* legend_ = nullptr;
  bool crowded_ = false;
};

double HeightShare(const ChartPanel& panel) {
  return panel.heightShare > 0.0 && std::isfinite(panel.heightShare) ? panel.heightShare : 1.0;
}

void LinkBothWays(QCPAxis* one, QCPAxis* other) {
  const auto changed = qOverload<const QCPRange&>(&QCPAxis::rangeChanged);
  const auto follow = qOverload<const QCPRange&>(&QCPAxis::setRange);
  QObject::connect(one, changed, other, follow);
  QObject::connect(other, changed, one, follow);
}

void Clear(QCustomPlot& plot) {
  plot.clearItems();
  plot.clearPlottables();
  plot.plotLayout()->clear();
  plot.setAutoAddPlottableToLegend(false);
}

// Axis rectangles for `panels` in the column right of the left titles, below the Chart's title and
// above the bottom title. Titles are elements of their own, not the axes' labels, so that those of
// all panels stand in one line and a long one takes no room from the axes.
std::vector<QCPAxisRect*> LayOut(QCustomPlot& plot, const Chart& chart,
                                 const std::vector<ChartPanel>& panels) {
  QCPLayoutGrid& grid = *plot.plotLayout();
  grid.setMargins(QMargins(2, 3, 0, 5));
  grid.setRowSpacing(3);
  grid.setColumnSpacing(2);
  std::vector<QCPAxisRect*> rects;
  for (const ChartPanel& panel : panels) {
    auto* rect = new QCPAxisRect(&plot);
    const int row = int(rects.size()) + 1;
    grid.addElement(row, 1, rect);
    grid.addElement(row, 0,
                    new TitleElement(&plot, QString::fromStdString(panel.leftTitle),
                                     kAxisTitlePixels, Qt::Vertical, rect));
    grid.setRowStretchFactor(row, HeightShare(panel));
    rect->setMinimumMargins(QMargins(8, 3, 14, 3));
    rects.push_back(rect);
  }
  const auto addAcross = [&](int row, const std::string& title, int pixels) {
    grid.addElement(row, 1,
                    new TitleElement(&plot, QString::fromStdString(title), pixels, Qt::Horizontal,
                                     rects.front()));
  };
  addAcross(0, chart.title, kTitlePixels);
  addAcross(int(rects.size()) + 1, chart.bottomTitle, kAxisTitlePixels);
  auto* margins = new QCPMarginGroup(&plot);
  margins->setParent(rects.front());  // goes with the panels when the plot is filled anew
  for (QCPAxisRect* rect : rects) rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins);
  return rects;
}

}  // namespace

void FillPlot(QCustomPlot& plot, const Chart& chart) {
  const std::vector<ChartPanel> panels =
      chart.panels.empty() ? std::vector<ChartPanel>(1) : chart.panels;
  Clear(plot);
  const std::vector<QCPAxisRect*> rects = LayOut(plot, chart, panels);

  ChartRange common;
  double height = 0.0;
  for (const ChartPanel& panel : panels) {
    const ChartRange x = RangeOf(panel).x;
    if (!x.Empty()) common.Include(std::vector<double>{x.low, x.high});
    height += HeightShare(panel);
  }
  for (std::size_t i = 0; i < panels.size(); ++i) {
    const bool lowest = i + 1 == panels.size();
    QCPAxis* bottom = rects[i]->axis(QCPAxis::atBottom);
    PanelFiller filler(plot, *rects[i]);
    filler.StyleAxes(panels[i].leftPattern, HeightShare(panels[i]) < kSmallPanel * height, lowest);
    if (i > 0) LinkBothWays(rects[i - 1]->axis(QCPAxis::atBottom), bottom);
    const ChartRange y = RangeOf(panels[i]).y;
    bottom->setRange(AxisRange(common, kMarginX));
    rects[i]->axis(QCPAxis::atLeft)->setRange(AxisRange(y, kMarginY));
    filler.Draw(panels[i]);
    if (y.Empty()) filler.SayNoData(lowest && common.Empty());
  }
  if (chart.view) {
    rects.front()->axis(QCPAxis::atBottom)->setRange(chart.view->x1, chart.view->x2);
    rects.front()->axis(QCPAxis::atLeft)->setRange(chart.view->y1, chart.view->y2);
  }
}

QCPItemStraightLine* MarkLine(const QCustomPlot& plot, std::size_t index) {
  return plot.findChild<QCPItemStraightLine*>(MarkName(index));
}

}  // namespace quorvane
