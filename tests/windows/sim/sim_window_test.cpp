// Faults caught here: a box tied to another entry, a model with the wrong boxes, an edit of the
// file text that is lost, a run that leaves tabs or menus in the wrong state.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTimer>

#include "base/text.h"
#include "plot/chart_widget.h"
#include "windows/main_window_fixture.h"
#include "windows/session/printable.h"

using namespace quorvane;

namespace {

class SimWindowTest : public MainWindowTest {
 protected:
  SimWindowTest() {
    session.Module.Preferences.KFormat = KDisplay::kLn;
    Trigger("mnuSimulate");
    sim = Find("frmSim");
    tabs = Find<QTabWidget>("tabSim");
    text = Find<QPlainTextEdit>("rtbSimulData");
  }

  // Some names stand in frmData too.
  QLineEdit* Box(const QString& name) {
    auto* box = sim->findChild<QLineEdit*>(name);
    EXPECT_NE(box, nullptr) << name.toStdString();
    return box;
  }
  void Model(int index) { Click(qPrintable(QStringLiteral("optSimModel(%1)").arg(index))); }

  // Types over the text of a box and leaves it.
  void Enter(const QString& name, const QString& entry) {
    Box(name)->setFocus();
    QCoreApplication::processEvents();  // entering selects
    QTest::keyClicks(Box(name), entry);
    QTest::keyClick(Box(name), Qt::Key_Tab);
    QCoreApplication::processEvents();
  }

  QStringList Lines() { return text->toPlainText().split('\n'); }
  std::vector<ChartSeries> Plotted() {
    const Chart& chart = Find<ChartWidget>("teeSimul")->GetChart();
    return chart.panels.empty() ? std::vector<ChartSeries>() : chart.panels[0].series;
  }
  bool ResultsReachable() { return tabs->isTabEnabled(1) && tabs->isTabEnabled(2); }

  QWidget* sim;
  QTabWidget* tabs;
  QPlainTextEdit* text;
};

// One box of each place on the page; sim_inputs_test.cpp has the bounds of all.
struct EntryCase {
  int model;
  const char* boxes;
  const char* accepted;
  const char* refused;
  const char* message;
};

const EntryCase kEntryCases[] = {
    {6, "txtMW txtMWB", "50000000", "99", "100 <= Molecular Weight <= 50,000,000."},
    {0, "txtRMS", "0", "1", "The RMS must be => 0, and realistically < 1."},
    {8, "txtLnK1 txtLnK2 txtLnK3", "-5", "x", "Illegal Value Entered"},
    {3, "txtN1mer", "5", "3", "N-mer must be different from M-mer."}};

}  // namespace

TEST_F(SimWindowTest, ChecksEachBoxWhenItIsLeft) {
  for (const EntryCase& c : kEntryCases) {
    Model(c.model);
    for (const QString& name : QString(c.boxes).split(' ')) {
      SCOPED_TRACE(name.toStdString() + " " + c.refused);
      dialogs.messages.clear();
      Enter(name, c.accepted);
      EXPECT_TRUE(dialogs.messages.empty());
      EXPECT_FALSE(Box(name)->hasFocus());
      Enter(name, c.refused);
      ASSERT_EQ(dialogs.messages.size(), 1u);
      EXPECT_EQ(dialogs.messages[0].title, "Parameter Entry Error");
      EXPECT_EQ(dialogs.messages[0].text, c.message);
      EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::kExclamation);
      EXPECT_EQ(Box(name)->text(), c.accepted);
      EXPECT_TRUE(Box(name)->hasFocus());
      EXPECT_EQ(Box(name)->selectedText(), c.accepted);
    }
  }
}

