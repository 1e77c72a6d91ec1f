#include "windows/frame/main_menus.h"

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <type_traits>

#include "core/page/row_values.h"
#include "core/settings/recent_files.h"
#include "windows/commands/error_commands.h"
#include "windows/commands/experiment_commands.h"
#include "windows/commands/fit_commands.h"
#include "windows/commands/job_commands.h"
#include "windows/commands/option_commands.h"
#include "windows/commands/print_commands.h"
#include "windows/commands/report_commands.h"
#include "windows/controls/display_captions.h"
#include "windows/data/data_window.h"
#include "windows/data/source_files_tab.h"
#include "windows/log/log_window.h"
#include "windows/page/fit_control_tab.h"
#include "windows/page/result_panel.h"
#include "windows/session/data_files.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

constexpr const char* kExample = "examples/monomer-dimer/experiment.exz";

}  // namespace

MainMenus::MainMenus(QMainWindow& frame, WindowSet windows, CommandSet commands)
    : QObject(&frame), frame_(frame), windows_(windows), commands_(commands) {
  BuildFileMenu();
  BuildGraphMenu();
  print_ = AddToBar("mnuPrint", tr("&Print"), [this] { commands_.prints.PrintActive(); });
  print_->setShortcut(QKeySequence::Print);
  BuildOptionMenu();
  AddToBar("mnuSimulate", tr("&Simulation"), [this] { emit SimulationChosen(); });
  AddToBar("mnuMatch", tr("&Match"), [this] { emit MatchChosen(); });
  BuildWindowMenu();
  BuildHelpMenu();
  BuildToolBar();
  Update();
}

QMenu* MainMenus::AddMenu(QMenu* parent, const char* name, const QString& caption) {
  QMenu* menu = parent == nullptr ? frame_.menuBar()->addMenu(caption) : parent->addMenu(caption);
  menu->setObjectName(QString::fromLatin1(name));
  menu->menuAction()->setObjectName(QString::fromLatin1(name));
  return menu;
}

// What is being typed is stored first; where it is refused, the command does not run.
template <class Slot>
void MainMenus::Bind(QAction* action, Slot slot) {
  connect(action, &QAction::triggered, this, [this, action, slot](bool on) {
    if (!windows_.session.CommitPending()) {
      if (action->isCheckable()) action->setChecked(!on);
    } else if constexpr (std::is_invocable_v<Slot, bool>) {
      slot(on);
    } else {
      slot();
    }
  });
}

template <class Slot>
QAction* MainMenus::AddAction(QMenu* menu, const char* name, const QString& caption, Slot slot) {
  QAction* action = menu->addAction(caption);
  action->setObjectName(QString::fromLatin1(name));
  Bind(action, slot);
  return action;
}

template <class Slot>
QAction* MainMenus::AddChoice(QMenu* menu, const char* name, const QString& caption, Slot slot) {
  QAction* action = AddAction(menu, name, caption, slot);
  action->setCheckable(true);
  return action;
}

// A command of the menu bar itself.
template <class Slot>
QAction* MainMenus::AddToBar(const char* name, const QString& caption, Slot slot) {
  QAction* action = frame_.menuBar()->addAction(caption);
  action->setObjectName(QString::fromLatin1(name));
  Bind(action, slot);
  return action;
}

void MainMenus::AddToggle(QMenu* menu, const char* name, const QString& caption, bool& flag) {
  AddChoice(menu, name, caption, [this, &flag](bool on) {
    flag = on;
    windows_.data.Results().Redraw();
  })->setChecked(flag);
}

void MainMenus::BuildFileMenu() {
  QMenu* menu = AddMenu(nullptr, "mnuFile", tr("&File"));
  file_.newExperiment =
      AddAction(menu, "mnuFileNew", tr("&New Experiment"), [this] { commands_.experiments.New(); });
  file_.newExperiment->setShortcut(QKeySequence::New);
  file_.load = AddAction(menu, "mnuFileOpen", tr("&Load Experiment"),
                         [this] { commands_.experiments.LoadWithDialog(); });
  file_.load->setShortcut(QKeySequence::Open);
  AddAction(menu, "mnuFileExample", tr("Load E&xample"), [this] {
    commands_.experiments.LoadAsked(
        ToQString(FindDataFile(windows_.session.ProgramFolder, kExample)));
  });
  AddAction(menu, "mnuChooseScans", tr("C&hoose Scans..."), [this] {
    emit ChooseScansChosen();
  })->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_M);
  AddAction(menu, "mnuFileClose", tr("&Close"), [this] {
    windows_.session.Ask.ShowMessage(&frame_, {}, tr("Add 'mnuFileClose_Click' code."),
                                     MessageIcon::kNone);
  });
  file_.save = AddAction(menu, "mnuFileSave", tr("&Save Experiment"),
                         [this] { commands_.experiments.Save(); });
  file_.save->setShortcut(QKeySequence::Save);
  file_.importText =
      AddAction(menu, "mnuFileImport", tr("&Import Text..."), [this] { emit ImportChosen(); });
  file_.importText->setShortcut(Qt::CTRL | Qt::Key_I);
  file_.recent = AddMenu(menu, "mnuFileMRU", tr("Recent Files"));
  menu->addSeparator();
  BuildSaveEntries(menu);
  menu->addSeparator();
  AddAction(menu, "mnuFileExit", tr("&Exit"), [this] {
    frame_.close();
  })->setShortcut(Qt::CTRL | Qt::Key_Q);  // Windows has no standard key for it
  connect(menu, &QMenu::aboutToShow, this, &MainMenus::BuildRecentFiles);
  BuildRecentFiles();
}

