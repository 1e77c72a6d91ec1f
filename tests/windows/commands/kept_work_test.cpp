// Faults caught here: a command that throws away an entry, the selected file or an open adjustment,
// a blank that is fitted, a report inside an older one, a status line that outlives its cause.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QShortcut>

#include "plot/chart_widget.h"
#include "windows/data/data_window.h"
#include "windows/main_window_fixture.h"
#include "windows/page/fit_control_tab.h"

using namespace quorvane;

namespace {

class KeptWorkTest : public MainWindowTest {
 protected:
  KeptWorkTest() { session.Module.Preferences.ShowHints = false; }

  // Two scans of the example in the folder of the test.
  void WriteScans() {
    for (const char* name : {"00001.RA1", "00002.RA1"}) {
      std::filesystem::copy(kExamples / "monomer-dimer" / name, folder / name);
    }
  }
  void Type(const char* name, const QString& text) { Find<QLineEdit>(name)->setText(text); }
  QString Status() { return Find<QLabel>("sbStatusBar")->text(); }
  QString Selected() { return Find<QComboBox>("comboDataFile")->currentText(); }

  // Commands of the menus in sight, and the keys of the data window.
  std::vector<std::pair<QString, std::function<void()>>> Commands() {
    std::vector<std::pair<QString, std::function<void()>>> commands;
    for (QAction* action : window->menuBar()->findChildren<QAction*>()) {
      const auto* menu = qobject_cast<QMenu*>(action->parent());
      const bool shown = menu == nullptr || menu->menuAction()->isVisible();
      if (action->menu() == nullptr && action->isVisible() && action->isEnabled() && shown &&
          !action->isSeparator()) {
        commands.emplace_back(action->objectName(), [action] { action->trigger(); });
      }
    }
    for (QShortcut* shortcut : Find("frmData")->findChildren<QShortcut*>()) {
      commands.emplace_back(shortcut->key().toString(), [shortcut] { emit shortcut->activated(); });
    }
    return commands;
  }
};

}  // namespace

TEST_F(KeptWorkTest, NoCommandDropsAnEntry) {
  SetUpExample();
  Click("cmdFitMe");
  Trigger("mnuSimulate");
  const auto commands = Commands();
  EXPECT_GT(commands.size(), 40U);
  const double& baseline = session.Module.Store.Datasets[0].Offset;
  const double before = baseline;
  for (const auto& [name, run] : commands) {
    for (const char* box : {"txtOffset(0)", "txtSpeed"}) {
      const auto* action = window->findChild<QAction*>(name);
      const bool marked = action != nullptr && action->isChecked();
      dialogs.messages.clear();
      Type(box, "x");
      run();
      ASSERT_EQ(dialogs.messages.size(), 1U) << name.toStdString();
      EXPECT_EQ(dialogs.messages[0].title, "Parameter Entry Error") << name.toStdString();
      EXPECT_EQ(action != nullptr && action->isChecked(), marked) << name.toStdString();
    }
  }
  EXPECT_EQ(baseline, before);
  Type("txtOffset(0)", "0.25");
  QTest::keyClick(window.get(), Qt::Key_F6);
  EXPECT_EQ(baseline, 0.25);
  EXPECT_EQ(Find<QLineEdit>("txtOffset(0)")->text(), "0.2500");
}

