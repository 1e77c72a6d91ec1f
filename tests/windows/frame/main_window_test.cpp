#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSet>
#include <QShortcut>
#include <QTextBrowser>
#include <QTimer>
#include <QUrl>

#include "base/files.h"
#include "core/screen_check.h"
#include "core/settings/recent_files.h"
#include "core/settings/settings.h"
#include "plot/chart_widget.h"
#include "support/recording_host.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

TEST_F(MainWindowTest, TheWholeRoadAndBackTomorrow) {
  EXPECT_EQ(Tabs(), "2000");
  EXPECT_FALSE(Find<QAction>("mnuFileSaveSets")->isEnabled());
  EXPECT_TRUE(LogText().startsWith("Quorvane - Version 1.0.0\n")) << LogText().toStdString();
  const QString dimer = ToQString(kExamples / "monomer-dimer");
  window->Experiments().OpenDropped({dimer + "/00002.RA1", dimer + "/00001.RA1"});
  EXPECT_EQ(session.Module.Store.NumDatasets(), 2);
  EXPECT_EQ(Tabs(), "2101");
  EXPECT_TRUE(Find<QAction>("mnuFileSaveSets")->isEnabled());
  Click("cmdSetFit");
  EXPECT_EQ(Tabs(), "1121");
  Click("cmdFitMe");
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_TRUE(LogText().contains("Fitting Time: "));
  EXPECT_EQ(session.Module.NumGraphs(), 2);
  EXPECT_TRUE(Find<QAction>("mnuExpGraph")->isEnabled());
  const double weight = session.Module.FitPage.ModelMW;
  const QString fitted = Find<QLineEdit>("txtMWB")->text();

  dialogs.files = {ToQString(folder / "road.exz")};
  Trigger("mnuFileSave");
  dialogs.yesNo = {true};
  window->close();
  window.reset();
  EXPECT_EQ(dialogs.questions.back().text, "Exit Program?");
  Session tomorrow(settings, dialogs, folder.path());
  MainWindow again(tomorrow);
  again.Experiments().OpenArgument("\"" + ToQString(folder / "road.exz") + "\"");
  EXPECT_EQ(tomorrow.Module.Store.NumDatasets(), 2);
  EXPECT_EQ(tomorrow.Module.FitPage.ModelMW, weight);
  EXPECT_EQ(tomorrow.Module.NumGraphs(), 2);
  again.findChild<QAbstractButton*>("cmdSetFit")->click();
  EXPECT_EQ(again.findChild<QLineEdit*>("txtMWB")->text(), fitted);
  EXPECT_TRUE(again.findChild<QTextEdit*>("logFile")->toPlainText().contains("Fitting Time: "));
  EXPECT_EQ(RecentFiles(settings), std::vector<std::string>{PathText(folder / "road.exz")});
}

TEST_F(MainWindowTest, AFitIsStoppedByClickEscapeOrButtonAndDisturbedByNothing) {
  SetUpLongFit();
  const double before = session.Module.FitPage.ModelMW;
  const std::vector<std::function<void()>> stops = {
      [this] { QTest::mouseClick(Find<QTextEdit>("logFile")->viewport(), Qt::LeftButton); },
      [this] { QTest::keyClick(Find<QTextEdit>("logFile"), Qt::Key_Escape); },
      [this] { Find<QAction>("cmdStop")->trigger(); }};
  for (const auto& stop : stops) {
    int checks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, window.get(), [&] {
      if (!session.Calculating || checks++ > 0) return;
      EXPECT_FALSE(Find<QAction>("mnuFileOpen")->isEnabled());
      EXPECT_FALSE(Find<QAbstractButton>("cmdFitMe")->isEnabled());
      EXPECT_FALSE(Find<QAbstractButton>("cmdLoadFile")->isEnabled());
      stop();
    });
    timer.start(0);
    Click("cmdFitMe");
    EXPECT_GT(checks, 0) << "the fit ended before its first events";
    EXPECT_TRUE(LogText().contains("** User  Terminated Fitting Process  **"));
    EXPECT_EQ(session.Module.FitPage.ModelMW, before);
    EXPECT_TRUE(Find<QAction>("mnuFileOpen")->isEnabled());
    EXPECT_TRUE(Find<QAbstractButton>("cmdFitMe")->isEnabled());
  }
}