TEST_F(SimWindowTest, ShowsWhatTheModelNeeds) {
  const struct {
    const char* boxes;
    const char* graphs;
  } models[] = {{"", "1100"},
                {"NonId", "1100"},
                {"N1mer LnK1", "1110"},
                {"N1mer LnK1 N2mer LnK2", "1110"},
                {"N1mer LnK1 Alpha", "1110"},
                {"N1mer LnK1 Alpha", "1110"},
                {"LnK1 MWB LoadCB VbarB ExtCoeffB", "1010"},
                {"LnK1 LnK2 MWB LoadCB VbarB ExtCoeffB", "1010"},
                {"LnK1 LnK2 LnK3 MWB LoadCB VbarB ExtCoeffB", "1010"},
                {"LnK1", "1100"},
                {"N1mer LnK1 LnK2 MWB LoadCB VbarB ExtCoeffB", "1010"}};
  Enter("txtMW", "61000");
  Click("cmdSimulate");  // enables the tabs
  for (int model = 10; model >= 0; --model) {
    Model(model);
    QStringList shown = QString(models[model].boxes).split(' ', Qt::SkipEmptyParts);
    shown += QString("MW LoadC Vbar ExtCoeff Density Speed Temp Rmen Rbase RMS WaveL").split(' ');
    QStringList found;
    for (const QLineEdit* box : sim->findChildren<QLineEdit*>()) {
      const QString name = box->objectName().mid(3);
      EXPECT_EQ(box->isVisible(), sim->findChild<QLabel*>("lbl" + name)->isVisible())
          << name.toStdString();
      if (box->isVisible()) found += name;
    }
    shown.sort();
    found.sort();
    EXPECT_EQ(found, shown) << model;
    QString graphs;
    for (int k = 0; k < 4; ++k) {
      const QByteArray name = "optGraphType(" + QByteArray::number(k) + ")";
      graphs += Find<QAbstractButton>(name)->isEnabled() ? '1' : '0';
    }
    EXPECT_EQ(graphs, models[model].graphs) << model;
    const bool two = model == 10 || (model >= 6 && model <= 8);
    EXPECT_EQ(sim->findChild<QLabel*>("lblMW")->text(), two ? "MW A" : "molecular weight");
    EXPECT_EQ(Box("txtMW")->text(), "61000");
  }
}

TEST_F(SimWindowTest, FollowsTheDisplayOfK) {
  const struct {
    const char* menu;
    const char* label;
    const char* toolTip;
    const char* entry;
  } displays[] = {{"mnuOptionDispLog10K", "LogKs", "Base 10 log of Kself-assoc.", "4.7772"},
                  {"mnuOptionDispK", "Ks", "Kself-assoc.", "5.987E+4"},
                  {"mnuOptionDispLnK", "LnKs", "natural log of Kself-assoc.", "11"}};
  Model(10);
  Box("txtLnK1")->setFocus();
  Box("txtLnK1")->setText("11");  // still being typed when the menu is chosen
  for (const auto& display : displays) {
    Trigger(display.menu);
    EXPECT_EQ(sim->findChild<QLabel*>("lblLnK1")->text(), display.label);
    EXPECT_EQ(Box("txtLnK1")->toolTip(), display.toolTip);
    EXPECT_EQ(Box("txtLnK1")->text(), display.entry);
  }
  EXPECT_EQ(Box("txtLnK2")->text(), "12.0");
}

