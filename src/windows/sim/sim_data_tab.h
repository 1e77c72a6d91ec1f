// The tab "Data" of frmSim: the scan file as it will be saved.
#pragma once

#include <QWidget>

#include "sim/simulate.h"

class QPlainTextEdit;
class QPushButton;

namespace quorvane {

struct Session;

class SimDataTab : public QWidget {
  Q_OBJECT
 public:
  // simulator.Text follows what the user changes in the box.
  SimDataTab(Session& session, Simulator& simulator, QWidget* parent = nullptr);

  // Shows simulator.Text.
  void ShowText();

 signals:
  void Saved();

 private:
  void BuildWidgets();
  void Save();

  Session& session_;
  Simulator& simulator_;
  QPlainTextEdit* rtbSimulData_;
  QPushButton* cmdSaveSimData_;
};

}  // namespace quorvane