TEST_F(MainWindowTest, ConstantsAreRefusedWithTheirBoxes) {
  const struct {
    const char* action;
    const char* answer;
    const char* title;  // of the refusal; "" if the value is taken
    const char* text;
  } cases[] = {{"mnuSetVbar", "0.25", "Vbar Value Error", "Out-of-range Value Entered"},
               {"mnuSetVbar", "0,74", "Vbar Entry Error", "Illegal Value Entered"},
               {"mnuSetVbar", "0.2501", "", ""},
               {"mnuSetRho", "0.5", "Density Value Error", "Out-of-range Value Entered"},
               {"mnuSetMCTol", "0", "MC Tolerance Value Error", "Out-of-range Value Entered"},
               {"mnuSetCritCCC", "1", "Critical CCC Value Error", "Out-of-range Value Entered"}};
  for (const auto& test : cases) {
    dialogs.messages.clear();
    dialogs.texts = {QString(test.answer)};
    Trigger(test.action);
    ASSERT_EQ(dialogs.messages.size(), *test.title == '\0' ? 0U : 1U) << test.action;
    if (dialogs.messages.empty()) continue;
    EXPECT_EQ(dialogs.messages[0].title, test.title);
    EXPECT_EQ(dialogs.messages[0].text, test.text);
  }
  EXPECT_EQ(session.Module.FitPage.Vbar, 0.2501);
}

TEST_F(MainWindowTest, NewAsksOnlyForAnOpenExperiment) {
  SetUpExample();
  session.Module.Store.HeaderLine = "R 3 20.0 20000";
  dialogs.yesNo = {false, true};
  Trigger("mnuFileNew");
  EXPECT_EQ(session.Module.Store.NumDatasets(), 9);
  Trigger("mnuFileNew");
  EXPECT_EQ(dialogs.questions.back().text, "Discard current Log contents?");
  EXPECT_EQ(session.Module.Store.NumDatasets(), 0);
  EXPECT_EQ(session.Module.NumGraphs(), 0);
  EXPECT_EQ(Tabs(), "2000");
  EXPECT_TRUE(LogText().contains("The current directory is "));
  EXPECT_FALSE(session.Module.ExperimentOpen);
  EXPECT_EQ(session.Module.Store.HeaderLine, "R 3 20.0 20000");
  Trigger("mnuFileNew");  // asks nothing now
  dialogs.messages.clear();
  Trigger("mnuFileSave");
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "There is nothing to save!");
}

TEST_F(MainWindowTest, KeptGraphsStayInSightWhenNothingIsDiscarded) {
  SetUpExample();
  Click("cmdFitMe");
  Trigger("mnuExpGraph");
  session.Module.ExperimentOpen = false;  // as after the log was saved
  Trigger("mnuFileNew");
  EXPECT_GT(session.Module.NumGraphs(), 0);
  EXPECT_TRUE(Find<QWidget>("frmGraphs")->isVisible());
  dialogs.yesNo = {true};
  session.Module.ExperimentOpen = true;
  Trigger("mnuFileNew");
  EXPECT_FALSE(Find<QWidget>("frmGraphs")->isVisible());
}

TEST_F(MainWindowTest, WhatWasBeingTypedGoesWithTheOldExperiment) {
  SetUpExample();
  Find("txtMWB")->setFocus();
  Find<QLineEdit>("txtMWB")->setText("1234");
  dialogs.yesNo = {true};
  window->Experiments().LoadAsked(ToQString(kExamples / "monomer-dimer" / "experiment.exz"));
  QTest::qWait(1);
  EXPECT_NEAR(session.Module.FitPage.ModelMW, 8106.0, 1.0);
}

