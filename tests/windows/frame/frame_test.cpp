// Faults caught here: a frame that leaves its screen or its corner, children that keep their size
// or are squeezed, boxes that nobody sees in the dark, a title that tells of saved work, work that
// is lost behind "Save...", menus out of order, keys that go to the wrong window.
#include <QDialog>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>
#include <QStyleOptionButton>

#include "base/files.h"
#include "plot/chart_widget.h"
#include "windows/chart_mouse.h"
#include "windows/controls/check_style.h"
#include "windows/controls/child_area.h"
#include "windows/frame/window_place.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

const QList<QRect> kScreens = {{0, 0, 1920, 1050}, {1920, 200, 1280, 1024}, {0, -600, 800, 600}};

class FrameTest : public MainWindowTest {
 protected:
  QMdiSubWindow* Child(const char* name) {
    return qobject_cast<QMdiSubWindow*>(Find(name)->parentWidget());
  }
  void Close() {
    dialogs.yesNo = {true};
    EXPECT_TRUE(window->close());
    window.reset();
  }
};

// Lightness of the rim of an empty check box.
int RimOn(const QPalette& palette) {
  QImage image(20, 20, QImage::Format_RGB32);
  image.fill(palette.color(QPalette::Base));
  QPainter painter(&image);
  QStyleOptionButton option;
  option.rect = {4, 4, 12, 12};
  option.palette = palette;
  option.state = QStyle::State_Enabled | QStyle::State_Off;
  CheckStyle().drawPrimitive(QStyle::PE_IndicatorCheckBox, &option, &painter, nullptr);
  return image.pixelColor(10, 4).lightness();
}

}  // namespace

TEST(CheckStyle, AnEmptyBoxCanBeSeenOnEveryGround) {
  constexpr int kFaint = 60;
  QPalette dark(QColor(53, 53, 53));
  dark.setColor(QPalette::Base, QColor(35, 35, 35));
  EXPECT_GT(RimOn(dark), 35 + kFaint);
  EXPECT_LT(RimOn(QPalette(QColor(239, 239, 239))), 255 - kFaint);
}

TEST(FramePlace, IsOnTheScreenThatHoldsItsCorner) {
  const struct {
    QRect kept;
    QRect shown;
  } cases[] = {{{100, 90, 900, 700}, {100, 90, 900, 700}},
               {{2000, 300, 900, 700}, {2000, 300, 900, 700}},    // the second
               {{2800, 900, 900, 700}, {2300, 524, 900, 700}},    // moved back, no farther
               {{1930, 190, 3000, 900}, {1920, 200, 1280, 900}},  // above it, too wide
               {{100, -500, 900, 300}, {0, -500, 800, 300}},      // the third
               {{-3000, 5000, 900, 700}, {0, 350, 900, 700}}};    // on none: the nearest
  for (const auto& test : cases) {
    EXPECT_EQ(WithinScreen(test.kept, ScreenOf(test.kept.topLeft(), kScreens)), test.shown)
        << test.kept.x() << " " << test.kept.y();
  }
  const QRect least(66, 66, 433, 833);
  EXPECT_EQ(FirstFrame(least, {1600, 800}, kScreens[0]), QRect(66, 66, 1600, 833));
  EXPECT_EQ(FirstFrame(least, {1600, 800}, {0, 0, 1024, 768}), QRect(66, 66, 958, 702));
  EXPECT_EQ(FirstFrame(least, {1600, 800}, kScreens[1]), QRect(1920, 200, 1280, 833));
}

TEST_F(FrameTest, PlaceAndFontOutliveTheProgram) {
  EXPECT_EQ(window->pos(), QPoint(ToPixels(1000), ToPixels(1000)));
  EXPECT_LE(window->frameGeometry().bottom(), window->screen()->geometry().bottom());
  window->move(45, 60);
  window->resize(620, 610);
  dialogs.fonts = {QFont("DejaVu Sans", 14, QFont::Bold)};
  Trigger("mnuRTBfont");
  EXPECT_EQ(settings.Get("LogFont", "Font"), std::nullopt);
  Close();
  EXPECT_EQ(settings.Get("LogFont", "Font"), "DejaVu Sans");
  EXPECT_EQ(settings.Get("LogFont", "Size"), "14");
  EXPECT_EQ(settings.Get("LogFont", "Bold"), "True");
  const char* keys[][2] = {{"MainLeft", "675"}, {"MainTop", "900"}, {"MainWidth", "9300"}};
  for (const auto& [key, twips] : keys) EXPECT_EQ(settings.Get("Settings", key), twips) << key;
  Start();
  EXPECT_EQ(window->pos(), QPoint(45, 60));
  EXPECT_EQ(window->size(), QSize(620, 610));
}

