// The tab "Plots" of frmSim: the charts of the last run.
#pragma once

#include <QWidget>

#include "sim/sim_chart.h"

class QButtonGroup;

namespace quorvane {

class ChartWidget;

// A chart for each SimGraph.
using SimCharts = std::array<Chart, SimGraphCaptions.size()>;

class SimPlotTab : public QWidget {
  Q_OBJECT
 public:
  explicit SimPlotTab(QWidget* parent = nullptr);

  // Offers the graphs of a model; the chart stays.
  void ShowModel(int model);

  // Keeps the charts of a run and shows the total signal.
  void ShowRun(SimCharts charts);

  const ChartWidget* ShownChart() const { return teeSimul_; }

 private:
  void BuildWidgets();
  void ShowGraph(int graph);

  SimCharts charts_;
  QButtonGroup* optGraphType_;
  ChartWidget* teeSimul_;
};

}  // namespace quorvane
