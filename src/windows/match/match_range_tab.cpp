#include "windows/match/match_range_tab.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/number_format.h"
#include "match/match_plots.h"
#include "plot/chart_widget.h"
#include "windows/controls/control_names.h"
#include "windows/match/match_controls.h"

namespace quorvane {

MatchRangeTab::MatchRangeTab(QWidget* parent) : QWidget(parent) {
  BuildWidgets();
  ConnectSignals();
  teeMatch_->SetChart(PlotScans({}, {}));
  cmdDoMatch_->setEnabled(false);
}

void MatchRangeTab::BuildWidgets() {
  teeMatch_ = Named(new ChartWidget, "teeMatch");
  lblFittingRange_ = Named(new QLabel, "lblFittingRange");
  lblFittingRange_->setWordWrap(true);
  cmdDoMatch_ = MakeButton("cmdDoMatch", tr("Match Files"),
                           tr("Compare the scans with the last of them inside the range"), "Alt+A");
  auto* foot = new QHBoxLayout;
  foot->addWidget(lblFittingRange_, 1);
  foot->addWidget(cmdDoMatch_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(teeMatch_, 1);
  layout->addLayout(foot);
}

void MatchRangeTab::ConnectSignals() {
  connect(cmdDoMatch_, &QPushButton::clicked, this, &MatchRangeTab::MatchRequested);
  connect(teeMatch_, &ChartWidget::BottomRangeChanged, this, &MatchRangeTab::ShowRange);
  connect(teeMatch_, &ChartWidget::PointerMoved, this, [this](double radius, double signal) {
    emit PointerMoved(QString::fromStdString(FormatNumber(radius, "##.####") + ", " +
                                             FormatNumber(signal, "##.####")));
  });
}

void MatchRangeTab::ShowSeries(const MatchSeries& series) {
  cmdDoMatch_->setEnabled(true);
  teeMatch_->SetChart(PlotScans(series, ScanColors(series.scans.size())));
}

FittingRange MatchRangeTab::Range() const {
  const ChartRange shown = teeMatch_->BottomRange();
  return {shown.low, shown.high};
}

void MatchRangeTab::ShowRange() {
  const FittingRange range = Range();
  lblFittingRange_->setText(
      tr("Fitting range %1 to %2 cm. Drag to the right over the points that count; to the "
         "left to see all.")
          .arg(QString::fromStdString(FormatNumber(range.low, "0.0000")),
               QString::fromStdString(FormatNumber(range.high, "0.0000"))));
}

}  // namespace quorvane