TEST_F(FrameTest, ChildrenKeepTheirShareOfTheFrame) {
  auto* area = window->findChild<ChildArea*>();
  QMdiSubWindow* data = Child("frmData");
  QMdiSubWindow* log = Child("frmDocument");
  window->resize(1400, 900);
  Trigger("mnuWindowTileVertical");
  data->resize(area->Room().width() / 4 * 3, data->height());
  log->setGeometry(data->width(), 0, area->Room().width() - data->width(), log->height());
  for (const QSize& size : {QSize(1900, 1000), QSize(1000, 700), QSize(1400, 900)}) {
    window->resize(size);
    QCoreApplication::processEvents();
    const QRect room = area->Room();
    EXPECT_NEAR(data->width(), room.width() * 0.75, 2.0) << size.width();
    EXPECT_EQ(log->geometry(),
              QRect(data->geometry().topRight() + QPoint(1, 0), room.bottomRight()));
  }
  data->showMaximized();
  window->resize(1800, 900);
  data->showNormal();
  QTest::qWait(1);
  EXPECT_NEAR(data->width(), area->Room().width() * 0.75, 2.0);
}

TEST_F(FrameTest, WhatDoesNotFitScrollsInsteadOfBeingSqueezed) {
  window->resize(1024, 600);
  Trigger("mnuSimulate");
  for (const char* tiled : {"mnuWindowTileHorizontal", "mnuWindowTileVertical"}) {
    Trigger(tiled);
    for (const char* button : {"cmdLoadFile", "cmdPreviewIt", "cmdMultiLoad", "cmdRefreshLB"}) {
      const auto* control = Find(button);
      EXPECT_GE(control->height(), control->minimumSizeHint().height()) << tiled << button;
      EXPECT_GE(control->width(), control->minimumSizeHint().width()) << tiled << button;
    }
    for (QMdiSubWindow* child : window->findChildren<QMdiSubWindow*>()) {
      if (!child->isVisible()) continue;
      EXPECT_EQ(child->size().expandedTo(child->minimumSizeHint()), child->size()) << tiled;
    }
  }
}

TEST_F(FrameTest, TheTitleTellsTheNameAndWhatIsUnsaved) {
  const auto title = [this] {
    QTest::qWait(1);
    return window->windowTitle() + (window->isWindowModified() ? " unsaved" : "");
  };
  EXPECT_EQ(title(), "Quorvane[*]");
  Find<QTextEdit>("logFile")->insertPlainText("note");
  EXPECT_EQ(title(), "Quorvane[*] unsaved");
  SetUpExample();
  EXPECT_EQ(title(), "experiment[*] - Quorvane");
  session.Module.Store.Datasets[0].RefConc *= 2.0;  // as a box of the page would
  EXPECT_TRUE(QTest::qWaitFor([this] { return window->isWindowModified(); }, 3000));
  Click("cmdFitMe");
  EXPECT_EQ(title(), "experiment[*] - Quorvane unsaved");
  dialogs.files = {"", ToQString(folder / "no such folder" / "a.exz"), ToQString(folder / "b.exz")};
  for (const char* after : {"experiment[*] - Quorvane unsaved", "experiment[*] - Quorvane unsaved",
                            "b[*] - Quorvane"}) {
    Trigger("mnuFileSave");
    EXPECT_EQ(title(), after);
  }
  EXPECT_EQ(dialogs.requests.front().defaultName, "experiment.exz");
  ASSERT_EQ(dialogs.messages.size(), 1U);  // a cancel says nothing
  EXPECT_TRUE(dialogs.messages[0].text.startsWith("The experiment was not saved!"));
  dialogs.yesNo = {true};
  Trigger("mnuFileNew");
  EXPECT_EQ(title(), "Quorvane[*]");
}

// A save that was cancelled or has failed keeps the experiment.
TEST_F(FrameTest, NothingIsDiscardedBehindSave) {
  SetUpExample();
  const std::function<void()> commands[] = {
      [this] { Trigger("mnuFileNew"); },
      [this] {
        window->Experiments().LoadAsked(ToQString(kExamples / "hetero" / "experiment.exz"));
      },
      [this] { window->close(); }};
  for (const auto& command : commands) {
    dialogs.discards = {DiscardChoice::kSave, DiscardChoice::kSave, DiscardChoice::kNo};
    dialogs.files = {"", ToQString(folder / "no such folder" / "a.exz")};
    for (int answer = 0; answer < 3; ++answer) {
      command();
      EXPECT_EQ(session.Module.Store.NumDatasets(), 9);
      EXPECT_TRUE(window->isVisible());
    }
    EXPECT_TRUE(dialogs.files.empty());
  }
  dialogs.files = {ToQString(folder / "gone")};
  dialogs.messages.clear();
  Trigger("mnuFileSaveSets");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  dialogs.discards = {DiscardChoice::kSave};
  dialogs.files = {ToQString(folder / "saved.exz")};
  EXPECT_TRUE(window->close());
  EXPECT_TRUE(FileExists(folder / "saved.exz"));
}

