// The menus and the tool bar of frmMain.
#include <QAction>
#include <QActionGroup>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <type_traits>

#include "core/recent_files.h"
#include "windows/autosave.h"
#include "windows/child_area.h"
#include "windows/child_window.h"
#include "windows/data_files.h"
#include "windows/data_window.h"
#include "windows/error_commands.h"
#include "windows/experiment_commands.h"
#include "windows/fit_commands.h"
#include "windows/fit_control_tab.h"
#include "windows/log_window.h"
#include "windows/main_window.h"
#include "windows/option_commands.h"
#include "windows/overlay_window.h"
#include "windows/print_commands.h"
#include "windows/report_commands.h"
#include "windows/result_panel.h"
#include "windows/sim_window.h"
#include "windows/source_files_tab.h"

namespace {

constexpr const char* kExample = "examples/monomer-dimer/experiment.exz";

}  // namespace

QMenu* MainWindow::AddMenu(QMenu* parent, const char* name, const QString& caption) {
  QMenu* menu = parent == nullptr ? menuBar()->addMenu(caption) : parent->addMenu(caption);
  menu->setObjectName(QString::fromLatin1(name));
  menu->menuAction()->setObjectName(QString::fromLatin1(name));
  return menu;
}

// A command begins: what was said of the last one goes.
bool MainWindow::CommitPending() {
  ShowRemark({});
  return data_->CommitPending() && (sim_ == nullptr || sim_->CommitPending());
}

void MainWindow::ShowRemark(const QString& text) {
  const QString& unkept = autosave_->Failure();
  const QString standing = unkept.isEmpty() ? " " : tr("Unsaved work is not kept: %1").arg(unkept);
  status_->setText(text.isEmpty() ? standing : text);
}

// What is being typed is stored first; where it is refused, the command does not run.
template <class Slot>
void MainWindow::Bind(QAction* action, Slot slot) {
  connect(action, &QAction::triggered, this, [this, action, slot](bool on) {
    if (!session_.CommitPending()) {
      if (action->isCheckable()) action->setChecked(!on);
    } else if constexpr (std::is_invocable_v<Slot, bool>) {
      slot(on);
    } else {
      slot();
    }
  });
}

template <class Slot>
QAction* MainWindow::AddAction(QMenu* menu, const char* name, const QString& caption, Slot slot) {
  QAction* action = menu->addAction(caption);
  action->setObjectName(QString::fromLatin1(name));
  Bind(action, slot);
  return action;
}

QAction* MainWindow::AddToggle(QMenu* menu, const char* name, const QString& caption, bool& flag) {
  QAction* action = AddAction(menu, name, caption, [this, &flag](bool on) {
    flag = on;
    data_->Results().Redraw();
  });
  action->setCheckable(true);
  action->setChecked(flag);
  return action;
}

QAction* MainWindow::Action(const char* name) const {
  return findChild<QAction*>(QString::fromLatin1(name));
}

void MainWindow::BuildMenus() {
  BuildFileMenu();
  BuildGraphMenu();
  BuildPrintCommand();
  BuildOptionMenu();
  BuildSimulationMenu();
  BuildMatchMenu();
  BuildWindowMenu();
  BuildHelpMenu();
  BuildToolBar();
  UpdateActions();
}

void MainWindow::BuildFileMenu() {
  QMenu* file = AddMenu(nullptr, "mnuFile", tr("&File"));
  AddAction(file, "mnuFileNew", tr("&New Experiment"), [this] {
    experiments_->New();
  })->setShortcut(QKeySequence::New);
  AddAction(file, "mnuFileOpen", tr("&Load Experiment"), [this] {
    experiments_->LoadWithDialog();
  })->setShortcut(QKeySequence::Open);
  AddAction(file, "mnuFileExample", tr("Load E&xample"), [this] {
    experiments_->LoadAsked(ToQString(FindDataFile(session_.ProgramFolder, kExample)));
  });
  AddAction(file, "mnuFileClose", tr("&Close"), [this] {
    session_.Ask.ShowMessage(this, {}, QStringLiteral("Add 'mnuFileClose_Click' code."),
                             MessageIcon::kNone);
  });
  AddAction(file, "mnuFileSave", tr("&Save Experiment"), [this] {
    experiments_->Save();
  })->setShortcut(QKeySequence::Save);
  AddMenu(file, "mnuFileMRU", tr("Recent Files"));
  file->addSeparator();
  AddAction(file, "mnuFileSaveSets", tr("Save Loaded &Data"), [this] {
    experiments_->SaveLoadedData(SavedSignal::kAsLoaded);
  })->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_D);
  AddAction(file, "mnuFileSaveCorrected", tr("Save Offset Corrected Data"), [this] {
    experiments_->SaveLoadedData(SavedSignal::kBaselineSubtracted);
  })->setVisible(ShowElectrophoresis);
  AddAction(file, "mnuSaveLog", tr("Save Log &File"), [this] {
    if (log_->SaveLog()) data_->SourceFiles().FollowSave();
  })->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_L);
  AddAction(file, "mnuSaveReport", tr("Save &Report"), [this] {
    reports_->Save();
  })->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_R);
  file->addSeparator();
  AddAction(file, "mnuFileExit", tr("&Exit"), [this] { close(); })->setShortcut(QKeySequence::Quit);
  connect(file, &QMenu::aboutToShow, this, &MainWindow::BuildRecentFiles);
  BuildRecentFiles();
}

