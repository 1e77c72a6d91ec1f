// The menu bar and the tool bar of frmMain.
#pragma once

#include <QObject>
#include <Qt>

#include "windows/frame/command_set.h"
#include "windows/session/window_set.h"

class QAction;
class QMainWindow;
class QMenu;
class QString;

namespace quorvane {

// Each entry runs its command; what only the frame can do is a signal. Before either, what is being
// typed is stored, and where it is refused nothing runs. Objects bear the names of their entries.
class MainMenus : public QObject {
  Q_OBJECT
 public:
  // Builds both bars in `frame`, which owns the object.
  MainMenus(QMainWindow& frame, WindowSet windows, CommandSet commands);

  // Enables and marks the entries as the module and the page now stand. The recent files are read
  // when their menu opens: one of them may be the entry whose command calls this.
  void Update();

  // While a calculation runs only Stop is left.
  void SetCalculating(bool on);
  void DisableStop();  // the calculation runs to its end

  // Whether the log has lines that could be saved.
  void SetLogWritten(bool written);

 signals:
  void ImportChosen();
  void FigureChosen();
  void SimulationChosen();
  void MatchChosen();
  void ChooseScansChosen();
  void NewWindowChosen();
  void CascadeChosen();
  void TileChosen(Qt::Orientation orientation);
  void ArrangeIconsChosen();
  void FitsChosen();
  void PlanChosen();
  void HelpChosen(bool search);
  void AboutChosen();

 private:
  template <class Slot>
  void Bind(QAction* action, Slot slot);
  template <class Slot>
  QAction* AddAction(QMenu* menu, const char* name, const QString& caption, Slot slot);
  template <class Slot>
  QAction* AddChoice(QMenu* menu, const char* name, const QString& caption, Slot slot);
  template <class Slot>
  QAction* AddToBar(const char* name, const QString& caption, Slot slot);
  void AddToggle(QMenu* menu, const char* name, const QString& caption, bool& flag);
  QMenu* AddMenu(QMenu* parent, const char* name, const QString& caption);
  void BuildFileMenu();
  void BuildSaveEntries(QMenu* menu);
  void BuildRecentFiles();
  void BuildGraphMenu();
  void BuildOptionMenu();
  void BuildFittingMenu(QMenu* options);
  void BuildCellMenu(QMenu* options);
  void BuildWindowMenu();
  void BuildHelpMenu();
  void BuildToolBar();

  // Entries that change after they were built.
  struct FileEntries {
    QAction* newExperiment = nullptr;
    QAction* load = nullptr;
    QAction* importText = nullptr;
    QAction* save = nullptr;
    QAction* saveData = nullptr;
    QAction* saveCorrected = nullptr;
    QAction* saveLog = nullptr;
    QAction* saveReport = nullptr;
    QAction* saveJob = nullptr;
    QAction* applyJob = nullptr;
    QMenu* recent = nullptr;
  };
  struct GraphEntries {
    QAction* exportGraphs = nullptr;
    QAction* overlay = nullptr;
    QAction* figure = nullptr;
    QAction* deleteAll = nullptr;
  };
  struct FittingEntries {
    QAction* buoyant = nullptr;
    QAction* weight = nullptr;
    QAction* lnK = nullptr;
    QAction* log10K = nullptr;
    QAction* plainK = nullptr;
    QAction* toRest = nullptr;
    QAction* checkMinimum = nullptr;
  };

  QMainWindow& frame_;
  WindowSet windows_;
  CommandSet commands_;
  FileEntries file_;
  GraphEntries graph_;
  FittingEntries fitting_;
  QAction* print_ = nullptr;
  QAction* stop_ = nullptr;  // on the tool bar
};

}  // namespace quorvane