TEST_F(SimWindowTest, MakesAScanWhoseFitFindsTheWeight) {
  EXPECT_FALSE(tabs->isTabEnabled(1) || tabs->isTabEnabled(2));
  Box("txtRMS")->setText("0.001");  // not left before the click
  Click("cmdSimulate");
  ASSERT_TRUE(ResultsReachable());
  EXPECT_EQ(Lines().size(), 2 + 301 + 1);
  const auto* printable = dynamic_cast<Printable*>(sim);
  EXPECT_EQ(printable->Printed().index(), 0u);
  tabs->setCurrentIndex(2);
  EXPECT_EQ(std::get<const ChartWidget*>(printable->Printed()), Find<ChartWidget>("teeSimul"));
  dialogs.files = {ToQString(folder / "00001.IP8")};
  Click("cmdSaveSimData");
  EXPECT_EQ(dialogs.requests[0].title, "Save");
  EXPECT_EQ(dialogs.requests[0].filter, "IP8 (*.IP8)");
  EXPECT_EQ(dialogs.requests[0].folder, ToQString(folder.path()));
  EXPECT_EQ(Find<QComboBox>("comboDataFile")->currentText(), "00001.IP8");
  Click("cmdLoadFile");
  Find<QComboBox>("cmbModel")->setCurrentIndex(0);
  Click("cmdSetFit");
  Click("cmdFitMe");
  EXPECT_NEAR(session.Module.FitPage.ModelMW, 60000 * (1 - 0.73), 0.01 * 16200);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(SimWindowTest, AChangeOfKindKeepsWhatWasTypedIntoTheFile) {
  Click("cmdSimulate");
  const QStringList run = Lines();
  text->moveCursor(QTextCursor::Start);
  QTest::keyClicks(text, "my ");
  text->insertPlainText(QStringLiteral("\u00B5M "));
  Click("optSaveAs(1)");
  Enter("txtWaveL", "301");
  EXPECT_EQ(Lines()[0], QStringLiteral("my \u00B5M ") + run[0]);
  EXPECT_EQ(Lines()[1], "R 8 20.0 16000 0099999 1.0000E12 301 21");
  EXPECT_EQ(Lines().mid(2), run.mid(2));
  dialogs.files = {ToQString(folder / "a.RA8")};
  Click("cmdSaveSimData");
  EXPECT_EQ(dialogs.requests[0].filter, "RA8 (*.RA8)");
  const std::string file = ReadWholeFile(folder / "a.RA8", 1 << 20);
  EXPECT_EQ(Cp1252ToUtf8(file), text->toPlainText().replace('\n', "\r\n").toStdString());
  Click("optSaveAs(0)");
  Enter("txtWaveL", "302");  // no part of an interference scan
  EXPECT_EQ(Lines()[1], "P 8 20.0 16000 0099999 1.0000E12 675 21");
}

TEST_F(SimWindowTest, AFailureLeavesTheTabsAndShowsWhatThereIs) {
  Enter("txtExtCoeff", "1E308");
  Enter("txtLoadC", "1");
  const QString message =
      "Error while Simulating Data!  Error was Overflow\r\n"
      "Please try more reasonable values for the simulation parameters.";
  Click("cmdSimulate");
  ASSERT_EQ(dialogs.messages.size(), 1u);
  EXPECT_EQ(dialogs.messages[0].text, message);
  EXPECT_FALSE(tabs->isTabEnabled(1) || tabs->isTabEnabled(2));
  const std::size_t written = Plotted()[0].x.size();
  EXPECT_TRUE(written > 100 && written < 301) << written;
  EXPECT_EQ(Lines().size(), 2 + qsizetype(written) + 1);
  Enter("txtExtCoeff", "1000");
  Click("cmdSimulate");
  EXPECT_TRUE(ResultsReachable());
  EXPECT_EQ(Plotted()[0].x.size(), 301u);
  Enter("txtExtCoeff", "1E308");
  Click("cmdSimulate");
  EXPECT_EQ(dialogs.messages.size(), 2u);
  EXPECT_TRUE(ResultsReachable());
}

TEST_F(SimWindowTest, PlotsTheLastRunWhateverModelIsChosen) {
  Model(3);
  Click("cmdSimulate");
  Click("optGraphType(2)");
  EXPECT_EQ(Plotted().size(), 3u);
  Enter("txtExtCoeff", "5");
  const std::vector<ChartSeries> species = Plotted();
  Model(8);
  Click("optGraphType(2)");
  EXPECT_EQ(Plotted(), species);
  Click("cmdSimulate");
  EXPECT_TRUE(Find<QAbstractButton>("optGraphType(0)")->isChecked());
  Model(0);
  Click("optGraphType(1)");
  EXPECT_TRUE(Plotted().empty());
}

TEST_F(SimWindowTest, RefusesToRunOrSaveWhatCannotBe) {
  Box("txtSpeed")->setText(QString(30000, '9'));
  Click("cmdSimulate");
  EXPECT_EQ(Box("txtSpeed")->text(), "16000");
  Model(2);
  Enter("txtN1mer", "3");
  Model(3);  // whose M-mer is 3 too
  Click("cmdSimulate");
  ASSERT_EQ(dialogs.messages.size(), 2u);
  EXPECT_EQ(dialogs.messages[1].text, "N-mer must be different from M-mer.");
  EXPECT_TRUE(Box("txtN1mer")->hasFocus());
  Enter("txtN1mer", "2");
  session.Calculating = true;
  Click("cmdSimulate");
  EXPECT_TRUE(text->toPlainText().isEmpty());
  session.Calculating = false;
  Click("cmdSimulate");
  dialogs.files = {"", ToQString(folder / "none" / "a.IP8")};
  Click("cmdSaveSimData");
  EXPECT_EQ(dialogs.messages.size(), 2u);  // a cancel is silent
  Click("cmdSaveSimData");
  EXPECT_TRUE(dialogs.messages.back().text.contains("a.IP8"));
  text->clear();
  Click("cmdSaveSimData");
  EXPECT_EQ(dialogs.messages.back().text, "The data box is empty.");
}

TEST_F(SimWindowTest, NothingStartsWhileItCalculatesAndClosingKeepsTheEntries) {
  Model(8);
  Enter("txtRmen", "5.8");
  Enter("txtRbase", "7.2");
  Trigger("mnuMatch");
  int checks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, sim, [&] {
    if (!session.Calculating || checks++ > 0) return;
    for (const char* name : {"cmdSimulate", "cmdSetFit", "mnuFile", "cmdStop", "cmdLoadFiles"}) {
      const auto* action = window->findChild<QAction*>(name);
      const auto* widget = window->findChild<QWidget*>(name);
      EXPECT_FALSE(widget ? widget->isEnabled() : action->isEnabled()) << name;
    }
  });
  timer.start(0);
  Click("cmdSimulate");
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_TRUE(tabs->isEnabled() && Find("cmdLoadFiles")->isEnabled());
  sim->parentWidget()->close();
  EXPECT_FALSE(sim->isVisible());
  Trigger("mnuSimulate");
  EXPECT_TRUE(sim->isVisible());
  EXPECT_EQ(Box("txtRbase")->text(), "7.2");
  EXPECT_EQ(Lines().size(), 2 + 1401 + 1);
  EXPECT_GT(checks, 0) << "no events were served";
}

