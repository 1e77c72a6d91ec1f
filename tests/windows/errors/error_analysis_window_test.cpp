// Faults caught here: a verdict that stays when the page has moved on, a rest that changes the page
// without a fit, an analysis that cannot be stopped or shows what was not found.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QTimer>

#include "base/files.h"
#include "plot/chart_widget.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

class ErrorAnalysisWindowTest : public MainWindowTest {
 protected:
  QString Verdict() { return Find<QLabel>("lblRest")->text(); }
  // Until the verdict of the last fit has come.
  void AwaitVerdict() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return session.Module.LastFit->rest.has_value(); }));
  }
  void FitExample() {
    SetUpExample();
    Click("cmdFitMe");
    AwaitVerdict();
  }
  void Type(const char* name, const char* text) {
    auto* box = Find<QLineEdit>(name);
    box->setFocus();
    box->setText(QString::fromUtf8(text));
    QTest::keyClick(box, Qt::Key_Return);
    QCoreApplication::processEvents();
  }
  QString Cell(int row, int column) {
    return Find<QTableWidget>("gridErrors")->item(row, column)->text();
  }
};

}  // namespace

TEST_F(ErrorAnalysisWindowTest, EveryFitIsJudgedAndBroughtToRestAtOnePress) {
  FitExample();
  EXPECT_EQ(Verdict(), "The fit is at rest.");
  EXPECT_FALSE(Find<QLabel>("imgRest")->pixmap().isNull());
  Click("cmdSetFit");
  EXPECT_EQ(Verdict(), "");
  EXPECT_FALSE(Find<QPushButton>("cmdCalcErrors")->isEnabled());
  // Signals so small that the end rule of the fit does not move them.
  for (Dataset& dataset : session.Module.Store.Datasets) {
    for (double& c : dataset.C) c *= 1e-3;
    dataset.ExtCoeff *= 1e-3;
    dataset.Offset *= 1e-3;
  }
  Type("txtMWB", "7000");
  Click("cmdFitMe");
  AwaitVerdict();
  EXPECT_TRUE(Verdict().startsWith("Not at rest: the sum can fall by ")) << Verdict().toStdString();
  EXPECT_TRUE(Find<QLabel>("lblRest")->toolTip().startsWith("The fit is not at rest: "));
  const auto fits = LogText().count("Fitting Time: ");
  Trigger("mnuFitToRest");
  AwaitVerdict();
  EXPECT_EQ(Verdict(), "The fit is at rest.");
  EXPECT_EQ(LogText().count("Fitting Time: "), fits + 1);  // one report
  Type("txtMWB", "7000");
  Trigger("mnuAlwaysFitToRest");
  Click("cmdFitMe");
  AwaitVerdict();
  EXPECT_EQ(Verdict(), "The fit is at rest.");
  EXPECT_EQ(settings.Get("Quorvane", "AlwaysFitToRest"), "1");
}

TEST_F(ErrorAnalysisWindowTest, WhereThereIsNoRestItSaysWhyAndAsks) {
  SetUpExample();
  session.Module.FitPage.ModelLnK1 = -30.0;  // no association at all
  const double weight = session.Module.FitPage.ModelMW;
  const auto heads = [this] { return LogText().count("Model :: "); };
  for (const bool fitted : {false, true}) {
    const auto before = heads();
    dialogs.questions.clear();
    dialogs.yesNo = {fitted};
    Click("cmdFitToRest");
    ASSERT_EQ(dialogs.questions.size(), 1U);
    EXPECT_TRUE(dialogs.questions[0].text.contains("LnK1"))
        << dialogs.questions[0].text.toStdString();
    EXPECT_EQ(heads(), before + (fitted ? 1 : 0));
    EXPECT_TRUE(fitted || session.Module.FitPage.ModelMW == weight);
  }
}

