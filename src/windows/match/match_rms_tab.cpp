#include "windows/match/match_rms_tab.h"

#include <QGridLayout>
#include <QPushButton>

#include "match/match_plots.h"
#include "plot/chart_widget.h"
#include "windows/controls/control_names.h"
#include "windows/match/match_controls.h"

namespace quorvane {

MatchRmsTab::MatchRmsTab(const MatchResult& result, QWidget* parent)
    : QWidget(parent), result_(result) {
  BuildWidgets();
  ConnectSignals();
  Clear();
}

void MatchRmsTab::BuildWidgets() {
  frRMSPlot_ = new OffsetChoice(
      "frRMSPlot", "optRMSPlot",
      {ElementName("lblRMSPlot", 0), ElementName("lblRMSPlot", 1), ElementName("lblRMSPlot", 2)});
  cmdZoomOutRMS_ = MakeButton("cmdZoomOutRMS", tr("Zoom Out"), tr("Show all of the plot"), "Alt+Z");
  TChartMatchFit2_ = Named(new ChartWidget, "TChartMatchFit2");
  auto* layout = new QGridLayout(this);
  layout->addWidget(TChartMatchFit2_, 0, 0, 3, 1);
  layout->addWidget(frRMSPlot_, 0, 1);
  layout->addWidget(cmdZoomOutRMS_, 1, 1);
  layout->setColumnStretch(0, 1);
  layout->setRowStretch(2, 1);
}

void MatchRmsTab::ConnectSignals() {
  connect(frRMSPlot_, &OffsetChoice::Changed, this, &MatchRmsTab::ShowPlot);
  connect(cmdZoomOutRMS_, &QPushButton::clicked, TChartMatchFit2_, &ChartWidget::ShowAll);
}

void MatchRmsTab::ShowMatch() {
  frRMSPlot_->Choose(Offsets::kXY);
  ShowPlot();
}

void MatchRmsTab::Clear() {
  TChartMatchFit2_->SetChart(PlotRms({}, frRMSPlot_->Chosen()));
}

void MatchRmsTab::ShowPlot() {
  TChartMatchFit2_->SetChart(PlotRms(result_, frRMSPlot_->Chosen()));
}

}  // namespace quorvane