// What can be saved beside the experiment.
void MainMenus::BuildSaveEntries(QMenu* menu) {
  file_.saveData = AddAction(menu, "mnuFileSaveSets", tr("Save Loaded &Data"), [this] {
    commands_.experiments.SaveLoadedData(SavedSignal::kAsLoaded);
  });
  file_.saveData->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_D);
  file_.saveCorrected =
      AddAction(menu, "mnuFileSaveCorrected", tr("Save Offset Corrected Data"),
                [this] { commands_.experiments.SaveLoadedData(SavedSignal::kBaselineSubtracted); });
  file_.saveCorrected->setVisible(ShowElectrophoresis);
  file_.saveLog = AddAction(menu, "mnuSaveLog", tr("Save Log &File"), [this] {
    if (windows_.log.SaveLog()) windows_.data.SourceFiles().FollowSave();
  });
  file_.saveLog->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_L);
  file_.saveReport =
      AddAction(menu, "mnuSaveReport", tr("Save &Report"), [this] { commands_.reports.Save(); });
  file_.saveReport->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_R);
  menu->addSeparator();
  file_.saveJob = AddAction(menu, "mnuSaveJob", tr("Save &Job..."),
                            [this] { commands_.jobs.Save(commands_.experiments.Name()); });
  file_.saveJob->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_J);
  file_.applyJob = AddAction(menu, "mnuApplyJob", tr("&Apply Job..."),
                             [this] { commands_.jobs.ApplyWithDialog(); });
  file_.applyJob->setShortcut(Qt::CTRL | Qt::Key_J);
}

void MainMenus::BuildRecentFiles() {
  file_.recent->clear();
  int number = 0;
  for (const std::string& path : RecentFiles(windows_.session.Settings)) {
    const QString caption = QString::fromStdString(path);
    QAction* action = file_.recent->addAction(QString(caption).replace('&', "&&"));
    action->setObjectName(QStringLiteral("mnuRecDocs(%1)").arg(number++));
    Bind(action, [this, caption] { commands_.experiments.LoadAsked(caption); });
  }
  if (number > 0) return;
  QAction* empty = file_.recent->addAction(tr("Empty"));
  empty->setObjectName("mnuRecDocs(0)");
  empty->setEnabled(false);
}

void MainMenus::BuildGraphMenu() {
  QuorvaneModule& module = windows_.session.Module;
  QMenu* graph = AddMenu(nullptr, "mnuGraph", tr("&Graphs"));
  AddToggle(graph, "mnuLogGraphs", tr("Show in &Log"), module.Preferences.LogGraphs);
  AddToggle(graph, "mnuGraphSave", tr("&Save for Export"), module.Preferences.SaveGraphs);
  graph_.exportGraphs =
      AddAction(graph, "mnuExpGraph", tr("&Export"), [this] { commands_.options.ExportGraphs(); });
  graph_.exportGraphs->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_E);
  graph_.overlay =
      AddAction(graph, "mnuOverlay", tr("&Overlay Datasets"), [this] { emit FigureChosen(); });
  graph_.overlay->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_O);
  graph_.deleteAll = AddAction(graph, "mnuCanGraphs", tr("&Delete All"),
                               [this] { commands_.options.DeleteGraphs(); });
  QMenu* colors = AddMenu(graph, "mnuGraphEdit", tr("Set Edit Colors"));
  AddAction(colors, "mnuSetGoodPointsColor", tr("Good Points"),
            [this] { commands_.options.ChooseColor(false); });
  AddAction(colors, "mnuSetDeletedPointsColor", tr("Deleted Points"),
            [this] { commands_.options.ChooseColor(true); });
  graph_.figure = AddAction(graph, "mnuFigure", tr("&Figure..."), [this] { emit FigureChosen(); });
}

