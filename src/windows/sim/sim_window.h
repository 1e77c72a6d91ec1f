// frmSim: the simulator, from its entries to a scan file and plots.
#pragma once

#include <QWidget>

#include "sim/simulate.h"
#include "windows/session/printable.h"
#include "windows/sim/sim_display.h"
#include "windows/sim/sim_plot_tab.h"

class QTabWidget;

namespace quorvane {

class Host;
class SimDataTab;
class SimInputTab;
struct Session;

class SimWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  SimWindow(Session& session, Host& host, QWidget* parent = nullptr);  // both outlive it

  // The display of K may have changed: shows the entries in the new form.
  void RefreshDisplay();

  // Stores what is being typed. False if it was refused.
  bool CommitPending();

  // While a calculation runs nothing here can be changed.
  void SetCalculating(bool on);

  PrintContent Printed() const override;

 signals:
  void CalculatingChanged(bool on);
  void FileSaved();
  // A series was written; its files of `load` are to be loaded.
  void SeriesWritten(const QStringList& files, bool load);
  void PlanRequested();

 private:
  void BuildWidgets();
  void ConnectSignals();
  void Calculate();
  void OpenSeries();
  void ShowRun(bool ok);
  SimCharts ChartsOfRun(bool ok) const;

  Session& session_;
  Host& host_;
  Simulator simulator_;
  SimConstantDisplay constants_;
  UniformSource uniform_;
  SimInputTab* input_;
  SimDataTab* data_;
  SimPlotTab* plots_;
  QTabWidget* tabSim_;
};

}  // namespace quorvane
