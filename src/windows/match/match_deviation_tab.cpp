#include "windows/match/match_deviation_tab.h"

#include <QGridLayout>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>

#include "match/match_plots.h"
#include "plot/chart_widget.h"
#include "windows/controls/control_names.h"
#include "windows/match/match_controls.h"
#include "windows/session/dialogs.h"

namespace quorvane {

MatchDeviationTab::MatchDeviationTab(const MatchSeries& series, const MatchResult& result,
                                     Dialogs& ask, QWidget* parent)
    : QWidget(parent), series_(series), result_(result), ask_(ask) {
  BuildWidgets();
  ConnectSignals();
  ClearPlot();
}

void MatchDeviationTab::BuildWidgets() {
  frDevPlot_ = new OffsetChoice("frDevPlot", "optDevPlot", {"lblNone", "lblYonly", "lblXnY"});
  QGroupBox* files = BuildFileBox();
  TChartDevs_ = Named(new ChartWidget, "TChartDevs");
  auto* layout = new QGridLayout(this);
  layout->addWidget(TChartDevs_, 0, 0, 2, 1);
  layout->addWidget(frDevPlot_, 0, 1);
  layout->addWidget(files, 1, 1);
  layout->setColumnStretch(0, 1);
  layout->setRowStretch(1, 1);
}

QGroupBox* MatchDeviationTab::BuildFileBox() {
  plotSelected_ = Named(new QRadioButton(tr("Plot selected sets")), "optPlotChoice(0)");
  lisPlotDevs_ = Named(new QListWidget, "lisPlotDevs");
  lisPlotDevs_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  lisPlotDevs_->setAccessibleName(tr("Scans"));
  plotEvery_ = Named(new QRadioButton(tr("Plot every Nth;  N= ")), "optPlotChoice(1)");
  plotEvery_->setChecked(true);
  upDownPlotBy_ = MakeStepBox("upDownPlotBy", "txtPlotByN", 1);
  upDownPlotBy_->setAccessibleName(tr("N"));
  cmdMakePlot_ = MakeButton("cmdMakePlot", tr("Create Plot"), tr("Plot the deviations"), "Alt+C");
  cmdZoomOut_ = MakeButton("cmdZoomOut", tr("Zoom Out"), tr("Show all of the plot"), "Alt+Z");
  auto* box = Named(new QGroupBox(tr("Files to Plot")), "frFiles2Plot");
  auto* layout = new QGridLayout(box);
  layout->addWidget(plotSelected_, 0, 0, 1, 2);
  layout->addWidget(lisPlotDevs_, 1, 0, 1, 2);
  layout->addWidget(plotEvery_, 2, 0);
  layout->addWidget(upDownPlotBy_, 2, 1);
  layout->addWidget(cmdMakePlot_, 3, 0);
  layout->addWidget(cmdZoomOut_, 3, 1);
  layout->setRowStretch(1, 1);
  return box;
}

void MatchDeviationTab::ConnectSignals() {
  // Whoever picks scans, or a number, wants those.
  connect(lisPlotDevs_, &QListWidget::itemSelectionChanged, plotSelected_,
          [this] { plotSelected_->setChecked(true); });
  connect(upDownPlotBy_, &QSpinBox::valueChanged, plotEvery_,
          [this] { plotEvery_->setChecked(true); });
  connect(cmdMakePlot_, &QPushButton::clicked, this, &MatchDeviationTab::MakePlot);
  connect(cmdZoomOut_, &QPushButton::clicked, TChartDevs_, &ChartWidget::ShowAll);
}

void MatchDeviationTab::ShowMatch() {
  Clear();
  ListScans(*lisPlotDevs_, series_);
}

void MatchDeviationTab::Clear() {
  const QSignalBlocker quietList(lisPlotDevs_);
  const QSignalBlocker quietNumber(upDownPlotBy_);
  lisPlotDevs_->clear();
  upDownPlotBy_->setValue(1);
  ClearPlot();
}

void MatchDeviationTab::ClearPlot() {
  TChartDevs_->SetChart(PlotMatchDeviations({}, {}, frDevPlot_->Chosen(), {}, {}));
}

std::vector<std::size_t> MatchDeviationTab::ChosenScans() const {
  if (plotEvery_->isChecked()) {
    return EveryNth(series_.names.size(), static_cast<std::size_t>(upDownPlotBy_->value()));
  }
  std::vector<std::size_t> chosen;
  for (int row = 0; row < lisPlotDevs_->count(); ++row) {
    if (lisPlotDevs_->item(row)->isSelected()) chosen.push_back(static_cast<std::size_t>(row));
  }
  return chosen;
}

void MatchDeviationTab::MakePlot() {
  const std::vector<std::size_t> chosen = ChosenScans();
  ClearPlot();
  if (chosen.empty()) {
    ask_.ShowMessage(this, {}, tr("No datasets were selected!  Try Again!"), MessageIcon::kNone);
    return;
  }
  TChartDevs_->SetChart(PlotMatchDeviations(series_, result_, frDevPlot_->Chosen(), chosen,
                                            ScanColors(series_.names.size())));
}

}  // namespace quorvane