void MainWindow::BuildRecentFiles() {
  auto* menu = findChild<QMenu*>("mnuFileMRU");
  menu->clear();
  int number = 0;
  for (const std::string& path : RecentFiles(session_.Settings)) {
    const QString caption = QString::fromStdString(path);
    QAction* action = menu->addAction(QString(caption).replace('&', "&&"));
    action->setObjectName(QStringLiteral("mnuRecDocs(%1)").arg(number++));
    Bind(action, [this, caption] { experiments_->LoadAsked(caption); });
  }
  if (number > 0) return;
  QAction* empty = menu->addAction(tr("Empty"));
  empty->setObjectName("mnuRecDocs(0)");
  empty->setEnabled(false);
}

void MainWindow::BuildGraphMenu() {
  QuorvaneModule& module = session_.Module;
  QMenu* graph = AddMenu(nullptr, "mnuGraph", tr("&Graphs"));
  AddToggle(graph, "mnuLogGraphs", tr("Show in &Log"), module.LogGraphs);
  AddToggle(graph, "mnuGraphSave", tr("&Save for Export"), module.SaveGraphs);
  AddAction(graph, "mnuExpGraph", tr("&Export"), [this] {
    options_->ExportGraphs();
  })->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_E);
  AddAction(graph, "mnuOverlay", tr("&Overlay Datasets"), [this] {
    ShowChild(*overlay_);
  })->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_O);
  AddAction(graph, "mnuCanGraphs", tr("&Delete All"), [this] { options_->DeleteGraphs(); });
  QMenu* colors = AddMenu(graph, "mnuGraphEdit", tr("Set Edit Colors"));
  AddAction(colors, "mnuSetGoodPointsColor", tr("Good Points"),
            [this] { options_->ChooseColor(false); });
  AddAction(colors, "mnuSetDeletedPointsColor", tr("Deleted Points"),
            [this] { options_->ChooseColor(true); });
}

// A command of the bar itself.
void MainWindow::BuildPrintCommand() {
  QAction* print = menuBar()->addAction(tr("&Print"));
  print->setObjectName("mnuPrint");
  print->setShortcut(QKeySequence::Print);
  Bind(print, [this] { prints_->PrintActive(); });
}

void MainWindow::BuildOptionMenu() {
  QuorvaneModule& module = session_.Module;
  QMenu* options = AddMenu(nullptr, "mnuOptions", tr("&Options"));
  BuildFittingMenu(options);
  QMenu* plots = AddMenu(options, "mnuPlotOpts", tr("Plots"));
  AddToggle(plots, "mnuPlotSubOffsets", tr("Subtract Baseline"), module.Plots.SubtractOffsets);
  AddToggle(plots, "mnuPlotUsePSI", tr("Plot Using (r^2 - r0^2)/2"), module.Plots.PlotUsingPSI);
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
              [this, constant = entry.constant] { options_->AskConstant(constant); });
  }
}

// The cell geometries of channels.txt, one of them marked.
void MainWindow::BuildCellMenu(QMenu* options) {
  QMenu* cells = AddMenu(options, "mnuOptionCellGeom", tr("Cell Geometry"));
  cells->menuAction()->setVisible(session_.Module.HaveChannelFile);
  auto* marks = new QActionGroup(cells);
  const auto add = [&](int number, const QString& caption) {
    QAction* action = cells->addAction(caption);
    action->setObjectName(QStringLiteral("mnuCellGeom(%1)").arg(number));
    action->setCheckable(true);
    action->setChecked(number == 0);
    marks->addAction(action);
  };
  int number = 0;
  for (const CellGeometry& geometry : session_.Module.CellGeometries) {
    add(number++, QString::fromStdString(geometry.name).trimmed());
  }
  if (number == 0) add(0, tr("default"));
}

