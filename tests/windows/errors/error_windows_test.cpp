// Faults caught here: a row that names another parameter than it searches, a level that slips
// through, a search or a stop that changes the fit, a window that outlives its fit, colours off by
// one cell or by the bounds, a copied table that differs from the shown one, a better minimum that
// is not offered or does not reach the page.
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>
#include <QTableWidget>
#include <QTimer>

#include "support/fit_problem.h"
#include "support/last_fit.h"
#include "windows/data/data_window.h"
#include "windows/errors/confidence_window.h"
#include "windows/errors/correlation_window.h"
#include "windows/errors/minima_window.h"
#include "windows/errors/quality_window.h"
#include "windows/main_window_fixture.h"
#include "windows/session_fixture.h"

using namespace quorvane;

namespace {

class Confidence : public SessionFixture {
 protected:
  // Opens the window for a fit of the model with its second shared parameter held.
  void Open(int model) {
    ChangeLastFit(session.Module, [&](FinishedFit& last) {
      FitState& fit = last.state = MakeProblem({.modelIndex = model}, TypicalShared(model));
      if (fit.SharedBase() + 2 <= fit.FitMA) fit.FitIA(fit.SharedBase() + 2) = 0;
    });
    window = std::make_unique<ConfidenceWindow>(session);
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }

  template <class T>
  T* Find(const QString& name) {
    return window->findChild<T*>(name);
  }

  // "MW=7.500E+3" of each visible row, with a * where it can be searched.
  std::string Rows() {
    constexpr const char* kNames[] = {"lblMWB", "lblVirial", "lblN1",   "lblLnK1",
                                      "lblN2",  "lblLnK2",   "lblLnK3", "lblAlpha"};
    std::string rows;
    for (int k = 0; k < 8; ++k) {
      const auto* box = Find<QCheckBox>(QStringLiteral("chkParam(%1)").arg(k));
      if (!box->isVisible()) {
        EXPECT_FALSE(box->isChecked());
        continue;
      }
      EXPECT_EQ(box->isChecked(), box->isEnabled());
      rows += Find<QLabel>(QString(kNames[k]) + "name")->text().toStdString() + "=" +
              Find<QLabel>(QString(kNames[k]) + "val")->text().toStdString() +
              (box->isEnabled() ? "*|" : "|");
    }
    return rows;
  }

  std::unique_ptr<ConfidenceWindow> window;
};

}  // namespace

TEST_F(Confidence, HasARowForEachSharedParameterInTheOrderOfTheFit) {
  const struct {
    int model;
    const char* rows;
  } cases[] = {
      {0, " Buoyant MW =7.500E+3*|"},
      {1, " Buoyant MW =7.500E+3*| B*M, Virial Coef. =8.000E-6|"},
      {2, " Buoyant MW =7.500E+3*| N1=2.0000| LnK1=1.0000*|"},
      {3, " Buoyant MW =7.500E+3*| N1=2.0000| LnK1=1.0000*| N2=4.0000*| LnK2=3.0000*|"},
      {4, " Buoyant MW =7.500E+3*| N1=2.0000| LnK1=1.0000*| Alpha=0.1500*|"},
      {6, "BuoyantMW A=7.500E+3*|BuoyantMW B=5.200E+3|LnK=1.0000*|"},
      {8, "BuoyantMW A=7.500E+3*|BuoyantMW B=5.200E+3|LnK1=1.0000*|LnK2=0.6000*|LnK3=0.4000*|"},
      {9, " Buoyant MW =7.500E+3*|LnKi=0.3000|"},
      {10, "BuoyantMW A=7.500E+3*|BuoyantMW B=5.200E+3|N1=2.0000*|LnKs=1.0000*|LnKh=0.6000*|"}};
  for (const auto& test : cases) {
    Open(test.model);
    EXPECT_EQ(Rows(), test.rows) << "model " << test.model;
  }
}

