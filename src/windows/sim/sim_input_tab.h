// The tab "Input" of frmSim: model, parameters, kind of the file.
#pragma once

#include <QWidget>
#include <array>
#include <initializer_list>

#include "sim/simulate.h"

class QButtonGroup;
class QGridLayout;
class QGroupBox;
class QLabel;
class QPushButton;

namespace quorvane {

class ValueBox;
struct Session;

class SimInputTab : public QWidget {
  Q_OBJECT
 public:
  SimInputTab(Session& session, Simulator& simulator, QWidget* parent = nullptr);

  // Shows the entries, and which of them the model needs under which names.
  void ShowInputs();

  // Stores what is being typed. False if it was refused.
  bool CommitPending();

  // Whether all entries of the model may stand together; if not the first says why and gets the
  // focus.
  bool CheckEntries();

 signals:
  void ModelChosen();
  void HeaderChanged();  // the file's header line, in simulator.Text too
  void SimulateRequested();
  void SeriesRequested();
  void PlanRequested();

 private:
  // Where a box stands in its group, with its label to the left.
  struct Place {
    SimBox box;
    int row;
    int column;
  };
  // A box with the label beside it.
  struct Entry {
    QLabel* label = nullptr;
    ValueBox* box = nullptr;
  };

  void BuildWidgets();
  QGroupBox* BuildModelBox();
  QGroupBox* BuildSaveAsBox();
  QGroupBox* BuildGroup(const char* name, const QString& title,
                        std::initializer_list<Place> places);
  void AddEntry(QGridLayout& grid, const Place& place);
  void ConnectSignals();
  void Enter(SimBox box);
  void ChooseModel(int model);
  void ChooseKind(int kind);
  void ShowGroups();

  Session& session_;
  Simulator& simulator_;
  std::array<Entry, kSimBoxes> entries_;
  QButtonGroup* optSimModel_;
  QButtonGroup* optSaveAs_;
  int labelWidth_;  // pixels
  QGroupBox* componentA_ = nullptr;
  QGroupBox* componentB_ = nullptr;
  QGroupBox* interactions_ = nullptr;
  QPushButton* cmdSimulate_ = nullptr;
  QPushButton* cmdSimSeries_ = nullptr;
  QPushButton* cmdSimPlan_ = nullptr;
};

}  // namespace quorvane
