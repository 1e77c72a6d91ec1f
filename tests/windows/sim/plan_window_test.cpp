// Faults caught here: a plan that does not follow what is typed, results left standing beside
// entries that were refused, a check that cannot be stopped, a plan lost with the window, a series
// that is not the planned one.
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSpinBox>
#include <QTableWidget>

#include "plot/chart_widget.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

class PlanWindowTest : public MainWindowTest {
 protected:
  PlanWindowTest() { Open(); }

  void Open() {
    Trigger("mnuPlan");
    errors = Find<QTableWidget>("gridPlanErrors");
    remarks = Find<QTextEdit>("txtPlanRemarks");
    EXPECT_TRUE(QTest::qWaitFor([&] { return errors->rowCount() > 0; }, 10000));
  }
  void Type(const char* box, const QString& text) { Find<QLineEdit>(box)->setText(text); }
  bool Comes(const std::function<bool()>& what) { return QTest::qWaitFor(what, 20000); }
  double Number(const QTableWidget* grid, int row, int column) {
    return grid->item(row, column)->text().toDouble();
  }
  bool Says(const char* text) { return remarks->toPlainText().contains(QLatin1String(text)); }
  std::size_t Panels() { return Find<ChartWidget>("teePlan")->GetChart().panels.size(); }

  QTableWidget* errors;
  QTextEdit* remarks;
};

}  // namespace

TEST_F(PlanWindowTest, FollowsWhatIsTyped) {
  ASSERT_EQ(errors->rowCount(), 2);  // the dimer of the guide
  EXPECT_NEAR(Number(errors, 1, 2), 0.0889, 1e-4);
  EXPECT_EQ(Find<QTableWidget>("gridPlanScans")->rowCount(), 9);
  EXPECT_FALSE(Find<QTabWidget>("tabPlan")->isTabEnabled(1));
  Type("txtPlanNoise", "0.008");
  EXPECT_TRUE(Comes([&] { return std::fabs(Number(errors, 1, 2) - 0.1777) < 2e-4; }));
  auto* picture = Find<QComboBox>("cmbPlanPicture");
  EXPECT_EQ(picture->count(), 7);  // scans, three speeds, three loads
  picture->setCurrentIndex(2);
  EXPECT_TRUE(Comes([&] { return Panels() == 2; }));

  Type("txtPlanSpeeds", "10000, 99");
  EXPECT_EQ(errors->rowCount(), 0);
  EXPECT_TRUE(Says("The Speed must be between 1000 and 60000 rpm."));
  EXPECT_FALSE(Find<QAbstractButton>("cmdPlanCheck")->isEnabled());
  Type("txtPlanSpeeds", "fast");
  EXPECT_TRUE(Says("fast: numbers between commas or blanks are wanted"));

  Type("txtPlanSpeeds", "8000 14000 20000 26000");
  Find<QCheckBox>("chkPlanChoose")->setChecked(true);
  Find<QSpinBox>("spnPlanChoose")->setValue(2);
  auto* ranking = Find<QTableWidget>("gridPlanSpeeds");
  EXPECT_TRUE(Comes([&] { return ranking->rowCount() == 6; }));
  EXPECT_EQ(picture->count(), 1);
  EXPECT_LT(Number(ranking, 0, 1), Number(ranking, 1, 1));
  ranking->setCurrentCell(5, 0);
  emit ranking->cellDoubleClicked(5, 0);
  EXPECT_EQ(Find<QLineEdit>("txtPlanSpeeds")->text(), "8000, 14000");
  EXPECT_TRUE(Comes([&] { return ranking->rowCount() == 0 && errors->rowCount() == 2; }));
  Find<QCheckBox>("chkPlanChoose")->setChecked(true);  // the candidates come back
  EXPECT_TRUE(Comes([&] { return ranking->rowCount() == 6; }));
  ranking->setCurrentCell(5, 0);
  emit ranking->cellDoubleClicked(5, 0);
  ASSERT_TRUE(Comes([&] { return ranking->rowCount() == 0 && errors->rowCount() == 2; }));
  EXPECT_TRUE(Says("At 8,000 rpm the columns are flat"));

  Find<QComboBox>("cmbPlanModel")->setCurrentIndex(6);  // loads of B are missing
  EXPECT_TRUE(Says("A plan has 1 to 32 loads."));
  EXPECT_TRUE(Find("txtPlanMWB")->isVisible());
  EXPECT_FALSE(Find("txtPlanN1")->isVisible());
  Type("txtPlanLoadsB", "4e-6");
  Type("txtPlanExtCoeffB", "5000");
  EXPECT_TRUE(Comes([&] { return errors->rowCount() == 3; }));
}