TEST_F(Confidence, TakesALevelBetween50And100Only) {
  Open(2);
  auto* choice = Find<QComboBox>("cmbFStat");
  auto* percent = Find<QLineEdit>("txtConfPercent");
  EXPECT_EQ(percent->text(), "95.46");
  EXPECT_FALSE(percent->isEnabled());
  const auto choose = [&](int place) {
    choice->setCurrentIndex(place);
    emit choice->activated(place);
  };
  choose(2);
  EXPECT_TRUE(percent->isEnabled());
  const struct {
    const char* typed;
    const char* title;  // of the refusal; "" if the level is taken
    const char* text;
    const char* shown;  // afterwards
  } cases[] = {{"", "Parameter Entry Error!", "Illegal Value Entered", ""},
               {"95,4", "Parameter Entry Error!", "Illegal Value Entered", "95,4"},
               {"50", "Parameter Out of Range!", "Value must be 50 < P < 100 ", "68.27"},
               {"50.01", "", "", "50.01"},
               {"100", "Parameter Out of Range!", "Value must be 50 < P < 100 ", "50.01"},
               {"99.996", "Parameter Out of Range!", "Value must be 50 < P < 100 ", "50.01"},
               {"99.99", "", "", "99.99"}};
  for (const auto& test : cases) {
    dialogs.messages.clear();
    percent->setFocus();
    QTest::qWait(1);
    percent->setText(test.typed);
    Find<QRadioButton>("optVRmethod(0)")->setFocus();
    QTest::qWait(1);
    const bool taken = *test.title == '\0';
    ASSERT_EQ(dialogs.messages.size(), taken ? 0U : 1U) << test.typed;
    EXPECT_EQ(percent->text(), test.shown) << test.typed;
    EXPECT_EQ(percent->hasFocus(), !taken) << test.typed;
    if (taken) continue;
    EXPECT_EQ(dialogs.messages[0].title, test.title);
    EXPECT_EQ(dialogs.messages[0].text, test.text);
  }
  choose(0);
  EXPECT_EQ(percent->text(), "68.27");
  Open(2);  // the level is the program's, not the window's
  choice = Find<QComboBox>("cmbFStat");
  choose(2);
  EXPECT_EQ(Find<QLineEdit>("txtConfPercent")->text(), "99.99");
}

class ErrorWindowsTest : public MainWindowTest {
 protected:
  void FitExample() {
    SetUpExample();
    Click("cmdFitMe");
    QTest::qWait(1);
  }
  void FitMany(int scans = 6) {
    SetUpLongFit(scans);
    Click("cmdFitMe");
    EXPECT_TRUE(LogText().contains("Fitting Time: ")) << LogText().toStdString();
    QTest::qWait(1);
  }
  // As if the fit had ended with parameter l so much higher.
  void EndElsewhere(int l, double by) {
    ChangeLastFit(session.Module, [&](FinishedFit& last) {
      last.state.FitA(l) += by;
      last.state.FitChiSq = last.state.Memory.bestChiSq *= 2.0;
    });
  }
  // Whether the last fit is that one; its verdict may have come meanwhile.
  bool IsStill(const FinishedFit& fit) {
    const FitState& now = session.Module.LastFit->state;
    return now.FitA == fit.state.FitA && now.FitCovar == fit.state.FitCovar;
  }
  ConfidenceWindow* OpenConfidence() {
    auto* tab = Find<QWidget>("frmData");
    tab->findChild<QPushButton*>("cmdCalcCI")->click();
    return Find<ConfidenceWindow>("frmConfInterval");
  }
};

