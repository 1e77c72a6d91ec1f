// Faults caught here: a marquee that takes other points than those under it or outlives its menu,
// an edit that loses the zoom, lines that cannot be moved, a blank or a calculation that is
// disturbed, edits that undo takes to the wrong dataset, a typed range that loses digits or goes to
// datasets out of its channel, a strip that opens another dataset than the one chosen.
#include "windows/data/edit_tab.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include "support/recording_host.h"
#include "support/session.h"
#include "windows/chart_mouse.h"
#include "windows/data/data_window.h"
#include "windows/main_window_fixture.h"
#include "windows/session_fixture.h"

using namespace quorvane;

namespace {

class EditTabTest : public SessionFixture {
 protected:
  EditTabTest() {
    AddSample("first.dat");
    AddSample("second.dat");
    tab.resize(600, 500);
    tab.show();
    tab.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&tab));
    Open(0);
  }

  // Points at 6.0, 6.1 ... 6.5 with signals 0 to 5.
  void AddSample(const char* name) {
    Dataset& sample =
        AddScan(session.Module, {.name = name, .points = 6, .first = 6.0, .last = 6.5},
                [](double, double) { return 0.0; });
    for (std::size_t k = 0; k < 6; ++k) sample.C[k] = static_cast<double>(k);
  }
  void Open(int dataset) {
    tab.ShowDataset(dataset);
    QCoreApplication::processEvents();
  }
  Dataset& Data(std::size_t k = 0) { return session.Module.Store.Datasets[k]; }
  std::string States(std::size_t dataset = 0) {
    std::string states;
    for (std::size_t k = 0; k < 6; ++k) states += Data(dataset).Good[k] == kTrue ? '+' : '-';
    return states;
  }
  void Drag(double x1, double y1, double x2, double y2, Qt::KeyboardModifiers keys = {}) {
    const ChartMouse mouse(chart);
    mouse.Drag(mouse.At(x1, y1), mouse.At(x2, y2), keys);
    QCoreApplication::processEvents();
  }
  QAction* Entry(const char* name) { return menu.findChild<QAction*>(name); }
  void Choose(const char* name) {
    EXPECT_TRUE(menu.isVisible() && Entry(name)->isEnabled()) << name;
    menu.close();
    Entry(name)->trigger();
    QCoreApplication::processEvents();
  }
  QPushButton* Button(const char* name) { return tab.findChild<QPushButton*>(name); }
  // The part of the chart that a picture of it shows; empty for all.
  std::optional<ChartArea> View() {
    Drag(6.2, 2.0, 6.2, 2.0, Qt::ControlModifier);
    return host.pictures.back().view;
  }

  RecordingHost host;
  EditTab tab{session, host};
  ChartWidget& chart = *tab.findChild<ChartWidget*>("editTChart");
  QMenu& menu = *tab.findChild<QMenu*>("mnuEditData");
};

}  // namespace

TEST_F(EditTabTest, EntriesActOnThePointsUnderTheMarquee) {
  const struct {
    const char* entry;
    Qt::Key key;
    Qt::KeyboardModifier modifier;
    const char* states;
  } cases[] = {{"DelInMarq", Qt::Key_Delete, Qt::NoModifier, "+---++"},
               {"DelOutMarq", Qt::Key_Delete, Qt::ShiftModifier, "--++--"},
               {"RestInMarq", Qt::Key_R, Qt::NoModifier, "+-++++"},
               {"RestOutMarq", Qt::Key_R, Qt::ShiftModifier, "++++++"}};
  for (const bool byKey : {false, true}) {
    for (const auto& c : cases) {
      Data().Good.fill(kTrue);
      Data().Good[1] = kFalse;
      Drag(6.35, 1.5, 6.15, 4.5);  // from right to left: the points at 6.2 and 6.3
      if (byKey) {
        QTest::keyClick(&menu, c.key, c.modifier);
        EXPECT_FALSE(menu.isVisible());
      } else {
        Choose(c.entry);
      }
      EXPECT_EQ(States(), c.states) << c.entry;
    }
  }
  const std::vector<ChartSeries>& series = chart.GetChart().panels.front().series;
  EXPECT_EQ(series[0].x.size() + series[1].x.size(), 6u);  // deleted points stay in sight
}

TEST_F(EditTabTest, TheMarqueeGoesWithItsMenu) {
  const QImage before = chart.grab().toImage();
  Drag(6.2, 2.0, 6.2, 2.0);
  EXPECT_FALSE(menu.isVisible());
  Drag(6.15, 1.5, 6.35, 1.5);  // flat is enough
  EXPECT_TRUE(menu.isVisible());
  EXPECT_NE(chart.grab().toImage(), before);
  Choose("CancelEdit");
  EXPECT_EQ(chart.grab().toImage(), before);
  EXPECT_EQ(States(), "++++++");
}