TEST_F(SimWindowTest, ASeriesIsWrittenAndLoadedOrRefused) {
  Model(6);
  Click("optSaveAs(1)");
  Click("cmdSimSeries");
  auto* grid = Find<QTableWidget>("gridSeries");
  auto* speeds = Find<QLineEdit>("txtSeriesSpeeds");
  EXPECT_EQ(grid->rowCount(), 1);
  speeds->setText("10000, 500");
  EXPECT_TRUE(Find<QLabel>("lblSeries")->text().startsWith("500: The Speed must be"));
  EXPECT_FALSE(Find<QAbstractButton>("cmdMakeSeries")->isEnabled());
  speeds->setText("10000, 14000");
  Find<QLineEdit>("txtSeriesLoadsB")->setText("1e-6 2e-6");
  ASSERT_EQ(grid->rowCount(), 4);
  EXPECT_EQ(grid->item(3, 0)->text(), "00002.RA2");
  EXPECT_EQ(grid->item(3, 4)->text(), "2e-6");
  const std::filesystem::path made = folder / "series";
  std::filesystem::create_directory(made);
  folder.Write("series/00002.RA2", "precious");
  dialogs.yesNo = {false, true};
  Click("cmdMakeLoadSeries");
  EXPECT_EQ(ReadText(made / "00002.RA2"), "precious");
  EXPECT_FALSE(std::filesystem::exists(made / "00001.RA1"));
  Click("cmdMakeLoadSeries");
  ASSERT_EQ(session.Module.Store.NumDatasets(), 4);
  EXPECT_EQ(NameOf(session.Module.Store.Datasets[3]), "2_2A14280.dat");
  EXPECT_EQ(session.Module.Store.Datasets[3].NumPoints, 301);
  EXPECT_FALSE(session.Calculating);
}