TEST_F(ErrorWindowsTest, ASearchReportsAndLeavesTheFitAsItWas) {
  FitMany(30);
  const auto before = session.Module.LastFit;
  const QPointer<ConfidenceWindow> confidence = OpenConfidence();
  confidence->findChild<QCheckBox*>("chkParam(1)")->setChecked(false);  // K has no limits here
  EXPECT_TRUE(confidence->isVisible());
  QStringList told;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, window.get(), [&] {
    told << Find<QLabel>("sbStatusBar")->text();
    if (!told.back().contains(": ")) return;
    EXPECT_FALSE(confidence->isVisible());
    EXPECT_TRUE(Find<QTextEdit>("logFile")->hasFocus());
    EXPECT_FALSE(Find<QAction>("mnuPrint")->isEnabled());
    EXPECT_EQ(Find<QLabel>("sbDocument")->text(),
              "Click anywhere in log window to halt calculation.");
  });
  timer.start(0);
  confidence->findChild<QPushButton*>("cmdCalcCI")->click();
  EXPECT_FALSE(told.filter("Buoyant MW: bracketing, ").isEmpty()) << told.join('|').toStdString();
  EXPECT_FALSE(told.filter(": bisection, ").isEmpty());
  EXPECT_TRUE(LogText().contains("95.46% confidence level:\n1 + (Nparm/NDF)*F(Nparm,NDF,1-P) = "));
  EXPECT_TRUE(LogText().contains("\nBuoyant MW = "));
  EXPECT_TRUE(LogText().contains("CalcCI Time: "));
  QTest::qWait(1);
  EXPECT_EQ(confidence, nullptr);
  EXPECT_EQ(session.Module.LastFit->state.FitA, before->state.FitA);
  EXPECT_EQ(session.Module.LastFit->state.FitChiSq, before->state.FitChiSq);
  EXPECT_EQ(Find<QLabel>("sbStatusBar")->text(), " ");
  EXPECT_TRUE(Find<QAction>("mnuPrint")->isEnabled());
}

TEST_F(ErrorWindowsTest, CoefficientsOfNoFitAreNotLogged) {
  const QString before = LogText();
  Click("cmdCopyMe");
  EXPECT_EQ(LogText(), before);
}

TEST_F(ErrorWindowsTest, AStopEndsTheSearchAndChangesNothing) {
  FitMany();
  const auto before = session.Module.LastFit;
  const std::vector<std::function<void()>> stops = {
      [this] { QTest::mouseClick(Find<QTextEdit>("logFile")->viewport(), Qt::LeftButton); },
      [this] { QTest::keyClick(Find<QTextEdit>("logFile"), Qt::Key_Escape); },
      [this] { Find<QAction>("cmdStop")->trigger(); }};
  int stopped = 0;
  for (const auto& stop : stops) {
    const QPointer<ConfidenceWindow> confidence = OpenConfidence();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, window.get(), [&] {
      if (session.Calculating && !session.Module.Stop.Raised()) stop();
    });
    timer.start(0);
    confidence->findChild<QPushButton*>("cmdCalcCI")->click();
    EXPECT_EQ(LogText().count("** User Terminated Calculation of CIs **"), ++stopped);
    EXPECT_TRUE(IsStill(*before));
    QTest::qWait(1);
    EXPECT_EQ(confidence, nullptr);
  }
}

TEST_F(ErrorWindowsTest, AStoppedFitLeavesTheFitBeforeItToBeAnalysed) {
  FitMany();
  const auto before = session.Module.LastFit;
  Find<QLineEdit>("txtMWB")->setText("5000");
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, window.get(), [&] {
    if (session.Calculating) Find<QAction>("cmdStop")->trigger();
  });
  timer.start(0);
  Click("cmdFitMe");
  EXPECT_TRUE(LogText().contains("** User  Terminated Fitting Process  **"));
  EXPECT_TRUE(IsStill(*before));
  EXPECT_TRUE(Find<QPushButton>("cmdShowCCCs")->isEnabled());
}

