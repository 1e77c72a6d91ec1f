// Faults caught here: a report or a plot that is not the engine's, a zoom that does not set the
// range, results that outlive their scans, a failure that changes the window, a wrong dialog.
#include "windows/match/match_window.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTextBlock>
#include <QTextLayout>
#include <optional>
#include <regex>

#include "base/text.h"
#include "match/match_plots.h"
#include "match/match_report.h"
#include "plot/chart_widget.h"
#include "rtf/rtf_reader.h"
#include "support/recording_host.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

const std::filesystem::path kScans = kExamples / "equilibrium";
const std::string kTooFewScans =
    "There were less than two datasets with enough\r\npoints for matching.  Please try again!";

std::vector<std::filesystem::path> ScanPaths() {
  std::vector<std::filesystem::path> paths;
  for (int k = 8; k >= 1; --k) paths.push_back(kScans / ("0000" + std::to_string(k) + ".RA8"));
  return paths;
}

// The text of a report but for the time of the match.
std::string WithoutTime(const std::string& text) {
  return std::regex_replace(WithUnixLines(text), std::regex("Files :: [-0-9:, ]+"), "Files ::");
}

class MatchWindowTest : public MainWindowTest {
 protected:
  MatchWindowTest() { Trigger("mnuMatch"); }

  void Load(const std::vector<std::filesystem::path>& paths) {
    QStringList names;
    for (const auto& path : paths) names << ToQString(path);
    dialogs.fileLists = {names};
    Find<QTabWidget>("SSTab1")->setCurrentIndex(0);
    Click("cmdLoadFiles");
  }
  void LoadAndMatch() {
    Load(ScanPaths());
    Click("cmdDoMatch");
  }
  // A scan in the folder of the test; its radii begin with `radius`.
  std::filesystem::path Scan(const char* name, int points, const std::string& radius = "6.4",
                             const char* speed = "18000") {
    std::string text = std::string("comment\nR 8 20.0 ") + speed + " 0003600\n";
    for (int k = 0; k < points; ++k)
      text += "   " + radius + std::to_string(100 + k) + "     0.5\n";
    return folder.Write(name, text);
  }
  // Zooms to the middle third of teeMatch by a drag.
  void Zoom() {
    auto* plot = Find("teeMatch")->findChild<QWidget*>();
    const QPoint from(plot->width() / 3, plot->height() / 4);
    const QPoint to(plot->width() * 2 / 3, plot->height() * 3 / 4);
    QTest::mousePress(plot, Qt::LeftButton, {}, from);
    QTest::mouseMove(plot, to);
    QTest::mouseRelease(plot, Qt::LeftButton, {}, to);
  }
  // Tabs of SSTab1 that can be chosen, by place, such as "11000"; the current one as "2".
  std::string Steps() {
    const auto* tabs = Find<QTabWidget>("SSTab1");
    std::string states;
    for (int k = 0; k < tabs->count(); ++k) {
      states += k == tabs->currentIndex() ? '2' : tabs->isTabEnabled(k) ? '1' : '0';
    }
    return states;
  }
  std::vector<std::string> Listed(const char* name) {
    std::vector<std::string> names;
    const auto* list = Find<QListWidget>(name);
    for (int row = 0; row < list->count(); ++row) {
      names.push_back(list->item(row)->text().toStdString());
    }
    return names;
  }
  std::string Report() {
    QString text = Find<QTextEdit>("rtMatchBox")->toPlainText();
    return WithoutTime(text.remove(QChar::ObjectReplacementCharacter).toStdString());
  }
  const Chart& ChartOf(const char* name) { return Find<ChartWidget>(name)->GetChart(); }

  // Adds to `expected` the lines of what the engine makes of all scans in `range`.
  void MatchByEngine(std::optional<FittingRange> range = {}) {
    RecordingHost host;
    LoadMatchFiles(ScanPaths(), {}, series, host);
    result = DoMatch(series, range.value_or(WholeRange(series)));
    for (const MatchReportItem& item : WriteMatchReport(series, result, "0")) {
      if (const auto* line = std::get_if<std::string>(&item)) expected += *line + "\n";
    }
  }

  MatchSeries series;
  MatchResult result;
  std::string expected;
};

}  // namespace

