#include "windows/sim/sim_plot_tab.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>
#include <utility>

#include "plot/chart_widget.h"
#include "windows/controls/control_names.h"

namespace quorvane {

SimPlotTab::SimPlotTab(QWidget* parent)
    : QWidget(parent), optGraphType_(new QButtonGroup(this)), teeSimul_(new ChartWidget) {
  BuildWidgets();
  connect(optGraphType_, &QButtonGroup::idClicked, this, &SimPlotTab::ShowGraph);
}

void SimPlotTab::BuildWidgets() {
  teeSimul_->setObjectName("teeSimul");
  auto* graphs = new QHBoxLayout;
  for (std::size_t k = 0; k < SimGraphCaptions.size(); ++k) {
    const std::string_view caption = SimGraphCaptions[k];
    const int graph = static_cast<int>(k);
    auto* button = new QRadioButton(QLatin1String(caption.data(), qsizetype(caption.size())));
    optGraphType_->addButton(Named(button, ElementName("optGraphType", graph)), graph);
    graphs->addWidget(button);
  }
  graphs->addStretch();
  optGraphType_->button(0)->setChecked(true);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(graphs);
  layout->addWidget(teeSimul_, 1);
}

void SimPlotTab::ShowModel(int model) {
  for (QAbstractButton* button : optGraphType_->buttons()) {
    const auto graph = static_cast<SimGraph>(optGraphType_->id(button));
    button->setEnabled(SimGraphEnabled(model, graph));
  }
}

void SimPlotTab::ShowRun(SimCharts charts) {
  charts_ = std::move(charts);
  optGraphType_->button(0)->setChecked(true);
  ShowGraph(0);
}

void SimPlotTab::ShowGraph(int graph) {
  teeSimul_->SetChart(charts_[static_cast<std::size_t>(graph)]);
}

}  // namespace quorvane