TEST_F(MainWindowTest, TheResultOutlivesARefusedFit) {
  SetUpExample();
  Click("cmdFitMe");
  const auto* chart = Find<ChartWidget>("TChartFitting");
  const Chart fitted = chart->GetChart();
  for (CheckState& check : session.Module.Setup.chkOffset) check = CheckState::kUnchecked;
  for (CheckState& check : session.Module.Setup.chkRefC) check = CheckState::kUnchecked;
  session.Module.Setup.chkMWB = session.Module.Setup.chkLnK1 = CheckState::kUnchecked;
  Click("cmdFitMe");
  EXPECT_EQ(dialogs.messages.back().text, "No Parameters Chosen for Fitting!");
  EXPECT_TRUE(session.Module.LastFit && Find<QAction>("mnuSaveReport")->isEnabled());
  Trigger("mnuOptionDispK");  // draws the result again
  EXPECT_EQ(chart->GetChart(), fitted);
}

TEST_F(MainWindowTest, ADocumentIsNoPartOfTheExperiment) {
  session.Module.ExperimentOpen = false;
  Trigger("mnuWindowNewWindow");
  auto* document = Find<QWidget>("frmDocument(1)");
  document->findChild<QTextEdit*>("logFile")->setPlainText("notes");
  EXPECT_FALSE(session.Module.ExperimentOpen);
  EXPECT_TRUE(document->close());
}

TEST_F(MainWindowTest, SettingsOutliveTheProgram) {
  Trigger("mnuGraphSave");
  Trigger("mnuPlotUsePSI");
  Trigger("mnuOptionDispK");
  Trigger("mnuUseMW");
  dialogs.colors = {QColor(1, 2, 3)};
  Trigger("mnuSetGoodPointsColor");
  dialogs.yesNo = {false, true};
  EXPECT_FALSE(window->close());
  EXPECT_TRUE(window->close());
  window.reset();
  Session again(settings, dialogs, folder.path());
  LoadSettings(again.Module, settings);
  EXPECT_FALSE(again.Module.Preferences.SaveGraphs);
  EXPECT_TRUE(again.Module.Preferences.Plots.PlotUsingPSI);
  EXPECT_EQ(again.Module.Preferences.KFormat, KDisplay::kPlain);
  EXPECT_FALSE(again.Module.Preferences.UseBuoyantMW);
  EXPECT_EQ(again.Module.Preferences.GoodColor, 0x030201U);
  const MainWindow next(again);
  EXPECT_TRUE(next.findChild<QAction*>("mnuOptionDispK")->isChecked());
  EXPECT_FALSE(next.findChild<QAction*>("mnuOptionDispLnK")->isChecked());
}

TEST_F(MainWindowTest, RecentFilesLoadAndSayWhatIsGone) {
  RecordingHost host;
  AddRecentFile(kExamples / "monomer-dimer" / "experiment.exz", settings, host);
  AddRecentFile(folder / "gone.exz", settings, host);
  emit Find<QMenu>("mnuFile")->aboutToShow();
  Trigger("mnuRecDocs(0)");
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].title, "No File Found");
  Trigger("mnuRecDocs(1)");
  EXPECT_EQ(session.Module.Store.NumDatasets(), 9);
  dialogs.yesNo = {false};
  window->Experiments().OpenDropped({ToQString(folder / "gone.exz")});
  EXPECT_EQ(dialogs.questions.back().title, "Load Experiment?");
}

TEST(ScreenRefusal, KnowsTheSmallestScreens) {
  const struct {
    ScreenSize screen;
    bool refused;
  } cases[] = {{{1023, 768, 96, 96}, false},  {{1023, 768, 120, 120}, true},
               {{1023, 768, 120, 96}, false}, {{800, 599, 96, 96}, true},
               {{800, 600, 96, 96}, false},   {{1024, 768, 192, 192}, false}};
  for (const auto& test : cases) {
    EXPECT_EQ(ScreenRefusal(test.screen).has_value(), test.refused)
        << test.screen.width << " " << test.screen.pixelsPerInchX;
  }
  // Kept on purpose: words that run together.
  EXPECT_NE(ScreenRefusal({800, 599, 96, 96})->find("resolutionof 800x600"), std::string::npos);
  EXPECT_NE(ScreenRefusal({1023, 768, 120, 120})->find("theminimum"), std::string::npos);
}