TEST_F(MatchWindowTest, ReportAndPlotsAreTheEngines) {
  EXPECT_EQ(Steps(), "21000");
  Load(ScanPaths());
  EXPECT_EQ(Steps(), "12000");
  Click("cmdDoMatch");
  EXPECT_EQ(Steps(), "11211");
  MatchByEngine();
  EXPECT_EQ(Report(), WithoutTime(expected));
  EXPECT_EQ(ChartOf("TChartMatchFit2"), PlotRms(result, Offsets::kXY));
  Click("optRMSPlot(1)");
  EXPECT_EQ(ChartOf("TChartMatchFit2"), PlotRms(result, Offsets::kY));
  EXPECT_EQ(Listed("lisPlotDevs"), series.names);

  const auto plotted = [this] {
    Click("cmdMakePlot");
    return ChartOf("TChartDevs");
  };
  const auto deviations = [this](Offsets offsets, const std::vector<std::size_t>& chosen) {
    return PlotMatchDeviations(series, result, offsets, chosen, ScanColors(8));
  };
  Click("optDevPlot(2)");
  Find<QSpinBox>("upDownPlotBy")->setValue(3);
  EXPECT_EQ(plotted(), deviations(Offsets::kXY, {0, 3, 6}));
  Click("optDevPlot(0)");
  Click("optPlotChoice(0)");
  for (const int row : {1, 7}) Find<QListWidget>("lisPlotDevs")->item(row)->setSelected(true);
  EXPECT_EQ(plotted(), deviations(Offsets::kNone, {1, 7}));
  EXPECT_TRUE(dialogs.messages.empty());
  Find<QListWidget>("lisPlotDevs")->clearSelection();
  EXPECT_TRUE(plotted().panels.at(0).series.empty());
  EXPECT_EQ(dialogs.messages.at(0).text, "No datasets were selected!  Try Again!");
}

TEST_F(MatchWindowTest, ZoomSetsTheRangeOfTheNextReport) {
  LoadAndMatch();
  Find<QTabWidget>("SSTab1")->setCurrentIndex(1);
  QTest::qWait(1);
  Zoom();
  const ChartRange shown = Find<ChartWidget>("teeMatch")->BottomRange();
  Click("cmdDoMatch");
  MatchByEngine();
  const std::size_t whole = expected.size();
  MatchByEngine(FittingRange{shown.low, shown.high});
  EXPECT_NE(expected.substr(0, whole), expected.substr(whole));
  EXPECT_EQ(Report(), WithoutTime(expected));

  const QString name = ToQString(folder / "Match.rtf");
  dialogs.files = {name};
  Click("matchSavePanel");
  const FileRequest& asked = dialogs.requests.back();
  EXPECT_EQ(asked.title, "Save");
  EXPECT_EQ(asked.folder, ToQString(kScans));
  EXPECT_EQ(asked.filter, "Rich Text File (*.rtf)");
  EXPECT_EQ(asked.defaultName, "Match.rtf");
  const RichText saved = ReadRtf(ReadText(folder / "Match.rtf")).text;
  int pictures = 0;
  for (const Paragraph& paragraph : saved.paragraphs) {
    for (const InlineItem& item : paragraph.items) {
      pictures += std::holds_alternative<Picture>(item);
    }
  }
  EXPECT_EQ(pictures, 6);
  EXPECT_EQ(saved.defaultFamily, "Courier New");
  dialogs.files = {ToQString(folder / "none" / "Match.rtf"), QString()};
  Click("matchSavePanel");
  Click("matchSavePanel");
  EXPECT_EQ(dialogs.messages.size(), 1U);  // of the folder that is not there; a cancel is silent
}

TEST_F(MatchWindowTest, LoadingAgainClosesTheResultsAndKeepsTheReport) {
  LoadAndMatch();
  Click("cmdMakePlot");
  const std::string report = Report();
  Click("chkLoadByN");
  Find<QSpinBox>("updownLoadByN")->setValue(3);
  Load(ScanPaths());
  EXPECT_EQ(Steps(), "12000");
  EXPECT_EQ(Listed("lisMatchFiles"),
            (std::vector<std::string>{"00001.RA8", "00004.RA8", "00007.RA8"}));
  EXPECT_EQ(ChartOf("teeMatch").panels.at(0).series.size(), 3U);
  EXPECT_TRUE(Listed("lisPlotDevs").empty());
  EXPECT_TRUE(ChartOf("TChartDevs").panels.at(0).series.empty());
  EXPECT_TRUE(ChartOf("TChartMatchFit2").panels.at(0).series.at(0).x.empty());
  EXPECT_EQ(Report(), report);
  Find("frmMatch")->parentWidget()->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  Trigger("mnuMatch");
  EXPECT_EQ(Report(), "");
  EXPECT_EQ(Steps(), "21000");
}