TEST_F(EditTabTest, ZoomOutlivesAnEditButNoOtherDataset) {
  Drag(6.15, 1.5, 6.45, 4.5);
  Choose("ZoomInMarq");
  const std::optional<ChartArea> zoomed = View();
  ASSERT_TRUE(zoomed);
  EXPECT_NEAR(zoomed->x1, 6.15, 0.002);
  EXPECT_NEAR(zoomed->y2, 4.5, 0.02);
  Drag(6.25, 2.5, 6.35, 3.5);
  Choose("DelInMarq");
  EXPECT_EQ(View(), zoomed);
  Open(0);
  EXPECT_FALSE(View());
  chart.ZoomTo(*zoomed);
  Button("cmdZoomOut")->click();
  EXPECT_FALSE(View());
}

TEST_F(EditTabTest, ShiftMovesTheLines) {
  const double pixel = 0.6 / 400;  // cm, at least
  Drag(6.0, 2.0, 6.06, 2.0);       // no Shift
  menu.close();
  Drag(6.25, 2.0, 6.3, 2.0, Qt::ShiftModifier);  // no line there
  Button("cmdSetMenBase")->click();
  EXPECT_EQ(Data().Rmen, 6.0);
  Drag(6.0, 2.0, 6.4, 3.0, Qt::ShiftModifier);  // beyond the other line
  Drag(6.5, 2.0, 6.1, 3.0, Qt::ShiftModifier);
  EXPECT_EQ(Data().Rmen, 6.0);
  Drag(6.15, 1.5, 6.35, 3.5);
  Choose("DelInMarq");  // leaves the lines where they are
  Button("cmdSetMenBase")->click();
  EXPECT_NEAR(Data().Rmen, 6.1, pixel);
  EXPECT_NEAR(Data().Rbase, 6.4, pixel);
  EXPECT_EQ(chart.GetChart().panels.front().marks[0].x, Data().Rmen);
  Button("cmdUndoEdit")->click();
  EXPECT_EQ(Data().Rbase, 6.5);
  EXPECT_EQ(chart.GetChart().panels.front().marks[1].x, 6.5);
  EXPECT_EQ(States(), "++--++");
}