TEST_F(FrameTest, AfterALoadAndAPictureTheKeysGoToTheLog) {
  session.Module.Preferences.ShowHints = false;
  const auto keysGoToLog = [this] { return window->focusWidget() == Find("logFile"); };
  SetUpExample();
  EXPECT_TRUE(keysGoToLog());
  Find("txtMWB")->setFocus();
  QDialog modal(window.get());
  modal.setModal(true);
  modal.show();
  dialogs.yesNo = {true};
  window->Experiments().LoadAsked(ToQString(kExamples / "monomer-dimer" / "experiment.exz"));
  EXPECT_FALSE(keysGoToLog());
  modal.close();
  window->activateWindow();
  for (const bool pictures : {false, true}) {
    session.Module.Preferences.LogGraphs = session.Module.Preferences.SaveGraphs = pictures;
    Click("cmdSetFit");
    Find("txtMWB")->setFocus();
    Click("cmdFitMe");
    EXPECT_EQ(keysGoToLog(), pictures);
    EXPECT_EQ(Find("txtMWB")->hasFocus(), !pictures);
  }
}

TEST_F(FrameTest, MenusAreInTheirOrder) {
  std::string text;
  const std::function<void(const QList<QAction*>&)> tell = [&](const QList<QAction*>& actions) {
    for (const QAction* action : actions) {
      if (action->isSeparator() || !action->isVisible()) continue;
      text += action->text().toStdString() + '|';
      if (action->menu() != nullptr) tell(action->menu()->actions());
    }
    text += '\n';
  };
  tell(window->menuBar()->actions());
  EXPECT_EQ(text,
            "&File|&New Experiment|&Load Experiment|Load E&xample|C&hoose Scans...|&Close|&Save "
            "Experiment|&Import "
            "Text...|Recent "
            "Files|Empty|\n"
            "Save Loaded &Data|Save Log &File|Save &Report|Save &Job...|&Apply Job...|&Exit|\n"
            "&Graphs|Show in &Log|&Save for Export|&Export|&Overlay Datasets|&Delete All|"
            "Set Edit Colors|Good Points|Deleted Points|\n&Figure...|\n"
            "&Print|&Options|Fitting|Display Buoyant MW|Display MW|Display ln(K)s|"
            "Display Log10(K)s|Display K|Fit to &Rest|&Always Fit to Rest|Fit &Quality...|"
            "&Error Analysis...|&Check Minimum...|\n"
            "Plots|Subtract Baseline|Plot Using (r^2 - r0^2)/2|\n"
            "Set vbar/vbar(A)|Set vbar(B)|Set density|Set Critical CCC|Set MC Tolerance|"
            "&Solution...|\n"
            "&Simulation|&Match|&Window|&New Window|&Cascade|Tile &Horizontal|Tile &Vertical|"
            "&Arrange Icons|&Fits...|&Plan Experiment...|\n&Help|&Contents|&Search For Help "
            "On...|&About |\n\n");
}

TEST_F(FrameTest, DeleteAllForgetsTheGraphsAndBeginsAgainAtOne) {
  SetUpExample();
  Click("cmdFitMe");
  const int graphs = session.Module.NumGraphs();
  Trigger("mnuExpGraph");
  dialogs.yesNo = {false, true};
  for (const int left : {graphs, 0}) {
    Trigger("mnuCanGraphs");
    EXPECT_EQ(dialogs.questions.back().text, "Delete all saved graphs?");
    EXPECT_EQ(session.Module.NumGraphs(), left);
    EXPECT_EQ(Find<QComboBox>("TeeChartList")->count(), left);
    EXPECT_EQ(Find("frmGraphs")->isVisible(), left > 0);
    EXPECT_EQ(Find<QAction>("mnuExpGraph")->isEnabled(), left > 0);
    EXPECT_EQ(Find<QAction>("mnuCanGraphs")->isEnabled(), left > 0);
  }
  Click("cmdFitMe");
  Trigger("mnuExpGraph");
  EXPECT_EQ(Find<QComboBox>("TeeChartList")->currentText(), "Graph #1");
}

TEST_F(FrameTest, TheStatusBarOfTheDataFollowsThePointer) {
  SetUpExample();
  Click("cmdEditData(0)");
  const auto* status = Find<QLabel>("dataStatusBar");
  auto* chart = Find<ChartWidget>("editTChart");
  emit chart->PointerMoved(6.51239, -0.25);
  EXPECT_EQ(status->text(), "6.5124,-0.25");
  emit chart->PointerMoved(0.5, 1234.56789);
  EXPECT_EQ(status->text(), ".5,1234.5679");
  Find<QTabWidget>("dataTab")->setCurrentIndex(0);
  EXPECT_EQ(status->text(), "");
}