TEST_F(MainWindowTest, ClosingDuringAFitStopsItFirst) {
  SetUpLongFit();
  dialogs.yesNo = {false, true};
  int closes = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, window.get(), [&] {
    if (!session.Calculating) return;
    for (; closes < 2; ++closes) EXPECT_FALSE(window->close());
  });
  timer.start(0);
  Click("cmdFitMe");
  EXPECT_EQ(closes, 2);
  QTest::qWait(10);
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(dialogs.questions.size(), 2U);  // not asked again
}

TEST_F(MainWindowTest, FilesDroppedAnywhereAreLoaded) {
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(ToQString(kExamples / "hetero" / "00001.RA8")),
                 QUrl::fromLocalFile(ToQString(folder.path())),
                 QUrl::fromLocalFile(ToQString(folder.Write("picture.png", "\x89PNG\r\n\x1A\n")))});
  QWidget* log = Find<QTextEdit>("logFile")->viewport();
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(log, &enter);
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(log, &drop);
  EXPECT_TRUE(drop.isAccepted());
  EXPECT_EQ(session.Module.Store.NumDatasets(), 0);  // not before the drop has ended
  QTest::qWait(1);
  EXPECT_EQ(session.Module.Store.NumDatasets(), 1);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(dialogs.messages[0].text.contains("picture.png"));
  EXPECT_FALSE(LogText().contains("file://"));
}

TEST_F(MainWindowTest, HelpAndAboutOpen) {
  session.ProgramFolder = QUORVANE_SOURCE_DIR;
  Trigger("mnuHelpContents");
  auto* guide = Find<QTextEdit>("txtHelp");
  EXPECT_TRUE(guide->toPlainText().contains("channels.txt"));
  Find<QLineEdit>("txtSearch")->setText("isodesmic");
  QTest::keyClick(Find<QLineEdit>("txtSearch"), Qt::Key_Return);
  EXPECT_EQ(guide->textCursor().selectedText().toLower(), "isodesmic");
  auto* pages = Find<QTextBrowser>("txtHelp");
  const QUrl start = pages->source();
  for (const char* link : {"models.md#cross-correlation", "user-guide.md#keys"}) {
    pages->setSource(start.resolved(QUrl(link)));
    EXPECT_GT(pages->verticalScrollBar()->value(), 0) << link;
  }
  Trigger("mnuHelpAbout");
  EXPECT_TRUE(Find<QLabel>("lblVersion")->text().contains("1.0.0"));
  Trigger("mnuFileClose");
  EXPECT_EQ(dialogs.messages.back().text, "Add 'mnuFileClose_Click' code.");
}

TEST_F(MainWindowTest, EveryControlHasANameForScreenReaders) {
  session.CurrentFolder = kExamples / "hetero";
  window->Experiments().OpenDropped({ToQString(kExamples / "hetero" / "00001.RA8")});
  Find<QComboBox>("cmbModel")->setCurrentIndex(10);
  Click("cmdSetFit");
  for (const char* command :
       {"mnuSimulate", "mnuPlan", "mnuMatch", "mnuOverlay", "mnuFitQuality", "mnuCheckMinimum"}) {
    Find<QAction>(command)->setEnabled(true);  // what belongs to a fit as well
    Trigger(command);
  }
  for (QWidget* control : window->findChildren<QWidget*>()) {
    const bool asked = qobject_cast<QAbstractButton*>(control) != nullptr ||
                       qobject_cast<QLineEdit*>(control) != nullptr ||
                       qobject_cast<QComboBox*>(control) != nullptr ||
                       qobject_cast<QAbstractItemView*>(control) != nullptr ||
                       qobject_cast<QAbstractSlider*>(control) != nullptr ||
                       qobject_cast<QAbstractSpinBox*>(control) != nullptr ||
                       qobject_cast<QTextEdit*>(control) != nullptr ||
                       qobject_cast<QPlainTextEdit*>(control) != nullptr;
    const QString name = control->objectName();
    if (!asked || control->focusPolicy() == Qt::NoFocus || name.startsWith("qt_")) continue;
    if (qobject_cast<QAbstractSpinBox*>(control->parentWidget()) != nullptr) continue;
    if (qobject_cast<QComboBox*>(control->parentWidget()) != nullptr) continue;
    if (control->window()->windowType() == Qt::Popup) continue;  // the list of a combo box
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(control);
    EXPECT_FALSE(interface->text(QAccessible::Name).trimmed().isEmpty()) << name.toStdString();
  }
}