TEST_F(EditTabTest, KeysStepThroughTheEditsOfTheDatasetShown) {
  Drag(6.15, 1.5, 6.35, 3.5);
  Choose("DelInMarq");
  Open(1);
  EXPECT_FALSE(Button("cmdUndoEdit")->isEnabled());
  QTest::keyClick(&chart, Qt::Key_Z, Qt::ControlModifier);
  Open(0);
  chart.setFocus();
  QTest::keyClick(&tab, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(States(), "++++++");
  QTest::keyClick(&tab, Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(States(), "++--++");
  Button("cmdRestoreAll")->click();
  tab.SetCalculating(true);
  ChartMouse(chart).Drag({100, 100}, {300, 300});
  QTest::keyClick(&tab, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(menu.isVisible());
  EXPECT_EQ(States(), "++++++");
}

TEST_F(EditTabTest, ABlankIsOnlyLookedAt) {
  Data().FileName.SetBytes("BL_first.dat");
  Data().Edited = 0.0;
  Open(0);
  EXPECT_TRUE(chart.GetChart().panels.front().marks.empty());
  EXPECT_EQ(Data().Edited, 0.0);
  Drag(6.15, 1.5, 6.35, 3.5);
  std::string entries;
  for (const QAction* entry : menu.actions()) entries += entry->isEnabled() ? '+' : '-';
  EXPECT_EQ(entries, "++----+++-");
  EXPECT_FALSE(Button("cmdRestoreAll")->isEnabled() || Button("cmdSetMenBase")->isEnabled());
  menu.close();
}

// Nine datasets of three channels, 100 points each, a third of a thousandth off a round radius.
class ChannelsTest : public EditTabTest {
 protected:
  ChannelsTest() {
    session.Module.Store.Datasets.clear();
    session.Module.Store.UseData.clear();
    for (const char* speed : {"10280", "14280", "20280"}) {
      for (const char letter : {'A', 'B', 'C'}) {
        const std::string name = std::string("1_2") + letter + speed + ".dat";
        const double first = 6.0 + 0.3 * (letter - 'A') + 1.0 / 3000;
        AddScan(session.Module,
                {.name = name.c_str(), .points = 100, .first = first, .last = first + 0.099},
                [](double, double) { return 0.5; });
      }
    }
    session.Remark = [this](const QString& text) { remark = text; };
    Open(0);
  }
  std::string Kept() {
    std::string counts;
    for (const Dataset& dataset : session.Module.Store.Datasets) {
      counts += (counts.empty() ? "" : " ") + std::to_string(CountGoodPoints(dataset));
    }
    return counts;
  }
  void Type(const char* box, const char* text) { tab.findChild<QLineEdit*>(box)->setText(text); }
  QString Text(const char* box) { return tab.findChild<QLineEdit*>(box)->text(); }
  QString Place() { return tab.findChild<QLabel*>("lblEditPlace")->text(); }

  QString remark;
};

TEST_F(ChannelsTest, ThreeRangesTrimNineDatasets) {
  const QSignalSpy edited(&tab, &EditTab::Edited);
  const struct {
    const char* from;
    const char* to;
    const char* kept;
  } ranges[] = {{"6.02", "6.06", "40 100 100 40 100 100 40 100 100"},
                {"6.32", "6.35", "40 30 100 40 30 100 40 30 100"},
                {"6.62", "6.64", "40 30 20 40 30 20 40 30 20"}};
  for (const auto& [from, to, kept] : ranges) {
    Type("txtKeepFrom", from);
    Type("txtKeepTo", to);
    Button("cmdSameChannel")->click();
    EXPECT_EQ(Kept(), kept);
    EXPECT_EQ(Text("txtKeepFrom"), from);  // as typed, not the first point behind it
    QTest::keyClick(&chart, Qt::Key_PageDown, Qt::ControlModifier);
  }
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(remark, "The range 6.62 to 6.64 cm is kept in 3 datasets: 3, 6, 9.");
  EXPECT_EQ(Place(), "4 of 9");
  EXPECT_EQ(edited.count(), 6);
  Button("cmdUndoSameChannel")->click();
  EXPECT_EQ(Kept(), "40 30 20 40 30 100 40 30 100");
  EXPECT_FALSE(Button("cmdUndoSameChannel")->isEnabled());
  QTest::keyClick(&chart, Qt::Key_Z, Qt::ControlModifier);  // dataset 4, by itself
  EXPECT_EQ(Kept(), "40 30 20 100 30 100 40 30 100");
}

TEST_F(ChannelsTest, ThreeMarqueesTrimNineDatasets) {
  Drag(6.0195, 0.2, 6.0605, 0.8);
  tab.findChild<QAction*>("KeepInChannel")->trigger();
  EXPECT_EQ(Kept(), "41 100 100 41 100 100 41 100 100");
  EXPECT_EQ(Place(), "2 of 9");
  Drag(6.3195, 0.2, 6.3505, 0.3);  // whatever its height
  tab.findChild<QAction*>("KeepInChannel")->trigger();
  EXPECT_EQ(Place(), "3 of 9");
  Drag(6.62, 0.2, 6.62001, 0.8);
  tab.findChild<QAction*>("KeepInChannel")->trigger();  // refused: too few points
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(Kept(), "41 31 100 41 31 100 41 31 100");
  Drag(6.6195, 0.2, 6.6505, 0.8);
  tab.findChild<QAction*>("KeepInChannel")->trigger();
  EXPECT_EQ(Place(), "3 of 9");  // none is whole any more
}

TEST_F(ChannelsTest, AnUntouchedBoundKeepsAllItsDigits) {
  EXPECT_EQ(Text("txtKeepFrom"), "6.0003");  // beyond the first point by a third of 1e-4
  Type("txtKeepTo", "6.05");
  QTest::keyClick(tab.findChild<QLineEdit*>("txtKeepTo"), Qt::Key_Return);
  EXPECT_EQ(Kept(), "50 100 100 100 100 100 100 100 100");
  Type("txtKeepTo", "6.08");
  Button("cmdKeepRange")->click();
  EXPECT_TRUE(Kept().starts_with("80 "));  // a wider range restores
  QTest::keyClick(tab.findChild<QLineEdit*>("txtKeepTo"), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Text("txtKeepTo"), "6.0493");
  for (const auto& [from, to] : {std::pair("6.05", "6.04"), std::pair("", "6.04"),
                                 std::pair("6.04", "6.041"), std::pair("7", "8")}) {
    const auto told = dialogs.messages.size();
    Type("txtKeepFrom", from);
    Type("txtKeepTo", to);
    Button("cmdSameChannel")->click();
    EXPECT_EQ(dialogs.messages.size(), told + 1) << from;
    EXPECT_TRUE(Kept().starts_with("50 100 100 100 ")) << from;
  }
}

TEST_F(ChannelsTest, WhatCannotBeKeptIsNamed) {
  Data(3).FileName.SetBytes("BL_1_2A14280.dat");
  for (double& radius : Data(6).R) radius += 1.0;
  Data(7).FileName.SetBytes("1_3A20280.dat");
  tab.findChild<QAbstractButton*>("chkAllCells")->click();
  Button("cmdSameChannel")->click();
  EXPECT_EQ(
      dialogs.messages.back().text,
      "The range 6.0003 to 6.0993 cm is kept in 1 dataset: 1. Left alone: 7 (fewer than 10 points "
      "would be kept); 8 (fewer than 10 points would be kept).");
  Open(3);
  EXPECT_FALSE(Button("cmdSameChannel")->isEnabled() || Button("cmdKeepRange")->isEnabled());
  Data(5).FileName.SetBytes("lysozyme");
  Open(5);
  Button("cmdSameChannel")->click();
  EXPECT_EQ(dialogs.messages.back().text,
            "the name of this dataset does not tell its channel, as 12_3B20280.dat does");
}

TEST_F(ChannelsTest, TheStripAndTheButtonsOpenDatasets) {
  auto* strip = tab.findChild<QListView*>("lstDatasets");
  const auto click = [&](int entry, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(strip->viewport(), Qt::LeftButton, keys,
                      strip->visualRect(strip->model()->index(entry, 0)).center());
  };
  click(2);
  EXPECT_EQ(Place(), "3 of 9");
  EXPECT_EQ(chart.GetChart().title, "1_2C10280.dat");
  click(2, Qt::ControlModifier);  // the mark stays
  EXPECT_EQ(strip->selectionModel()->selectedIndexes().value(0).row(), 2);
  QTest::keyClick(strip, Qt::Key_End);
  EXPECT_EQ(Place(), "9 of 9");
  EXPECT_FALSE(Button("cmdNextDataset")->isEnabled());
  Button("cmdPrevDataset")->click();
  EXPECT_EQ(strip->selectionModel()->selectedIndexes().value(0).row(), 7);
  EXPECT_EQ(strip->model()->index(7, 0).data(Qt::AccessibleTextRole).toString(),
            "Dataset 8, 1_2B20280.dat, 100 of 100 points in use");
  const QImage before = strip->viewport()->grab().toImage();
  Button("cmdSetMenBase")->setFocus();
  Type("txtKeepTo", "6.35");
  Button("cmdKeepRange")->click();
  EXPECT_NE(strip->viewport()->grab().toImage(), before);  // deleted points show
  tab.Clear();
  EXPECT_EQ(Place(), "9 datasets");
  strip->setFocus();  // opens nothing
  EXPECT_EQ(Place(), "9 datasets");
  tab.SetCalculating(true);
  QTest::keyClick(&tab, Qt::Key_PageDown, Qt::ControlModifier);
  tab.SetCalculating(false);
  EXPECT_EQ(Place(), "9 datasets");
  Button("cmdNextDataset")->click();
  EXPECT_EQ(Place(), "1 of 9");
}

TEST_F(MainWindowTest, TheEditTabFollowsColoursAndStore) {
  SetUpExample();
  Click("cmdEditData(1)");
  const auto* chart = Find<ChartWidget>("editTChart");
  const PrintContent printed = Find<DataWindow>("frmData")->Printed();
  EXPECT_EQ(std::get<const ChartWidget*>(printed), chart);
  dialogs.colors = {QColor(1, 2, 3)};
  Trigger("mnuSetGoodPointsColor");
  EXPECT_EQ(chart->GetChart().panels[0].series[0].color, 0x030201u);
  ChartMouse mouse(*Find<ChartWidget>("editTChart"));
  const Dataset& shown = session.Module.Store.Datasets[1];
  const double middle = (FirstRadius(shown) + LastRadius(shown)) / 2;
  mouse.Drag(mouse.At(shown.Rmen, shown.C[0]), mouse.At(middle, shown.C[0]), Qt::ShiftModifier);
  Click("cmdSetMenBase");
  EXPECT_EQ(Find<QLineEdit>("txtRmen(1)")->text().toDouble(), std::round(shown.Rmen * 1e4) / 1e4);
  Click("cmdRemoveData(0)");
  EXPECT_TRUE(chart->GetChart().panels.empty());
  EXPECT_FALSE(Find<QAbstractButton>("cmdUndoEdit")->isEnabled());
  Click("cmdEditData(0)");  // was the second one
  Click("cmdUndoEdit");
  EXPECT_EQ(session.Module.Store.Datasets[0].Rmen, FirstRadius(session.Module.Store.Datasets[0]));
}