TEST_F(ErrorAnalysisWindowTest, FindsLimitsByTwoMethodsAndASurface) {
  FitExample();
  Trigger("mnuErrorAnalysis");
  ASSERT_EQ(Find<QListWidget>("lisErrorParameters")->item(0)->text(), "MW");
  Click("chkErrorMonteCarlo");
  Find<QSpinBox>("spnReplicates")->setValue(40);
  Click("chkErrorSurface");
  Find<QSpinBox>("spnSurfacePoints")->setValue(5);
  Click("cmdCalcErrors");
  auto* pictures = Find<QComboBox>("cmbErrorPicture");
  EXPECT_EQ(Find<QTableWidget>("gridErrors")->rowCount(), 4);
  EXPECT_EQ(Cell(0, 1), "profile");
  EXPECT_TRUE(Cell(0, 5).startsWith("[806")) << Cell(0, 5).toStdString();
  EXPECT_EQ(Find<QTableWidget>("gridDerived")->item(0, 0)->text(), "M");
  ASSERT_EQ(pictures->count(), 5);
  auto* chart = Find<ChartWidget>("teeErrors");
  Find<QTableWidget>("gridErrors")->selectRow(3);
  EXPECT_EQ(chart->GetChart().title, "Monte Carlo: LnK1");
  pictures->setCurrentIndex(4);
  ASSERT_TRUE(chart->GetChart().panels[0].map.has_value());
  EXPECT_EQ(chart->GetChart().panels[0].map->heights.size(), 5U);
  dialogs.files = {ToQString(folder / "errors.csv")};
  Click("cmdSaveErrors");
  for (const char* file :
       {"errors.csv", "errors-profiles.csv", "errors-replicates.csv", "errors-surface-1.csv"}) {
    EXPECT_TRUE(FileExists(folder / file)) << file;
  }
  ASSERT_TRUE(session.Module.LastFit->errors.has_value());  // for the report
  Click("cmdSetFit");
  EXPECT_TRUE(Find<QLabel>("lblErrors")->text().startsWith("These are the errors of an earlier"));
  EXPECT_FALSE(Find<QPushButton>("cmdCalcErrors")->isEnabled());
  EXPECT_TRUE(Find<QPushButton>("cmdSaveErrors")->isEnabled());
}

TEST_F(ErrorAnalysisWindowTest, RefusesWhatCannotBeAnalysed) {
  FitExample();
  Trigger("mnuErrorAnalysis");
  const auto refused = [this](const char* text) {
    dialogs.messages.clear();
    Click("cmdCalcErrors");
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_TRUE(dialogs.messages[0].text.contains(text)) << dialogs.messages[0].text.toStdString();
    EXPECT_FALSE(session.Module.LastFit->errors.has_value());
  };
  auto* levels = Find<QLineEdit>("txtErrorLevels");
  for (const char* level : {"", "abc", "100", "0", "68.27, -3"}) {
    levels->setText(QString::fromUtf8(level));
    refused("is no level");
  }
  levels->setText("90");
  Click("chkErrorProfile");
  refused("No method");
  Click("chkErrorSurface");
  Find<QComboBox>("cmbSurfaceY")->setCurrentIndex(0);
  refused("two different parameters");
  Click("chkErrorSurface");
  Click("chkErrorProfile");
  Click("cmdErrorNone");
  refused("No parameter");
}

TEST_F(ErrorAnalysisWindowTest, AStopKeepsWhatIsDone) {
  SetUpLongFit();
  Click("cmdFitMe");
  Trigger("mnuErrorAnalysis");
  Click("cmdErrorAll");
  Click("chkErrorBootstrap");
  Find<QSpinBox>("spnReplicates")->setValue(100000);
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, window.get(), [this] {
    if (session.Calculating) Click("cmdStopErrors");
  });
  timer.start(100);
  Click("cmdCalcErrors");
  timer.stop();
  EXPECT_TRUE(Find<QLabel>("lblErrors")->text().contains("Stopped before the end."));
  EXPECT_TRUE(Find<QPushButton>("cmdCalcErrors")->isEnabled());
  EXPECT_FALSE(Find<QPushButton>("cmdStopErrors")->isEnabled());
}