TEST_F(ErrorWindowsTest, TheWindowGoesWithTheFitThatItWasOpenedFor) {
  for (const char* button : {"cmdFitMe", "cmdSetFit"}) {
    FitExample();
    const QPointer<ConfidenceWindow> confidence = OpenConfidence();
    Click(button);
    QTest::qWait(1);
    EXPECT_EQ(confidence, nullptr) << button;
  }
  EXPECT_FALSE(Find<QWidget>("frmData")->findChild<QPushButton*>("cmdCalcCI")->isEnabled());
  EXPECT_FALSE(Find<QPushButton>("cmdShowCCCs")->isEnabled());
}

TEST_F(ErrorWindowsTest, ABetterMinimumIsOfferedAndTakenOver) {
  EXPECT_FALSE(Find<QAction>("mnuCheckMinimum")->isEnabled());
  FitExample();
  const Array1<double> best = session.Module.LastFit->state.FitA;
  const int weight = session.Module.LastFit->state.SharedBase() + 1;
  const QString log = LogText();
  EndElsewhere(weight, 0.1 * best(weight));
  session.Module.FitPage.ModelMW = 1.1 * best(weight);
  Trigger("mnuCheckMinimum");
  const QPointer<MinimaWindow> minima = Find<MinimaWindow>("frmMinima");
  EXPECT_FALSE(Find<QPushButton>("cmdUseAsStart")->isEnabled());
  Find<QSpinBox>("spnStarts")->setValue(3);
  Click("cmdCheckMinimum");
  ASSERT_NE(minima, nullptr);
  EXPECT_TRUE(minima->isVisible());
  auto* grid = Find<QTableWidget>("gridMinima");
  ASSERT_GE(grid->rowCount(), 1);
  EXPECT_EQ(grid->horizontalHeaderItem(4)->text(), "Buoyant MW");
  EXPECT_EQ(grid->currentRow(), 0);
  EXPECT_NE(Find<QLabel>("lblMinima")->text(), "No better minimum was found.");
  EXPECT_EQ(LogText(), log);
  Click("cmdUseAsStart");
  QTest::qWait(1);
  EXPECT_EQ(minima, nullptr);  // its fit is no longer that of the page
  EXPECT_NEAR(session.Module.FitPage.ModelMW, best(weight), 0.01 * best(weight));
  EXPECT_NEAR(session.Module.Store.Datasets[0].Offset, best(1), 0.01);
  EXPECT_EQ(Find<QLineEdit>("txtMWB")->text().toDouble(),
            QString::number(session.Module.FitPage.ModelMW, 'E', 3).toDouble());
  EXPECT_FALSE(Find<QAction>("mnuCheckMinimum")->isEnabled());
  EXPECT_FALSE(Find<QPushButton>("cmdShowCCCs")->isEnabled());
}

TEST_F(ErrorWindowsTest, ACheckThatIsStoppedOrFindsNothingOffersNothing) {
  FitMany();
  const auto before = session.Module.LastFit;
  Trigger("mnuCheckMinimum");
  const QPointer<MinimaWindow> minima = Find<MinimaWindow>("frmMinima");
  Find<QSpinBox>("spnStarts")->setValue(1000);
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, window.get(), [&] {
    if (session.Calculating) Find<QPushButton>("cmdStopMinima")->click();
  });
  timer.start(0);
  Click("cmdCheckMinimum");
  timer.stop();
  EXPECT_TRUE(Find<QLabel>("lblMinima")->text().startsWith("Stopped: "));
  EXPECT_TRUE(IsStill(*before));
  EXPECT_FALSE(Find<QPushButton>("cmdStopMinima")->isEnabled());
  Click("cmdFitMe");  // a new fit: the window goes
  QTest::qWait(1);
  EXPECT_EQ(minima, nullptr);
}

