// Faults caught here: a list that does not follow the store, checks that wander to other datasets,
// a zoom lost with every check, curves without a fit, choices forgotten, a file of another size or
// kind than chosen.
#include <QCheckBox>
#include <QClipboard>
#include <QDoubleSpinBox>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableWidget>

#include "core/report/paper_report.h"
#include "plot/chart_widget.h"
#include "plot/figure_widget.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

class FigureWindowTest : public MainWindowTest {
 protected:
  void Open(const char* entry = "mnuFigure") {
    Trigger(entry);
    list = Find<QListWidget>("lisFigureSets");
    picture = Find<FigureWidget>("picFigure");
  }
  const Figure& Shown() const { return picture->GetFigure(); }
  std::size_t Series(bool curves = false) const {
    std::size_t count = 0;
    for (const FigureCell& cell : Shown().cells) {
      for (const FigureSeries& series : cell.series) count += !curves || !series.curve.x.empty();
    }
    return count;
  }
  void Choose(const char* box, int entry) { Find<QComboBox>(box)->setCurrentIndex(entry); }

  QListWidget* list = nullptr;
  FigureWidget* picture = nullptr;
};

TEST_F(FigureWindowTest, DrawsTheCheckedDatasets) {
  EXPECT_FALSE(Find<QAction>("mnuOverlay")->isEnabled());
  EXPECT_FALSE(Find<QAction>("mnuFigure")->isEnabled());
  SetUpExample();
  Open("mnuOverlay");
  ASSERT_EQ(list->count(), session.Module.Store.NumDatasets());
  EXPECT_EQ(Series(), static_cast<std::size_t>(list->count()));
  EXPECT_EQ(Shown().cells.size(), 3U);
  Click("cmdFigureNone");
  EXPECT_EQ(Series(), 0U);
  EXPECT_FALSE(Find<QPushButton>("cmdFigureExport")->isEnabled());
  list->item(1)->setCheckState(Qt::Checked);
  list->item(2)->setCheckState(Qt::Checked);
  EXPECT_EQ(Shown().cells.at(0).series.at(0).number, 1U);
  emit picture->ZoomWanted(0, {6.4, 0.0, 6.5, 1.0});
  list->item(2)->setCheckState(Qt::Unchecked);
  ASSERT_TRUE(Shown().cells.at(0).view);
  EXPECT_EQ(Shown().cells[0].view->x1, 6.4);
  Click("optFigureAxis(1)");  // for which the zoom has no meaning
  EXPECT_FALSE(Shown().cells.at(0).view);
  emit picture->ZoomWanted(0, {-0.1, 0.0, 0.1, 1.0});
  Click("cmdFigureZoomOut");
  EXPECT_FALSE(Shown().cells.at(0).view);
}

TEST_F(FigureWindowTest, JudgesTheFit) {
  SetUpExample();
  Open();
  EXPECT_FALSE(Find("cmbFigureContent")->isEnabled());
  Click("cmdFitMe");
  const auto result = [this] { return Find<ChartWidget>("TChartFitting")->GetChart(); };
  EXPECT_EQ(result().panels.at(0).series.size(), 2U);
  Click("chkResultSpecies");  // of a dimer
  EXPECT_EQ(result().panels.at(0).series.size(), 4U);
  emit picture->ZoomWanted(0, {6.4, 0.0, 6.5, 1.0});
  Choose("cmbFigureContent", 1);
  EXPECT_TRUE(Shown().leftTitle.starts_with("Local weight-average")) << Shown().leftTitle;
  EXPECT_FALSE(Shown().cells.at(0).view);
  EXPECT_FALSE(Find("cmbFigureSignal")->isEnabled());
  const std::size_t weights = Shown().cells[0].series.at(0).data.x.size();
  Find<QSpinBox>("txtFigureWindow")->setValue(99);
  EXPECT_LT(Shown().cells[0].series.at(0).data.x.size(), weights);
  Choose("cmbFigureContent", 3);
  EXPECT_EQ(Shown().cells.size(), 1U);
  EXPECT_FALSE(Find("cmbFigurePanels")->isEnabled());
}

TEST_F(FigureWindowTest, FollowsTheStoreAndTheFit) {
  SetUpExample();
  Open();
  EXPECT_FALSE(Find("chkFigureCurves")->isEnabled());
  Click("cmdFitMe");
  const auto sets = static_cast<std::size_t>(list->count());
  EXPECT_EQ(Series(true), sets);
  EXPECT_TRUE(Shown().residuals);
  Click("chkFigureCurves");
  Click("chkFigureResiduals");
  EXPECT_EQ(Series(true), 0U);
  EXPECT_FALSE(Shown().residuals);
  list->item(0)->setCheckState(Qt::Unchecked);
  list->item(1)->setCheckState(Qt::Unchecked);
  Click("cmdRemoveData(0)");
  EXPECT_EQ(static_cast<std::size_t>(list->count()), sets - 1);
  EXPECT_EQ(list->item(0)->checkState(), Qt::Unchecked);
  EXPECT_EQ(list->item(1)->checkState(), Qt::Checked);
  EXPECT_EQ(Series(), sets - 2);
  dialogs.yesNo = {true};
  Trigger("mnuFileNew");
  EXPECT_FALSE(Find("frmFigure")->isVisible());
  EXPECT_FALSE(Find<QAction>("mnuFigure")->isEnabled());
}

