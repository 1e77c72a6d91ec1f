// frmGraphs: the graphs that a session kept, one at a time, and their export.
#pragma once

#include <QWidget>

#include "windows/session/printable.h"
#include "windows/session/session.h"

class QComboBox;
class QPushButton;

namespace quorvane {

class ChartWidget;

class GraphsWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  explicit GraphsWindow(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // Lists what GraphStreams holds now; the choice stays if it can.
  void Refresh();

  void ShowGraph(int number);  // from 1

  PrintContent Printed() const override;

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override;  // on the chart: its export

 private:
  void BuildWidgets();
  void ShowChoice();
  void Export();
  void Copy();

  Session& session_;
  QComboBox* TeeChartList_;
  QPushButton* cmdExport_;
  QPushButton* cmdCopy_;
  ChartWidget* ExportTChart_;
};

}  // namespace quorvane