TEST_F(KeptWorkTest, ARefusedEntryBringsItsTabBack) {
  SetUpExample();
  Trigger("mnuSimulate");
  Click("cmdSimulate");
  const std::pair<const char*, const char*> cases[] = {
      {"txtOffset(0)", "dataTab"}, {"lblDegC", "dataTab"}, {"txtSpeed", "tabSim"}};
  for (const auto& [box, tab] : cases) {
    auto* tabs = Find<QTabWidget>(tab);
    const int page = tabs->currentIndex();
    Find(box)->setFocus();
    Type(box, "0x");
    tabs->setCurrentIndex(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(tabs->currentIndex(), page) << box;
    EXPECT_TRUE(Find(box)->hasFocus() && Find(box)->isVisible()) << box;
  }
}

TEST_F(KeptWorkTest, ANewBlankIsNoLongerFitted) {
  for (const char* name : {"BL_1", "sample"}) {  // to a blank, and back
    SetUpExample();
    Click("cmdFitMe");
    if (*name == 's') {
      Type("txtLoadData(1)", "BL_1");
      Click("cmdSetFit");
      Click("cmdFitMe");
    }
    EXPECT_TRUE(Find("cmdCalcCI")->isEnabled());
    Type("txtLoadData(0)", "a new name");
    Trigger("mnuPlotSubOffsets");
    EXPECT_EQ(Tabs(), "1121");  // a name alone closes nothing
    const QString log = LogText();
    Type("txtLoadData(1)", name);
    QTest::keyClick(window.get(), Qt::Key_F5);
    EXPECT_EQ(Tabs(), "1201") << name;
    EXPECT_FALSE(Find("cmdCalcCI")->isEnabled());
    EXPECT_EQ(LogText(), log);
    Click("cmdSetFit");
    EXPECT_EQ(session.Module.Setup.NumFitSets, *name == 's' ? 9 : 8);
  }
}

TEST_F(KeptWorkTest, RatiosMadeAfterAFitOutdateIt) {
  SetUpExample();
  Find<QComboBox>("cmbModel")->setCurrentIndex(7);
  Click("cmdSetFit");
  auto& tab = Find<DataWindow>("frmData")->FitControl();
  for (int click = 0; click < 2; ++click) {
    tab.SetFitDone(true);
    Click("chkConstrainKratios");
    EXPECT_FALSE(tab.FitDone() || Find("cmdCalcCI")->isEnabled());
  }
}

TEST_F(KeptWorkTest, WhatFailsLeavesAdjustmentAndPreviewOpen) {
  SetUpExample();
  const auto broken = ToQString(folder.Write("broken.exz", "no archive"));
  const std::function<void()> failures[] = {
      [&] { window->Experiments().Load(broken); },
      [&] { window->Experiments().Load(broken + "x"); },  // is not there
      [&] {
        session.Module.Store.UseData.assign(9, false);
        Click("cmdSetFit");
      }};
  Click("cmdPreviewFit");
  QTest::mouseDClick(Find("txtRefConc(1)"), Qt::LeftButton);
  Find<QScrollBar>("hsSetRefC")->setValue(300);
  const double moved = session.Module.Store.Datasets[1].RefConc;
  for (const auto& fail : failures) {
    dialogs.messages.clear();
    fail();
    EXPECT_EQ(dialogs.messages.size(), 1U);
    EXPECT_TRUE(Find("frmSetRefConc")->isVisible() && Find("frmPreview")->isVisible());
    EXPECT_EQ(session.Module.Store.Datasets[1].RefConc, moved);
  }
  window->Experiments().Load(ToQString(kExamples / "monomer-dimer" / "experiment.exz"));
  EXPECT_FALSE(Find("frmSetRefConc")->isVisible() || Find("frmPreview")->isVisible());
}

TEST_F(KeptWorkTest, ASaveKeepsTheSelectedFile) {
  WriteScans();
  window->Experiments().OpenDropped(
      {ToQString(folder / "00001.RA1"), ToQString(folder / "00002.RA1")});
  Click("cmdSetFit");
  Click("cmdFitMe");
  EXPECT_TRUE(dialogs.messages.empty()) << dialogs.messages[0].text.toStdString();
  Trigger("mnuSimulate");
  Click("cmdSimulate");
  Click("cmdRefreshLB");
  Find<QComboBox>("comboDataFile")->setCurrentIndex(1);
  Click("cmdPreviewIt");
  session.Module.Store.HeaderLine = "as it was";
  const std::pair<const char*, const char*> saves[] = {{"mnuFileSave", "a.exz"},
                                                       {"mnuSaveReport", "a.html"},
                                                       {"mnuSaveLog", "a.rtf"},
                                                       {"", "00000.IP8"}};
  for (const auto& [command, file] : saves) {
    dialogs.files = {ToQString(folder / file)};
    if (*command != '\0') Trigger(command);
    if (*command == '\0') Click("cmdSaveSimData");
    EXPECT_TRUE(std::filesystem::exists(folder / file));
    EXPECT_EQ(Selected(), "00002.RA1") << file;
    EXPECT_FALSE(Find<ChartWidget>("TChartPreview")->GetChart().panels.empty()) << file;
    EXPECT_EQ(session.Module.Store.HeaderLine, "as it was") << file;
  }
  EXPECT_EQ(Find<QComboBox>("comboDataFile")->count(), 3);
  std::filesystem::remove(folder / "00002.RA1");
  dialogs.files = {ToQString(folder / "b.exz")};
  Trigger("mnuFileSave");
  EXPECT_EQ(Selected(), "00000.IP8");
  std::filesystem::create_directory(folder / "other");
  dialogs.files = {ToQString(folder / "other" / "b.exz")};
  Trigger("mnuFileSave");
  EXPECT_EQ(Selected(), "");
}

TEST_F(KeptWorkTest, NewTextNeverLandsInsideAnOldReport) {
  WriteScans();
  const std::function<void()> works[] = {
      [&] { window->Experiments().OpenDropped({ToQString(folder / "00001.RA1")}); },
      [&] { Click("cmdLoadBlank"); }, [&] { Click("cmdFitMe"); }};
  Click("cmdRefreshLB");
  for (const auto& work : works) {
    if (&work == &works[2]) Click("cmdSetFit");
    const QString before = LogText();
    Find<QTextEdit>("logFile")->moveCursor(QTextCursor::Start);
    work();
    EXPECT_TRUE(LogText().startsWith(before));
    EXPECT_GT(LogText().size(), before.size());
  }
}

TEST_F(KeptWorkTest, TheStatusBarSpeaksOfTheLastCommand) {
  WriteScans();
  Click("cmdRefreshLB");
  std::filesystem::rename(folder / "00001.RA1", folder / "scan.txt");
  Click("cmdLoadFile");
  EXPECT_TRUE(Status().endsWith("00001.RA1: there is no such file")) << Status().toStdString();
  Click("cmdRefreshLB");
  EXPECT_EQ(Status(), " ");
  EXPECT_EQ(Selected(), "00002.RA1");
  Click("chkAllFiles");
  Find<QComboBox>("comboDataFile")->setCurrentText("scan.txt");
  Click("cmdLoadFile");
  EXPECT_EQ(Status(), "scan.txt was taken for the file type IP,RA.");
  EXPECT_EQ(session.Module.Store.NumDatasets(), 1);
  Click("cmdSetFit");
  session.Module.FitPage.ModelMW = 1e9;
  Click("cmdFitMe");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(Status().startsWith("Overflow: the start values lie too far from the data."));
  Trigger("mnuOptionDispK");
  EXPECT_EQ(Status(), " ");
}
