#include "windows/sim/sim_window.h"

#include <QPointer>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "base/host.h"
#include "plot/chart_widget.h"
#include "windows/controls/busy_pointer.h"
#include "windows/session/session.h"
#include "windows/sim/series_window.h"
#include "windows/sim/sim_data_tab.h"
#include "windows/sim/sim_input_tab.h"

namespace quorvane {

namespace {

enum SimTab { kInput, kData, kPlots };

}  // namespace

SimWindow::SimWindow(Session& session, Host& host, QWidget* parent)
    : QWidget(parent),
      session_(session),
      host_(host),
      uniform_(SeedFromClock()),
      input_(new SimInputTab(session, simulator_)),
      data_(new SimDataTab(session, simulator_)),
      plots_(new SimPlotTab),
      tabSim_(new QTabWidget) {
  BuildWidgets();
  ConnectSignals();
  SetKDisplay(simulator_.Inputs, session_.Module.Preferences.KFormat);
  input_->ShowInputs();
  plots_->ShowModel(simulator_.Inputs.model);
}

void SimWindow::BuildWidgets() {
  setObjectName("frmSim");
  setWindowTitle(tr("Simulation"));
  tabSim_->setObjectName("tabSim");
  tabSim_->addTab(input_, tr("Input"));
  tabSim_->addTab(data_, tr("Data"));
  tabSim_->addTab(plots_, tr("Plots"));
  tabSim_->setTabEnabled(kData, false);
  tabSim_->setTabEnabled(kPlots, false);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(tabSim_);
}

void SimWindow::ConnectSignals() {
  connect(input_, &SimInputTab::ModelChosen, this,
          [this] { plots_->ShowModel(simulator_.Inputs.model); });
  connect(input_, &SimInputTab::HeaderChanged, data_, &SimDataTab::ShowText);
  connect(input_, &SimInputTab::SimulateRequested, this, &SimWindow::Calculate);
  connect(input_, &SimInputTab::SeriesRequested, this, &SimWindow::OpenSeries);
  connect(input_, &SimInputTab::PlanRequested, this, &SimWindow::PlanRequested);
  connect(data_, &SimDataTab::Saved, this, &SimWindow::FileSaved);
}

// What is being typed is still in the old form.
void SimWindow::RefreshDisplay() {
  const KDisplay display = session_.Module.Preferences.KFormat;
  if (simulator_.Inputs.kDisplay == display) return;
  input_->CommitPending();
  constants_.Change(simulator_.Inputs, display);
  input_->ShowInputs();
}

bool SimWindow::CommitPending() {
  return input_->CommitPending();
}

void SimWindow::SetCalculating(bool on) {
  tabSim_->setEnabled(!on);
}

void SimWindow::Calculate() {
  if (session_.Calculating || !session_.CommitPending() || !input_->CheckEntries()) return;
  const QPointer<QWidget> focus = focusWidget();  // disabling takes it away
  session_.Calculating = true;
  host_.GoToEndOfLog();
  emit CalculatingChanged(true);
  SimOutcome outcome;
  {
    const BusyPointer busy;
    outcome = Simulate(simulator_, uniform_, host_);
  }
  session_.Calculating = false;
  ShowRun(outcome.ok);
  emit CalculatingChanged(false);
  if (focus) focus->setFocus();
}

void SimWindow::OpenSeries() {
  if (session_.Calculating || !session_.CommitPending() || !input_->CheckEntries()) return;
  auto* series = new SeriesWindow(session_, host_, simulator_.Inputs, this);
  series->setAttribute(Qt::WA_DeleteOnClose);
  connect(series, &SeriesWindow::Written, this, &SimWindow::SeriesWritten);
  series->open();
}

void SimWindow::ShowRun(bool ok) {
  data_->ShowText();
  plots_->ShowRun(ChartsOfRun(ok));
  if (!ok) return;
  tabSim_->setTabEnabled(kData, true);
  tabSim_->setTabEnabled(kPlots, true);
}

// Kept, because what the chart of a column means depends on the entries of its run. A failed run
// has no more than the signal up to the failure.
SimCharts SimWindow::ChartsOfRun(bool ok) const {
  SimCharts charts;
  for (std::size_t k = 0; k < charts.size(); ++k) {
    const auto graph = static_cast<SimGraph>(k);
    const bool made = ok && SimGraphEnabled(simulator_.Inputs.model, graph);
    if (made || graph == SimGraph::kTotalSignal) {
      charts[k] = SimChart(simulator_, graph);
    } else {
      charts[k].title = SimGraphCaptions[k];
    }
  }
  return charts;
}

PrintContent SimWindow::Printed() const {
  if (tabSim_->currentIndex() != kPlots) return {};
  return plots_->ShownChart();
}

}  // namespace quorvane