TEST_F(ErrorWindowsTest, ASearchOffersTheBetterMinimumThatItMet) {
  for (const bool accepted : {false, true}) {
    FitExample();
    const double weight = session.Module.FitPage.ModelMW;
    EndElsewhere(1, 0.05);
    dialogs.questions.clear();
    dialogs.yesNo = {accepted};
    OpenConfidence()->findChild<QPushButton*>("cmdCalcCI")->click();
    QTest::qWait(1);
    ASSERT_EQ(dialogs.questions.size(), 1U);
    EXPECT_TRUE(dialogs.questions[0].text.startsWith("A better minimum was met in the search"));
    EXPECT_FALSE(LogText().contains("better minimum"));
    EXPECT_EQ(session.Module.FitPage.ModelMW == weight, !accepted);
    EXPECT_EQ(Find<QPushButton>("cmdShowCCCs")->isEnabled(), !accepted);
  }
}

TEST(CorrelationWindow, ColoursHeldAndCriticalCoefficientsOnly) {
  FitState fit = MakeProblem({.modelIndex = 2, .sets = 1}, TypicalShared(2));
  ASSERT_EQ(fit.FitMA, 5);
  fit.FitCovar = Matrix1<double>(5, 5);
  for (int i = 1; i <= 5; ++i) fit.FitCovar(i, i) = 1.0;
  const auto set = [&](int i, int j, double c) { fit.FitCovar(i, j) = fit.FitCovar(j, i) = c; };
  set(1, 2, 0.95);
  set(1, 3, 0.9501);
  set(2, 3, -0.96);
  set(1, 5, 1.01);
  fit.FitIA(4) = 0;
  fit.FitCovar(4, 4) = 0.0;
  const auto last = std::make_shared<FinishedFit>();
  last->state = fit;
  CorrelationWindow window;
  window.ShowFit(last, 0.95);
  auto* grid = window.findChild<QTableView*>("gridCCC");
  const QColor grey = QGuiApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
  // By row: . plain, g grey, c critical.
  const char* const colours[] = {"..cg.", "..cg.", "cc.g.", "ggggg", "...g."};
  for (int row = 0; row < 5; ++row) {
    for (int column = 0; column < 5; ++column) {
      const QModelIndex cell = grid->model()->index(row, column);
      const QVariant brush = cell.data(Qt::BackgroundRole);
      const QColor colour = brush.isValid() ? brush.value<QBrush>().color() : QColor();
      const char kind = colours[row][column];
      const QColor expected = kind == 'g' ? grey : kind == 'c' ? QColor(255, 128, 32) : QColor();
      EXPECT_EQ(colour, expected) << row << ", " << column;
      EXPECT_EQ(cell.data(Qt::ForegroundRole).isValid(), kind != '.');
    }
  }
  EXPECT_EQ(grid->model()->index(1, 2).data().toString(), " -0.960");
  EXPECT_EQ(grid->model()->index(3, 0).data().toString(), "  0.000");

  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  grid->setFocus();
  QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier);
  const QStringList whole = QGuiApplication::clipboard()->text().split('\n');
  ASSERT_EQ(whole.size(), 7);  // headers, five rows, the end of the last
  EXPECT_EQ(whole[0], "\tp1\tp2\tp3\tp4\tp5");
  EXPECT_EQ(whole[2], "p2\t0.950\t1.000\t-0.960\t0.000\t0.000");
  grid->selectionModel()->select({grid->model()->index(1, 1), grid->model()->index(2, 2)},
                                 QItemSelectionModel::ClearAndSelect);
  QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "1.000\t-0.960\n-0.960\t1.000\n");
}

TEST_F(ErrorWindowsTest, CoefficientsAreShownLoggedAndHidden) {
  FitExample();
  Click("cmdShowCCCs");
  auto* coefficients = Find<CorrelationWindow>("frmCCCs");
  EXPECT_TRUE(coefficients->isVisible());
  Click("cmdCopyMe");
  EXPECT_TRUE(LogText().endsWith(" \n"));
  EXPECT_TRUE(LogText().contains("\nCross-Correlation Coefficients\n" + QString(30, '=') + "\n" +
                                 QString(11, ' ') + " Offset(1) "));
  coefficients->parentWidget()->close();
  EXPECT_FALSE(coefficients->isVisible());
  Click("cmdShowCCCs");
  EXPECT_TRUE(coefficients->isVisible());
}