namespace {

// Adds the letter that is underlined in `text`, if any.
void AddLetter(const QString& text, QStringList& letters) {
  const QString letter = QKeySequence::mnemonic(text).toString();
  if (!letter.isEmpty()) letters << letter;
}

// What the keyboard reaches of a widget by Alt and a letter.
void AddLetter(const QWidget& widget, QStringList& letters) {
  const auto* label = qobject_cast<const QLabel*>(&widget);
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  if (label != nullptr && label->buddy() != nullptr) AddLetter(label->text(), letters);
  if (button != nullptr && !button->shortcut().isEmpty()) letters << button->shortcut().toString();
}

std::string Doubles(QStringList keys) {
  for (const QString& key : QSet<QString>(keys.begin(), keys.end())) keys.removeOne(key);
  return keys.join(' ').toStdString();
}

}  // namespace

TEST_F(MainWindowTest, NoKeyMeansTwoThings) {
  SetUpExample();
  Click("cmdFitMe");
  for (const char* command :
       {"mnuSimulate", "mnuPlan", "mnuMatch", "mnuOverlay", "mnuFitQuality", "mnuExpGraph"}) {
    Trigger(command);
  }
  QStringList keys;
  for (const QAction* action : window->findChildren<QAction*>()) {
    // The rest belongs to the frames of the children, or to a menu while it is open.
    const bool everywhere = !action->objectName().isEmpty() &&
                            action->shortcutContext() == Qt::WindowShortcut &&
                            action->parent()->objectName() != "mnuEditData";
    if (everywhere) keys << QKeySequence::listToString(action->shortcuts());
  }
  for (const QShortcut* shortcut : window->findChildren<QShortcut*>()) {
    keys << shortcut->key().toString();
  }
  keys.removeAll("");
  EXPECT_EQ(Doubles(keys), "");
  for (QMenu* menu : window->findChildren<QMenu*>()) {
    QStringList letters;
    for (const QAction* action : menu->actions()) AddLetter(action->text(), letters);
    EXPECT_EQ(Doubles(letters), "") << menu->objectName().toStdString();
  }
  for (QMdiSubWindow* child : window->findChildren<QMdiSubWindow*>()) {
    auto* tabs = child->findChild<QTabWidget*>();
    for (int tab = 0; tab < (tabs == nullptr ? 1 : tabs->count()); ++tab) {
      if (tabs != nullptr) tabs->setCurrentIndex(tab);
      QStringList letters;
      for (const QAction* action : window->menuBar()->actions()) AddLetter(action->text(), letters);
      for (const QWidget* widget : child->findChildren<QWidget*>()) {
        if (widget->isVisible()) AddLetter(*widget, letters);
      }
      EXPECT_EQ(Doubles(letters), "") << child->windowTitle().toStdString() << tab;
    }
  }
}

TEST_F(MainWindowTest, KeysOpenTabsAndRunTheFit) {
  session.Module.Preferences.ShowHints = false;
  SetUpExample();
  QTest::keyClick(window.get(), Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(Tabs(), "1211");
  QTest::keyClick(window.get(), Qt::Key_F6);
  EXPECT_EQ(Tabs(), "1121");
  QTest::keyClick(window.get(), Qt::Key_F7);
  EXPECT_TRUE(Find("frmPreview")->isVisible());
  Find("txtRefConc(0)")->setFocus();
  QTest::keyClick(window.get(), Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_TRUE(Find("frmSetRefConc")->isVisible());
  const QString before = LogText();
  QTest::keyClick(window.get(), Qt::Key_F5);
  EXPECT_TRUE(LogText().mid(before.size()).contains("Fitting Time: "));
}