TEST_F(MatchWindowTest, FailuresSayWhyAndChangeNothing) {
  LoadAndMatch();
  const auto state = [this] { return Steps().substr(1) + Report() + Listed("lisMatchFiles")[0]; };
  Find<QTabWidget>("SSTab1")->setCurrentIndex(0);
  const std::string before = state();
  const struct {
    std::vector<std::filesystem::path> paths;
    std::vector<std::string> messages;  // their ends
  } loads[] = {
      {{}, {"You must select at least two files!  Try Again!"}},
      {{Scan("a.RA8", 9), Scan("b.RA8", 10)},
       {"Fewer than 10 points were found for the dataset a.RA8.  This dataset will not be loaded",
        kTooFewScans}},
      {{Scan("b.RA8", 10), folder / "gone.RA8"}, {"gone.RA8: there is no such file"}},
  };
  for (const auto& load : loads) {
    dialogs.messages.clear();
    Load(load.paths);
    ASSERT_EQ(dialogs.messages.size(), load.messages.size());
    for (std::size_t k = 0; k < load.messages.size(); ++k) {
      EXPECT_TRUE(dialogs.messages[k].text.toStdString().ends_with(load.messages[k]));
    }
    EXPECT_EQ(state(), before) << load.messages[0];
  }
  Load({Scan("b.RA8", 10), Scan("c.RA8", 10, "6.9")});  // they share no radius
  Click("cmdDoMatch");
  const QString refusal = dialogs.messages.back().text;
  EXPECT_TRUE(refusal.startsWith("The scans were not matched: Subscript out of range."))
      << refusal.toStdString();
  EXPECT_TRUE(refusal.contains("range, 6.39 to 6.9309 cm"))
      << refusal.toStdString();  // the axis of teeMatch
  EXPECT_EQ(Steps(), "12000");
}

TEST_F(MatchWindowTest, LongNamesStayOnALineAndSpeedsAreTold) {
  const std::string longName(60, 'n');
  for (const auto& path : ScanPaths()) {
    std::filesystem::copy(path, folder / (longName + path.filename().string()));
  }
  std::vector<std::filesystem::path> paths = ScanPaths();
  for (auto& path : paths) path = folder / (longName + path.filename().string());
  Load(paths);
  EXPECT_EQ(Find<QLabel>("matchStatusPanel")->text(), "");
  Click("cmdDoMatch");
  const QTextDocument& report = *Find<QTextEdit>("rtMatchBox")->document();
  int rows = 0;
  for (QTextBlock block = report.begin(); block.isValid(); block = block.next()) {
    if (!block.text().contains(longName.c_str()) || !block.text().startsWith(" 00")) continue;
    EXPECT_EQ(block.layout()->lineCount(), 1) << block.text().toStdString();
    ++rows;
  }
  EXPECT_EQ(rows, 7);
  Load({Scan("b.RA8", 10), Scan("c.RA8", 10, "6.4", "09000")});
  EXPECT_TRUE(Find<QLabel>("matchStatusPanel")->text().contains("9000, 18000 rpm"));
  const QString facts =
      Find<QListWidget>("lisMatchFiles")->item(1)->data(Qt::AccessibleTextRole).toString();
  EXPECT_EQ(facts, "c.RA8, 9000 rpm, 1.00 h");
}

TEST_F(MatchWindowTest, AsksForTheFilesOfTheCell) {
  dialogs.fileLists = {{}, {}, {}};
  const auto asked = [this] {
    Click("cmdLoadFiles");
    return dialogs.requests.back();
  };
  EXPECT_EQ(asked().folder, ToQString(folder.path()));
  Find<QSpinBox>("updownCellNumber")->setValue(3);
  Click("optFileFilter(1)");
  const FileRequest third = asked();
  EXPECT_EQ(third.title, "Load Files For Matching");
  EXPECT_EQ(third.filter,
            "XL-A Files (*.RA3);;XL-I Files (*.IP3);;XL-F Files (*.FI3);;All Files (*.*)");
  EXPECT_EQ(third.chosenFilter, "XL-I Files (*.IP3)");
  Find<QLineEdit>("txtCellNumber")->clear();
  QTest::keyClicks(Find<QLineEdit>("txtCellNumber"), "x5");
  EXPECT_EQ(Find<QSpinBox>("updownCellNumber")->value(), 5);
  Click("optFileFilter(4)");
  EXPECT_EQ(asked().chosenFilter, "All Files (*.*)");
}

TEST_F(MatchWindowTest, PrintsWhatIsShownAndNamesThePlaceUnderThePointer) {
  LoadAndMatch();
  const auto* match = dynamic_cast<MatchWindow*>(Find("frmMatch"));
  const QWidget* expectedWidgets[] = {nullptr, Find("teeMatch"), Find("rtMatchBox"),
                                      Find("TChartDevs"), nullptr};
  for (int tab = 0; tab < 5; ++tab) {
    Find<QTabWidget>("SSTab1")->setCurrentIndex(tab);
    const PrintContent content = match->Printed();
    const QWidget* printed = nullptr;
    if (const auto* chart = std::get_if<const ChartWidget*>(&content)) printed = *chart;
    if (const auto* text = std::get_if<const QTextEdit*>(&content)) printed = *text;
    EXPECT_EQ(printed, expectedWidgets[tab]) << tab;
  }
  emit Find<ChartWidget>("teeMatch")->PointerMoved(6.543219, 0.1);
  EXPECT_EQ(Find<QLabel>("matchStatusPanel")->text(), "6.5432, .1");
}