TEST_F(FigureWindowTest, TextsAndSizesGoIntoTheFile) {
  SetUpExample();
  Open();
  auto* texts = Find<QTableWidget>("gridFigureTexts");
  ASSERT_EQ(texts->item(1, 0)->text(), "Radius (cm)");
  texts->item(1, 0)->setText("r / cm");
  Find<QLineEdit>("txtFigureTitle")->setText("A dimer");
  Choose("cmbFigureWidth", 0);
  Choose("cmbFigureFormat", 3);
  EXPECT_EQ(Shown().bottomTitle, "r / cm");
  EXPECT_EQ(picture->PageSize().width, kFigureColumnWidth);
  const auto file = [this](const char* name) { return ToQString(folder.path() / name); };
  dialogs.files = {file("fig.png"), file("fig.svg"), file("fig.csv")};
  Click("cmdFigureExport");
  EXPECT_EQ(QImage(file("fig.png")).width(), 2008);
  Click("cmdFigureExport");  // what the name says
  EXPECT_NE(ReadWholeFile(folder.path() / "fig.svg", 1 << 24).find(">A dimer<"), std::string::npos);
  Click("cmdFigureNumbers");
  EXPECT_TRUE(ReadWholeFile(folder.path() / "fig.csv", 1 << 24)
                  .starts_with("panel,series,x,y\r\n"
                               "Channel A,"));
  Click("cmdFigureCopy");
  EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->hasFormat("image/svg+xml"));
  Click("cmdFigureTexts");
  EXPECT_EQ(Shown().bottomTitle, "Radius (cm)");
}

TEST_F(FigureWindowTest, TheReportShowsTheFigureThatWasSetUp) {
  SetUpExample();
  Click("cmdFitMe");
  const auto reported = [this] { return MakePaperReport(session.Module); };
  EXPECT_EQ(reported().figure.cells.at(0).title, "Channel A");
  Open();
  Choose("cmbFigurePanels", 1);
  Choose("cmbFigureWidth", 0);
  Click("optFigureAxis(1)");
  Click("chkFigureLeftOut");
  Find<QSpinBox>("txtFigureEvery")->setValue(4);
  Find<QLineEdit>("txtFigureTitle")->setText("A dimer");
  Find<QTableWidget>("gridFigureTexts")->item(0, 0)->setText("A(280)");
  list->item(1)->setCheckState(Qt::Unchecked);
  EXPECT_EQ(reported().figure, Shown());
  EXPECT_EQ(Shown().leftTitle, "A(280)");
  const std::string caption = reported().figureCaption;
  for (const char* part : {"8 of the 9 datasets", "reference radius", "One point in 4"}) {
    EXPECT_NE(caption.find(part), std::string::npos) << caption;
  }
  EXPECT_EQ(reported().charts.size(), 9U);
  Choose("cmbFigureContent", 3);  // judges the fit, and is not the figure of the paper
  EXPECT_EQ(reported().figure.leftTitle, "A(280)");
  dialogs.yesNo = {true};
  Trigger("mnuFileNew");
  SetUpExample();
  Open();
  EXPECT_EQ(Shown().title, "");
  EXPECT_EQ(Shown().leftTitle, "Absorbance at 280 nm");
  EXPECT_EQ(Shown().cells.at(0).title, "16,000 rpm");
}

TEST_F(FigureWindowTest, RemembersItsChoices) {
  SetUpExample();
  Open();
  Choose("cmbFigurePanels", 1);
  Choose("cmbFigureSignal", 1);
  Click("chkFigureLeftOut");
  Choose("cmbFigureWidth", 2);
  Find<QDoubleSpinBox>("txtFigureWidth")->setValue(120.0);
  Find("frmFigure")->parentWidget()->close();
  session.Module = {};
  Start();
  SetUpExample();
  Open();
  EXPECT_EQ(Shown().cells.at(0).title, "16,000 rpm");
  EXPECT_TRUE(Shown().leftTitle.starts_with("ln("));
  EXPECT_TRUE(Find<QCheckBox>("chkFigureLeftOut")->isChecked());
  EXPECT_EQ(picture->PageSize().width, 120.0);
}

}  // namespace
