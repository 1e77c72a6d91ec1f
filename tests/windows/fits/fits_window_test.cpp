// Faults caught here: a fit that is lost or listed twice, a restore that brings another page or
// result back, a comparison of fits that cannot be compared, a step of the page that skips a
// change.
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableView>

#include "plot/chart_widget.h"
#include "windows/fits/fits_model.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

class FitsWindowTest : public MainWindowTest {
 protected:
  FitsWindowTest() {
    session.Module.Preferences.ShowHints = false;
    session.Module.Preferences.LogGraphs = session.Module.Preferences.SaveGraphs = false;
  }

  void Fit(const char* model) {
    Find<QComboBox>("cmbModel")->setCurrentText(model);
    Click("cmdSetFit");
    Click("cmdFitMe");
  }

  QTableView& Grid() { return *Find<QTableView>("gridFits"); }
  // The texts of a column, from the top.
  QStringList Column(int column) {
    QStringList texts;
    for (int row = 0; row < Grid().model()->rowCount(); ++row) {
      texts << Grid().model()->index(row, column).data().toString();
    }
    return texts;
  }
  void Select(std::vector<int> rows) {
    Grid().clearSelection();
    for (const int row : rows) {
      Grid().selectionModel()->select(Grid().model()->index(row, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
  }
  QString Cell(int row, int column) {
    return Find<QTableView>("gridComparison")->model()->index(row, column).data().toString();
  }
  QString Sentence() { return Find<QPlainTextEdit>("txtComparison")->toPlainText(); }
  void Type(const char* name, const QString& text) {
    auto* box = Find<QLineEdit>(name);
    box->setFocus();
    box->setText(text);
    QTest::keyClick(box, Qt::Key_Return);
    QTest::qWait(1);
  }
};

}  // namespace

TEST_F(FitsWindowTest, GoesBackToAFitAndComparesItWithAnother) {
  SetUpExample();
  Fit("Monomer-Nmer");
  const double sum = session.Module.LastFit->state.FitChiSq;
  Fit("Ideal");
  Trigger("mnuFits");
  EXPECT_EQ(Column(1), QStringList({"Fit 2", "Fit 1"}));
  EXPECT_EQ(Column(2), QStringList({"Ideal", "Monomer-Nmer"}));
  const QModelIndex name = Grid().model()->index(1, 1);
  EXPECT_TRUE(Grid().model()->setData(name, " dimer "));
  EXPECT_FALSE(Grid().model()->setData(name, "  "));
  QCoreApplication::processEvents();
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(Column(1), QStringList({"Fit 2", "dimer"}));

  Select({0, 1});
  EXPECT_FALSE(Find<QAbstractButton>("cmdRestoreFit")->isEnabled());
  Click("cmdCompareFits");
  for (const HistoryEntry& entry : session.Module.Fits.Entries()) EXPECT_TRUE(entry.compared);
  EXPECT_EQ(Cell(0, 0), "Ideal");
  EXPECT_EQ(Cell(0, 1), "Monomer-Nmer");
  EXPECT_TRUE(Sentence().contains("no F")) << Sentence().toStdString();  // K to 0 is a limit
  EXPECT_TRUE(Sentence().contains("AICc = n ln(S/n)"));
  const Chart& chart = Find<ChartWidget>("chartComparison")->GetChart();
  ASSERT_EQ(chart.panels.size(), 2U);
  EXPECT_EQ(chart.panels[0].leftRange, chart.panels[1].leftRange);
  EXPECT_EQ(chart.panels[0].series[1].x.size(), 201U);

  Select({1});
  Click("cmdRestoreFit");
  EXPECT_EQ(session.Module.LastFit->state.FitChiSq, sum);
  EXPECT_EQ(Find<QLabel>("lblUseModel")->text(), "Monomer-Nmer");
  EXPECT_EQ(Find<QComboBox>("cmbModel")->currentText(), "Monomer-Nmer");
  EXPECT_TRUE(Find<QAbstractButton>("cmdCalcCI")->isEnabled());
  EXPECT_EQ(Column(1).size(), 2);  // it is no new fit
  Click("cmdFitMe");
  EXPECT_EQ(Column(1), QStringList({"Fit 3", "Fit 2", "dimer"}));

  // Other points: nothing is compared, and it says why.
  EditRectangle left;
  left.x2 = 5.95;
  DeleteInside(session.Module.Store.Datasets[0], left);
  Fit("Ideal");
  Select({0, 1});
  Click("cmdCompareFits");
  EXPECT_TRUE(Sentence().contains("points")) << Sentence().toStdString();
  EXPECT_EQ(Find<QComboBox>("cmbComparedSet")->count(), 0);
  Click("cmdDeleteFits");
  EXPECT_EQ(Column(1), QStringList({"Fit 2", "dimer"}));

  // A dataset that is gone: refused, and the page stays.
  session.Module.Store.Datasets[1].FileName.SetBytes("renamed.dat");
  const Model* model = session.Module.Setup.FitModel;
  const FitHistory fits = session.Module.Fits;
  session.Module.Fits.Clear();  // a name typed meanwhile finds no fit any more
  EXPECT_FALSE(Grid().model()->setData(Grid().model()->index(1, 1), "x"));
  session.Module.Fits = fits;
  Select({1});
  Click("cmdRestoreFit");
  EXPECT_TRUE(dialogs.messages.back().text.contains("is not loaded any more"));
  EXPECT_EQ(session.Module.Setup.FitModel, model);
}

TEST_F(FitsWindowTest, FitsOfTheSameSecondAreTold) {
  SetUpExample();
  Click("cmdFitMe");
  const HistoryEntry fit = session.Module.Fits.Entries()[0];
  for (const char* name : {"b", "a"}) session.Module.Fits.AddKept(name, {}, *fit.kept);
  Click("cmdFitMe");
  Trigger("mnuFits");
  EXPECT_EQ(Column(FitsModel::kName), (QStringList{"Fit 2", "Fit 1", "b", "a"}));
  Select({3});
  Click("cmdDeleteFits");
  EXPECT_EQ(Column(FitsModel::kName), (QStringList{"Fit 2", "Fit 1", "b"}));
}

TEST_F(FitsWindowTest, StepsOfThePageGoBackAndForth) {
  SetUpExample();
  Find<QComboBox>("cmbModel")->setCurrentText("Monomer-Nmer");
  Click("cmdSetFit");
  const FitPage start = session.Module.FitPage;
  EXPECT_FALSE(Find<QAction>("UndoPage")->isEnabled());
  Type("txtMWB", "9000");
  auto* check = Find<QCheckBox>("chkOffset(2)");
  QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(6, check->height() / 2));
  QTest::qWait(1);
  Type("txtRefConc(0)", "0.33");
  Click("cmdFitMe");
  const double fitted = session.Module.FitPage.ModelMW;
  EXPECT_NE(fitted, 9000.0);
  auto* box = Find<QLineEdit>("txtMWB");
  box->setFocus();
  const auto undo = [&] { QTest::keyClick(box, Qt::Key_Z, Qt::ControlModifier); };
  undo();  // the fit is one step
  EXPECT_EQ(session.Module.FitPage.ModelMW, 9000.0);
  EXPECT_EQ(session.Module.Store.Datasets[0].RefConc, 0.33);
  undo();
  EXPECT_NE(session.Module.Store.Datasets[0].RefConc, 0.33);
  EXPECT_FALSE(check->isChecked());
  undo();
  EXPECT_TRUE(check->isChecked());
  Click("cmdUndoPage");
  EXPECT_EQ(session.Module.FitPage, start);
  EXPECT_FALSE(Find<QAction>("UndoPage")->isEnabled());
  for (int step = 0; step < 4; ++step) Click("cmdRedoPage");
  EXPECT_EQ(session.Module.FitPage.ModelMW, fitted);
  EXPECT_FALSE(Find<QAction>("RedoPage")->isEnabled());
  // What is being typed is undone by the box itself.
  QTest::keyClicks(box, "77");
  undo();
  EXPECT_EQ(session.Module.FitPage.ModelMW, fitted);
}
