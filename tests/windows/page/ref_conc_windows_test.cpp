// Faults caught here: a bar that the text box does not follow or that goes left by the right arrow,
// a window, or its bare frame, that stays over a page that is gone, values that a closed window
// keeps or a kept one loses, a hint that comes again.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>

#include "plot/chart_widget.h"
#include "windows/chart_mouse.h"
#include "windows/data/data_window.h"
#include "windows/main_window_fixture.h"
#include "windows/page/fit_control_tab.h"

using namespace quorvane;

namespace {

class RefConcWindowsTest : public MainWindowTest {
 protected:
  RefConcWindowsTest() {
    SetUpExample();
    SetRefConc(1, 0.5);
  }
  double RefConc(std::size_t dataset) { return session.Module.Store.Datasets[dataset].RefConc; }
  void SetRefConc(std::size_t dataset, double value) {
    session.Module.Store.Datasets[dataset].RefConc = value;
    Find<DataWindow>("frmData")->FitControl().ShowValues();
  }
  void Adjust(const char* box) {
    QTest::mouseDClick(Find(box), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Find("frmSetRefConc")->isVisible());
  }
  void CloseHint() {
    Click("Command1");
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }
  // The inner window may be hidden and leave its frame.
  bool FrameIsShown(const char* name) { return Find(name)->parentWidget()->isVisible(); }
  void MoveBar(int value) {
    Find<QScrollBar>("hsSetRefC")->setValue(value);
    QCoreApplication::processEvents();
  }
};

}  // namespace

TEST_F(RefConcWindowsTest, BarsMoveTheBoxAndClosingDecides) {
  CloseHint();
  Click("cmdFitMe");
  SetRefConc(1, 0.5);
  EXPECT_TRUE(Find("cmdCalcCI")->isEnabled());
  const auto* box = Find<QLineEdit>("txtRefConc(1)");
  const auto* chart = Find<ChartWidget>("teeSetRefC");
  const std::vector<std::pair<std::function<void()>, double>> closings = {
      {[this] { Click("cmdCancel"); }, 0.5},
      {[this] { QTest::keyClick(Find("cmdCancel"), Qt::Key_Return); }, 0.5},
      {[this] { QTest::keyClick(Find("hsSetRefC"), Qt::Key_Escape); }, 0.5},
      {[this] { Find("frmSetRefConc")->parentWidget()->close(); }, 0.5},  // by its frame
      {[this] { Find<QAbstractButton>("cmdSetFit")->click(); }, 0.5},
      {[this] { QTest::keyClick(Find("hsSetRefC"), Qt::Key_Return); }, 5.0}};
  for (const auto& [closing, value] : closings) {
    Adjust("txtRefConc(1)");
    EXPECT_FALSE(Find("cmdCalcCI")->isEnabled() || Find("cmdShowCCCs")->isEnabled());
    EXPECT_FALSE(Find("hsSetRefCB")->isVisible() || Find("lblCB")->isVisible());
    EXPECT_EQ(Find<QScrollBar>("hsSetRefC")->value(), 0);
    const Chart before = chart->GetChart();
    QTest::keyClick(Find("hsSetRefC"), Qt::Key_Right);
    EXPECT_EQ(Find<QScrollBar>("hsSetRefC")->value(), 2);
    MoveBar(1000);
    EXPECT_EQ(box->text(), "5.0000");
    EXPECT_NE(chart->GetChart(), before);
    closing();
    QTest::qWait(1);
    EXPECT_FALSE(FrameIsShown("frmSetRefConc"));
    EXPECT_EQ(window->findChild<QMdiArea*>()->activeSubWindow(), Find("frmData")->parentWidget());
    EXPECT_NEAR(RefConc(1), value, 1e-8);
    EXPECT_EQ(box->text(), value == 5.0 ? "5.0000" : "0.5000");
  }
}

TEST_F(RefConcWindowsTest, AFitTakesTheValuesInEffectAndAnUnloadGivesThemBack) {
  Adjust("txtRefConc(1)");
  MoveBar(200);
  const auto* chart = Find<ChartWidget>("teeSetRefC");
  const std::size_t points = chart->GetChart().panels[0].series[0].x.size();
  Find<QAbstractButton>("cmdEditData(1)")->click();
  const Dataset& shown = session.Module.Store.Datasets[1];
  const ChartMouse mouse(*Find<ChartWidget>("editTChart"));
  mouse.Drag(mouse.At(FirstRadius(shown), 0.0), mouse.At(shown.RefRadius, 10.0));
  QTest::keyClick(Find("mnuEditData"), Qt::Key_Delete);
  EXPECT_LT(chart->GetChart().panels[0].series[0].x.size(), points);  // it follows the edit
  Click("cmdUndoEdit");
  EXPECT_EQ(chart->GetChart().panels[0].series[0].x.size(), points);
  Find<QTabWidget>("dataTab")->setCurrentIndex(2);
  Click("cmdFitMe");
  EXPECT_FALSE(FrameIsShown("frmSetRefConc"));
  EXPECT_TRUE(LogText().contains("Fitting Time: "));
  EXPECT_GT(RefConc(1), 0.0);
  SetRefConc(1, 0.5);
  Adjust("txtRefConc(1)");
  MoveBar(200);
  Click("cmdRemoveData(0)");
  EXPECT_FALSE(Find("frmSetRefConc")->isVisible());
  EXPECT_EQ(RefConc(0), 0.5);
  EXPECT_NE(RefConc(1), 0.5);
}