void MainMenus::BuildOptionMenu() {
  QuorvaneModule& module = windows_.session.Module;
  QMenu* options = AddMenu(nullptr, "mnuOptions", tr("&Options"));
  BuildFittingMenu(options);
  QMenu* plots = AddMenu(options, "mnuPlotOpts", tr("Plots"));
  AddToggle(plots, "mnuPlotSubOffsets", tr("Subtract Baseline"),
            module.Preferences.Plots.SubtractOffsets);
  AddToggle(plots, "mnuPlotUsePSI", tr("Plot Using (r^2 - r0^2)/2"),
            module.Preferences.Plots.PlotUsingPSI);
  BuildCellMenu(options);
  options->addSeparator();
  const struct {
    const char* name;
    QString caption;
    Constant constant;
  } constants[] = {{"mnuSetVbar", tr("Set vbar/vbar(A)"), Constant::kVbar},
                   {"mnuSetVbarB", tr("Set vbar(B)"), Constant::kVbarB},
                   {"mnuSetRho", tr("Set density"), Constant::kDensity},
                   {"mnuSetCritCCC", tr("Set Critical CCC"), Constant::kCriticalCCC},
                   {"mnuSetMCTol", tr("Set MC Tolerance"), Constant::kMCTolerance}};
  for (const auto& entry : constants) {
    AddAction(options, entry.name, entry.caption,
              [this, constant = entry.constant] { commands_.options.AskConstant(constant); });
  }
  options->addSeparator();
  AddAction(options, "mnuSolution", tr("&Solution..."),
            [this] { commands_.options.OpenSolution(); });
}

// The cell geometries of channels.txt, one of them marked.
void MainMenus::BuildCellMenu(QMenu* options) {
  QMenu* cells = AddMenu(options, "mnuOptionCellGeom", tr("Cell Geometry"));
  cells->menuAction()->setVisible(windows_.session.Module.HaveChannelFile);
  auto* marks = new QActionGroup(cells);
  const auto add = [&](int number, const QString& caption) {
    QAction* action = cells->addAction(caption);
    action->setObjectName(QStringLiteral("mnuCellGeom(%1)").arg(number));
    action->setCheckable(true);
    action->setChecked(number == 0);
    marks->addAction(action);
  };
  int number = 0;
  for (const CellGeometry& geometry : windows_.session.Module.CellGeometries) {
    add(number++, QString::fromStdString(geometry.name).trimmed());
  }
  if (number == 0) add(0, tr("default"));
}

void MainMenus::BuildFittingMenu(QMenu* options) {
  QMenu* fitting = AddMenu(options, "mnuOptFitting", tr("Fitting"));
  fitting_.buoyant = AddChoice(fitting, "mnuUseBuoyant", WeightCaption(true),
                               [this] { commands_.options.SetBuoyant(true); });
  fitting_.weight = AddChoice(fitting, "mnuUseMW", WeightCaption(false),
                              [this] { commands_.options.SetBuoyant(false); });
  fitting->addSeparator();
  fitting_.lnK = AddChoice(fitting, "mnuOptionDispLnK", CaptionOf(KDisplay::kLn),
                           [this] { commands_.options.SetKFormat(KDisplay::kLn); });
  fitting_.log10K = AddChoice(fitting, "mnuOptionDispLog10K", CaptionOf(KDisplay::kLog10),
                              [this] { commands_.options.SetKFormat(KDisplay::kLog10); });
  fitting_.plainK = AddChoice(fitting, "mnuOptionDispK", CaptionOf(KDisplay::kPlain),
                              [this] { commands_.options.SetKFormat(KDisplay::kPlain); });
  fitting->addSeparator();
  fitting_.toRest = AddAction(fitting, "mnuFitToRest", tr("Fit to &Rest"),
                              [this] { commands_.fits.FitToRest(); });
  fitting_.toRest->setShortcut(Qt::SHIFT | Qt::Key_F5);
  AddChoice(fitting, "mnuAlwaysFitToRest", tr("&Always Fit to Rest"), [this](bool on) {
    commands_.options.SetAlwaysFitToRest(on);
  })->setChecked(windows_.session.Module.Preferences.AlwaysFitToRest);
  fitting->addSeparator();
  AddAction(fitting, "mnuFitQuality", tr("Fit &Quality..."), [this] {
    commands_.errors.ShowQuality();
  })->setShortcut(Qt::Key_F8);
  AddAction(fitting, "mnuErrorAnalysis", tr("&Error Analysis..."), [this] {
    commands_.errors.ShowErrorAnalysis();
  })->setShortcut(Qt::SHIFT | Qt::Key_F8);
  fitting_.checkMinimum = AddAction(fitting, "mnuCheckMinimum", tr("&Check Minimum..."),
                                    [this] { commands_.errors.OpenMinima(); });
  fitting_.checkMinimum->setShortcut(Qt::Key_F9);
}