TEST_F(ErrorWindowsTest, QualityFollowsTheFitAndGoesWithIt) {
  const auto* grid = Find<QTableView>("gridQuality");
  const auto remarks = [this] { return Find<QPlainTextEdit>("txtQualityRemarks")->toPlainText(); };
  Trigger("mnuFitQuality");
  EXPECT_TRUE(Find<QualityWindow>("frmFitQuality")->isVisible());
  EXPECT_TRUE(remarks().startsWith("There is no finished fit"));
  EXPECT_TRUE(
      std::holds_alternative<std::monostate>(Find<QualityWindow>("frmFitQuality")->Printed()));
  FitExample();
  EXPECT_EQ(grid->model()->rowCount(), session.Module.LastFit->state.NumFitSets);
  EXPECT_EQ(grid->model()->index(0, 1).data().toInt(),
            session.Module.LastFit->state.SetPointCount(1));
  EXPECT_TRUE(std::holds_alternative<PrintedGrid>(Find<QualityWindow>("frmFitQuality")->Printed()));
  EXPECT_TRUE(remarks().contains("vbar and density"));
  dialogs.texts = {"1.0"};  // the very default, but set
  Trigger("mnuSetRho");
  EXPECT_TRUE(remarks().contains("Still at the default: vbar."));
  Find<QLineEdit>("txtLoadData(0)")->setText("renamed.dat");
  Find<QualityWindow>("frmFitQuality")->setFocus();
  EXPECT_TRUE(Find<DataWindow>("frmData")->CommitPending());
  EXPECT_EQ(grid->model()->index(0, 0).data(), "renamed.dat");
  Click("cmdSetFit");
  EXPECT_EQ(grid->model()->rowCount(), 0);
  EXPECT_TRUE(remarks().startsWith("There is no finished fit"));
}

TEST(QualityWindow, PointsOutWhatIsNoNoise) {
  QuorvaneModule module;
  FitState fit = MakeProblem({.modelIndex = 0, .points = 12}, TypicalShared(0));
  fit.FitYCalc = Array1<double>(fit.FitNumPoints, 0.0);
  fit.FitCovar = Matrix1<double>(fit.FitMA, fit.FitMA);
  module.Store.Datasets.assign(2, EmptyDataset());
  module.Store.Datasets[1].FileName.SetBytes("second.dat");
  // Few runs and alike neighbours in the first dataset, neither in the second.
  const char* const signs[] = {"------++++++", "--++--+-++-+"};
  for (int d = 1; d <= 2; ++d) {
    for (int k = 0; k < 12; ++k)
      fit.FitY(fit.SetFirstPoint(d) + k) = signs[d - 1][k] == '+' ? 1 : -1;
  }
  ChangeLastFit(module, [&](FinishedFit& last) { last.state = fit; });
  QualityWindow window;
  window.ShowFit(module);
  auto* grid = window.findChild<QTableView*>("gridQuality");
  for (int row = 0; row < 2; ++row) {
    for (const int column : {6, 7, 8}) {
      const bool flagged = row == 0 && column != 6;
      const QModelIndex cell = grid->model()->index(row, column);
      EXPECT_EQ(cell.data(Qt::BackgroundRole).isValid(), flagged) << row << ", " << column;
      EXPECT_EQ(cell.data(Qt::ForegroundRole).isValid(), flagged);
    }
  }
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  grid->setFocus();
  QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier);
  const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
  EXPECT_EQ(lines.value(1), "1\t\t12\t1.0000\t50.0 %\t6 / 6\t2\t7.0\t-3.03\t0.33\tZ, DW");
  EXPECT_EQ(lines.value(2), "2\tsecond.dat\t12\t1.0000\t50.0 %\t6 / 6\t8\t7.0\t0.61\t2.33\t");
}