TEST_F(RefConcWindowsTest, TwoBarsForTwoComponentsAndOneForIsodesmic) {
  for (const auto& [model, second] : {std::pair{6, true}, {9, false}, {10, true}, {5, false}}) {
    Find<QComboBox>("cmbModel")->setCurrentIndex(model);
    Click("cmdSetFit");
    dialogs.yesNo = {false};  // the cell's ends of model 5
    Adjust("txtRefConc(0)");
    EXPECT_EQ(Find("hsSetRefCB")->isVisible(), second) << model;
    EXPECT_EQ(Find("lblCB")->isVisible(), second) << model;
  }
}

TEST_F(RefConcWindowsTest, PreviewPagesThroughTheDatasets) {
  const double before = RefConc(0);
  Click("cmdPreviewFit");
  EXPECT_TRUE(Find("frmPreview")->isVisible());
  auto* bar = Find<QScrollBar>("hsPreview");
  const int pages = session.Module.Setup.NumFitSets;
  EXPECT_EQ(bar->maximum(), pages - 1);
  for (int page = pages; page-- > 0;) {
    bar->setValue(page);
    const std::string title = Find<ChartWidget>("teePreview")->GetChart().title;
    const Dataset& dataset = session.Module.Store.Datasets[static_cast<std::size_t>(page)];
    EXPECT_EQ(title, "(" + std::to_string(page + 1) + ") " + NameOf(dataset) + " : Data Plot");
  }
  EXPECT_EQ(RefConc(0), before);
  QTest::keyClick(bar, Qt::Key_Right);
  EXPECT_EQ(bar->value(), 1);
  Click("cmdSetFit");
  EXPECT_FALSE(FrameIsShown("frmPreview"));
}

TEST_F(RefConcWindowsTest, DeviationsAreTheOtherPlotOfAFitAndOfItsPreview) {
  Find<QComboBox>("cmbModel")->setCurrentIndex(6);
  Click("cmdSetFit");
  Click("chkUseMC");
  session.Module.CellGeometries = {{1, "cell", {5.0F, 8.0F}, {1.0F, 1.0F}}};
  for (Dataset& dataset : session.Module.Store.Datasets) dataset.ALoad = dataset.BLoad = 1e-6;
  Click("cmdPreviewFit");
  const auto points = [this](const char* chart) {
    return Find<ChartWidget>(chart)->GetChart().panels.at(0).series.at(0).x.size();
  };
  const std::size_t data = points("teePreview");
  Click("optPreviewPlot(1)");
  Find<QScrollBar>("hsPreview")->setValue(1);
  EXPECT_TRUE(Find<ChartWidget>("teePreview")->GetChart().title.ends_with(" : Deviation Plot"));
  EXPECT_EQ(points("teePreview"), data + 2);  // those of mass conservation
  Find<QComboBox>("cmbModel")->setCurrentIndex(2);
  Click("cmdSetFit");
  Click("cmdFitMe");
  Click("optResultPlot(1)");
  Click("cmdResultForward");
  EXPECT_TRUE(Find<ChartWidget>("TChartFitting")->GetChart().title.starts_with("(2) "));
  EXPECT_EQ(Find<ChartWidget>("TChartFitting")->GetChart().panels.size(), 1U);
  Click("optResultPlot(0)");
  EXPECT_EQ(Find<ChartWidget>("TChartFitting")->GetChart().panels.size(), 2U);
}

TEST_F(RefConcWindowsTest, ALongNameIsCutAndWholeInItsTip) {
  Dataset& dataset = session.Module.Store.Datasets[0];
  dataset.FilePath.SetBytes("/lab/scan.ra1");
  const std::pair<const char*, const char*> cases[] = {{"a name of 17 char", "a name of 17 char"},
                                                       {"one name of 18 ch.", "...name of 18 ch."}};
  for (const auto& [name, shown] : cases) {
    dataset.FileName.SetBytes(name);
    Find<DataWindow>("frmData")->FitControl().ShowValues();
    EXPECT_EQ(Find<QLabel>("lblFitData(0)")->text(), shown);
    EXPECT_EQ(Find("lblFitData(0)")->toolTip(), QString(name) + "\n/lab/scan.ra1");
  }
}

TEST_F(RefConcWindowsTest, TheHintComesOnceAndNeverWhenTold) {
  auto* tabs = Find<QTabWidget>("dataTab");
  const auto enter = [tabs] {
    tabs->setCurrentIndex(1);
    tabs->setCurrentIndex(2);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  };
  EXPECT_EQ(Find("frmGraphicalRefC")->windowTitle(), "Hint");
  EXPECT_FALSE(Find("frmGraphicalRefC")->isModal());
  for (const int tab : {1, 0, 2}) {  // it belongs to its tab
    tabs->setCurrentIndex(tab);
    EXPECT_EQ(Find("frmGraphicalRefC")->isVisible(), tab == 2);
  }
  Click("Command1");
  enter();
  EXPECT_EQ(window->findChild<QWidget*>("frmGraphicalRefC"), nullptr);
  EXPECT_EQ(settings.Get("Settings", "ShowHints"), "1");
  Start();  // another run
  SetUpExample();
  Find<QCheckBox>("Check1")->setChecked(true);
  EXPECT_EQ(settings.Get("Settings", "ShowHints"), "1");
  Click("Command1");
  EXPECT_EQ(settings.Get("Settings", "ShowHints"), "0");
  Start();
  SetUpExample();
  EXPECT_EQ(window->findChild<QWidget*>("frmGraphicalRefC"), nullptr);
}