TEST_F(PlanWindowTest, ChecksInTheBackgroundAndStops) {
  Find<QSpinBox>("spnPlanCheck")->setValue(30);
  Click("cmdPlanCheck");
  EXPECT_TRUE(Comes([&] { return Says("30 simulated experiments were fitted; 0 came"); }));
  EXPECT_EQ(errors->columnCount(), 8);
  EXPECT_NEAR(Number(errors, 0, 6), 1.0, 0.5);
  EXPECT_FALSE(Find("cmdPlanStop")->isEnabled());
  Find<QSpinBox>("spnPlanCheck")->setValue(100000);
  Click("cmdPlanCheck");
  EXPECT_TRUE(Comes([&] { return Find<QProgressBar>("prgPlanCheck")->value() > 20; }));
  Click("cmdPlanStop");
  EXPECT_TRUE(Comes([&] { return !Find("cmdPlanStop")->isEnabled(); }));
  EXPECT_TRUE(Find<QProgressBar>("prgPlanCheck")->format().startsWith("stopped after "));
  Click("cmdPlanCheck");
  Type("txtPlanNoise", "0.002");  // another plan: the check is given up
  EXPECT_TRUE(Comes([&] { return std::fabs(Number(errors, 1, 2) - 0.0444) < 1e-4; }));
  EXPECT_EQ(errors->columnCount(), 6);
  Click("cmdPlanCheck");
  Type("txtPlanNoise", "");  // no plan: nor is the check told that ends meanwhile
  QTest::qWait(200);
  EXPECT_TRUE(Says("a number is wanted"));
}

TEST_F(PlanWindowTest, KeepsOpensAndSavesPlans) {
  dialogs.files = {ToQString(folder / "missing.toml"),
                   ToQString(kExamples / "hetero" / "plan.toml"), ToQString(folder / "mine.toml")};
  Click("cmdPlanOpen");
  ASSERT_EQ(dialogs.messages.size(), 1U);
  Click("cmdPlanOpen");
  EXPECT_EQ(Find<QLineEdit>("txtPlanExtCoeffB")->text(), "11000, 40000");
  EXPECT_TRUE(Comes([&] { return Find<QTableWidget>("gridPlanSpeeds")->rowCount() == 21; }));
  Click("cmdPlanSave");
  EXPECT_NE(ReadText(folder / "mine.toml").find("candidates = [8000, "), std::string::npos);
  EXPECT_TRUE(Find<QAction>("mnuPlanSeries(1)")->text().contains("2"));  // a wavelength is asked
  dialogs.yesNo = {true};
  window->close();
  Start();
  Open();
  EXPECT_EQ(Find<QLineEdit>("txtPlanLoadsB")->text(), "8e-06, 6e-06, 3e-06");
  EXPECT_TRUE(Find<QCheckBox>("chkPlanChoose")->isChecked());
}

TEST_F(PlanWindowTest, MakesThePlannedSeries) {
  Type("txtPlanN1", "2.5");
  EXPECT_TRUE(Comes([&] { return Find("cmdPlanSeries")->isEnabled(); }));
  Click("cmdPlanSeries");
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "N-mer must be an integer => 2.");
  Type("txtPlanN1", "2");
  EXPECT_TRUE(Comes([&] { return Find("cmdPlanSeries")->isEnabled(); }));
  Click("cmdPlanSeries");
  auto* grid = Find<QTableWidget>("gridSeries");
  ASSERT_EQ(grid->rowCount(), 9);
  EXPECT_EQ(grid->item(8, 2)->text(), "26000");
  EXPECT_EQ(grid->item(8, 3)->text(), "1.5e-05");
  EXPECT_TRUE(Find<QLabel>("sbStatusBar")->text().endsWith("delete the points above 1.5000."));
  Click("cmdMakeLoadSeries");
  ASSERT_EQ(session.Module.Store.NumDatasets(), 9);
  const Dataset& scan = session.Module.Store.Datasets[8];
  EXPECT_EQ(scan.Speed, 26000);
  EXPECT_NEAR(scan.R[0], 5.85, 1e-6);
}