void MainMenus::BuildWindowMenu() {
  QMenu* window = AddMenu(nullptr, "mnuWindow", tr("&Window"));
  AddAction(window, "mnuWindowNewWindow", tr("&New Window"), [this] { emit NewWindowChosen(); });
  window->addSeparator();
  AddAction(window, "mnuWindowCascade", tr("&Cascade"), [this] { emit CascadeChosen(); });
  AddAction(window, "mnuWindowTileHorizontal", tr("Tile &Horizontal"),
            [this] { emit TileChosen(Qt::Horizontal); });
  AddAction(window, "mnuWindowTileVertical", tr("Tile &Vertical"),
            [this] { emit TileChosen(Qt::Vertical); });
  AddAction(window, "mnuWindowArrangeIcons", tr("&Arrange Icons"),
            [this] { emit ArrangeIconsChosen(); });
  window->addSeparator();
  AddAction(window, "mnuFits", tr("&Fits..."), [this] {
    emit FitsChosen();
  })->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_F);
  AddAction(window, "mnuPlan", tr("&Plan Experiment..."), [this] {
    emit PlanChosen();
  })->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_P);
}

void MainMenus::BuildHelpMenu() {
  QMenu* help = AddMenu(nullptr, "mnuHelp", tr("&Help"));
  AddAction(help, "mnuHelpContents", tr("&Contents"), [this] {
    emit HelpChosen(false);
  })->setShortcut(QKeySequence::HelpContents);
  AddAction(help, "mnuHelpSearchForHelpOn", tr("&Search For Help On..."),
            [this] { emit HelpChosen(true); });
  help->addSeparator();
  AddAction(help, "mnuHelpAbout", tr("&About "), [this] { emit AboutChosen(); });
}

void MainMenus::BuildToolBar() {
  QToolBar* bar = frame_.addToolBar(tr("Main"));
  bar->setObjectName("tbrMain");
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  bar->setMovable(false);
  const auto icon = [this](QStyle::StandardPixmap pixmap) {
    return frame_.style()->standardIcon(pixmap);
  };
  file_.newExperiment->setIcon(icon(QStyle::SP_FileIcon));
  file_.load->setIcon(icon(QStyle::SP_DialogOpenButton));
  file_.save->setIcon(icon(QStyle::SP_DialogSaveButton));
  bar->addActions({file_.newExperiment, file_.load, file_.save});
  bar->addSeparator();
  stop_ = bar->addAction(icon(QStyle::SP_BrowserStop), tr("Stop"));
  stop_->setObjectName("cmdStop");
  stop_->setToolTip(tr("Halt the calculation"));
  stop_->setEnabled(false);
  connect(stop_, &QAction::triggered, this, [this] { commands_.fits.Stop(); });
}

void MainMenus::Update() {
  const QuorvaneModule& module = windows_.session.Module;
  const bool loaded = module.Store.NumDatasets() > 0;
  file_.saveData->setEnabled(loaded);
  file_.saveCorrected->setEnabled(loaded);
  file_.saveReport->setEnabled(module.LastFit != nullptr);
  file_.saveJob->setEnabled(loaded);
  file_.applyJob->setEnabled(loaded);
  graph_.exportGraphs->setEnabled(module.NumGraphs() > 0);
  graph_.overlay->setEnabled(loaded);
  graph_.figure->setEnabled(loaded);
  graph_.deleteAll->setEnabled(module.NumGraphs() > 0);
  fitting_.toRest->setEnabled(module.Setup.NumFitSets > 0 && RowsAreCurrent(module));
  fitting_.checkMinimum->setEnabled(windows_.data.FitControl().FitDone());
  fitting_.buoyant->setChecked(module.Preferences.UseBuoyantMW);
  fitting_.weight->setChecked(!module.Preferences.UseBuoyantMW);
  fitting_.lnK->setChecked(module.Preferences.KFormat == KDisplay::kLn);
  fitting_.log10K->setChecked(module.Preferences.KFormat == KDisplay::kLog10);
  fitting_.plainK->setChecked(module.Preferences.KFormat == KDisplay::kPlain);
}

void MainMenus::SetCalculating(bool on) {
  frame_.menuBar()->setEnabled(!on);
  for (QAction* action : {file_.newExperiment, file_.load, file_.save, print_}) {
    action->setEnabled(!on);  // on the tool bar and by its key too
  }
  stop_->setEnabled(on);
}

void MainMenus::DisableStop() {
  stop_->setEnabled(false);
}

void MainMenus::SetLogWritten(bool written) {
  file_.saveLog->setEnabled(written);
}

}  // namespace quorvane