void MainWindow::BuildFittingMenu(QMenu* options) {
  QMenu* fitting = AddMenu(options, "mnuOptFitting", tr("Fitting"));
  const auto choice = [&](const char* name, const QString& caption, auto slot) {
    AddAction(fitting, name, caption, slot)->setCheckable(true);
  };
  choice("mnuUseBuoyant", tr("Display Buoyant MW"), [this] { options_->SetBuoyant(true); });
  choice("mnuUseMW", tr("Display MW"), [this] { options_->SetBuoyant(false); });
  fitting->addSeparator();
  choice("mnuOptionDispLnK", tr("Display ln(K)s"), [this] { options_->SetKFormat(KDisplay::kLn); });
  choice("mnuOptionDispLog10K", tr("Display Log10(K)s"),
         [this] { options_->SetKFormat(KDisplay::kLog10); });
  choice("mnuOptionDispK", tr("Display K"), [this] { options_->SetKFormat(KDisplay::kPlain); });
  fitting->addSeparator();
  AddAction(fitting, "mnuFitQuality", tr("Fit &Quality..."), [this] {
    errors_->ShowQuality();
  })->setShortcut(Qt::Key_F8);
  AddAction(fitting, "mnuCheckMinimum", tr("&Check Minimum..."), [this] {
    errors_->OpenMinima();
  })->setShortcut(Qt::Key_F9);
}

// An entry of the bar itself, as the next one.
void MainWindow::BuildSimulationMenu() {
  QAction* action = menuBar()->addAction(tr("&Simulation"));
  action->setObjectName("mnuSimulate");
  Bind(action, [this] { ShowSimulation(); });
}

void MainWindow::BuildMatchMenu() {
  QAction* action = menuBar()->addAction(tr("&Match"));
  action->setObjectName("mnuMatch");
  Bind(action, [this] { ShowMatch(); });
}

void MainWindow::BuildWindowMenu() {
  QMenu* window = AddMenu(nullptr, "mnuWindow", tr("&Window"));
  AddAction(window, "mnuWindowNewWindow", tr("&New Window"), [this] { NewDocument(); });
  window->addSeparator();
  AddAction(window, "mnuWindowCascade", tr("&Cascade"), [this] { area_->Cascade(); });
  AddAction(window, "mnuWindowTileHorizontal", tr("Tile &Horizontal"),
            [this] { area_->Tile(Qt::Horizontal); });
  AddAction(window, "mnuWindowTileVertical", tr("Tile &Vertical"),
            [this] { area_->Tile(Qt::Vertical); });
  AddAction(window, "mnuWindowArrangeIcons", tr("&Arrange Icons"),
            [this] { area_->ArrangeIcons(); });
}

void MainWindow::BuildHelpMenu() {
  QMenu* help = AddMenu(nullptr, "mnuHelp", tr("&Help"));
  AddAction(help, "mnuHelpContents", tr("&Contents"), [this] {
    ShowHelp(false);
  })->setShortcut(QKeySequence::HelpContents);
  AddAction(help, "mnuHelpSearchForHelpOn", tr("&Search For Help On..."),
            [this] { ShowHelp(true); });
  help->addSeparator();
  AddAction(help, "mnuHelpAbout", tr("&About "), [this] { ShowAbout(); });
}

void MainWindow::BuildToolBar() {
  QToolBar* bar = addToolBar(tr("Main"));
  bar->setObjectName("tbrMain");
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  bar->setMovable(false);
  const auto icon = [this](QStyle::StandardPixmap pixmap) { return style()->standardIcon(pixmap); };
  Action("mnuFileNew")->setIcon(icon(QStyle::SP_FileIcon));
  Action("mnuFileOpen")->setIcon(icon(QStyle::SP_DialogOpenButton));
  Action("mnuFileSave")->setIcon(icon(QStyle::SP_DialogSaveButton));
  for (const char* name : {"mnuFileNew", "mnuFileOpen", "mnuFileSave"}) {
    bar->addAction(Action(name));
  }
  bar->addSeparator();
  QAction* stop = bar->addAction(icon(QStyle::SP_BrowserStop), tr("Stop"));
  stop->setObjectName("cmdStop");
  stop->setToolTip(tr("Halt the calculation"));
  stop->setEnabled(false);
  connect(stop, &QAction::triggered, this, [this] { fits_->Stop(); });
}

void MainWindow::UpdateActions() {
  const QuorvaneModule& module = session_.Module;
  Action("mnuFileSaveSets")->setEnabled(module.Store.NumDatasets() > 0);
  Action("mnuFileSaveCorrected")->setEnabled(module.Store.NumDatasets() > 0);
  Action("mnuExpGraph")->setEnabled(module.NumGraphs() > 0);
  Action("mnuCanGraphs")->setEnabled(module.NumGraphs() > 0);
  Action("mnuSaveReport")->setEnabled(module.LastFit.finished);
  Action("mnuOverlay")->setEnabled(module.Store.NumDatasets() > 0);
  Action("mnuCheckMinimum")->setEnabled(data_->FitControl().FitDone());
  Action("mnuUseBuoyant")->setChecked(module.UseBuoyantMW);
  Action("mnuUseMW")->setChecked(!module.UseBuoyantMW);
  Action("mnuOptionDispLnK")->setChecked(module.KFormat == KDisplay::kLn);
  Action("mnuOptionDispLog10K")->setChecked(module.KFormat == KDisplay::kLog10);
  Action("mnuOptionDispK")->setChecked(module.KFormat == KDisplay::kPlain);
}
