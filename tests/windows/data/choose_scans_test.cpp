// Faults caught here: checks that do not follow sort and filter, a load of other files than those
// checked, keys that another window takes, a folder that vanishes, a list of a folder left behind.
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

#include <gtest/gtest.h>

#include "plot/chart_widget.h"
#include "support/recording_host.h"
#include "windows/data/choose_scans_window.h"
#include "windows/data/source_files_tab.h"
#include "windows/session_fixture.h"

using namespace quorvane;

namespace {

// 20 rows in each channel of a 6-channel cell, of the given signal.
std::string Scan(int cell, int speed, int hours, double signal) {
  std::array<char, 80> line{};
  std::snprintf(line.data(), line.size(), "run\r\nR %d 20.0 %05d %07d 7.5000E10 280 21\r\n", cell,
                speed, 3600 * hours);
  std::string text = line.data();
  for (const double first : {5.9, 6.4, 6.9}) {
    for (int k = 0; k < 20; ++k) {
      const double r = first + 0.005 * k;
      std::snprintf(line.data(), line.size(), "   %.4f  %13.5E   1.00000E-002\r\n", r, signal * r);
      text += line.data();
    }
  }
  return text;
}

class ChooseScans : public SessionFixture {
 protected:
  ChooseScans() {
    session.CurrentFolder = folder.path();
    folder.Write("00001.RA2", Scan(2, 10000, 1, 0.1));
    folder.Write("00002.RA2", Scan(2, 10000, 2, 0.2));
    folder.Write("00003.RA2", Scan(2, 20000, 9, 0.3));
    folder.Write("00004.RA1", Scan(1, 10000, 1, 0.1));
    folder.Write("00005.DAT", Scan(1, 10000, 2, 0.1));
    folder.Write("bad.RA1", "x");
    source.RefreshDirectory();
    QObject::connect(&source, &SourceFilesTab::DatasetsChanged, [this] { ++loads; });
  }

  template <class Widget>
  Widget& Find(const char* name) {
    auto* widget = window.findChild<Widget*>(name);
    if (widget == nullptr) throw std::runtime_error(name);
    return *widget;
  }
  void Open() {
    window.Open();
    AwaitList();
  }
  void AwaitList() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Find<QWidget>("barScans").isVisible(); }));
    QTest::qWait(1);  // what the list shows is drawn once for all that changed
  }
  void Key(int key, const char* name = "treeScans") {
    QTest::keyClick(&Find<QWidget>(name), static_cast<Qt::Key>(key));
  }
  void Click(const char* name) { Find<QAbstractButton>(name).click(); }
  QString Text(const char* name) { return Find<QLabel>(name).text(); }
  // Makes the scan of that name current.
  void GoTo(const char* file) {
    const QModelIndexList found = tree().model()->match(tree().model()->index(0, 0), 0, file, 1,
                                                        Qt::MatchExactly | Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1) << file;
    tree().setCurrentIndex(found[0]);
    QTest::qWait(1);
  }
  QTreeView& tree() { return Find<QTreeView>("treeScans"); }
  // Names of the rows in sight, a series by its number of scans.
  std::string Rows() {
    std::string rows;
    const QAbstractItemModel& model = *tree().model();
    for (int s = 0; s < model.rowCount(); ++s) {
      const QModelIndex series = model.index(s, 0);
      rows += "|";
      for (int k = 0; k < model.rowCount(series); ++k) {
        rows += model.index(k, 0, series).data().toString().mid(4, 1).toStdString();
      }
    }
    return rows;
  }
  std::string Loaded() const {
    std::string names;
    for (const Dataset& dataset : session.Module.Store.Datasets) names += NameOf(dataset) + " ";
    return names;
  }

  RecordingHost host;
  SourceFilesTab source{session, host};
  ChooseScansWindow window{session, source};
  int loads = 0;
};

}  // namespace

TEST_F(ChooseScans, LastOfEachIsLoadedWithTheSettingsOfThePage) {
  source.findChild<QAbstractButton*>("optCntrpiece(1)")->click();
  source.findChild<QAbstractButton*>("chkChannel(1)")->click();
  source.findChild<QAbstractButton*>("cmdChooseScans")->click();
  AwaitList();
  EXPECT_EQ(Rows(), "|45|12|3");
  EXPECT_EQ(Text("lblScanState"), "5 scans in 3 groups, 3 checked");
  EXPECT_EQ(Text("lblLoadAs"), "Loads as IP,RA, 6 channels, A C.");
  Click("cmdCheckNone");
  EXPECT_FALSE(Find<QWidget>("cmdLoadChecked").isEnabled());
  Click("cmdLastOfEach");
  EXPECT_EQ(Text("lblScanState"), "5 scans in 3 groups, 3 checked");
  EXPECT_EQ(Text("lblKindWarning"),
            "1 of the checked files have the extension of another file type.");
  GoTo("00005.DAT");
  Key(Qt::Key_Space);
  EXPECT_EQ(Text("lblKindWarning"), "");
  Click("cmdLoadChecked");
  EXPECT_EQ(Loaded(), "2_2A10280.dat 2_2C10280.dat 3_2A20280.dat 3_2C20280.dat ");
  EXPECT_EQ(loads, 1);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(ChooseScans, ChecksFollowTheScansThroughSortFilterAndRefresh) {
  Open();
  Click("cmdCheckNone");
  GoTo("00001.RA2");
  Key(Qt::Key_Space);
  tree().sortByColumn(ScanTreeModel::kHours, Qt::DescendingOrder);
  EXPECT_EQ(Rows(), "|3|21|54");
  Find<QLineEdit>("txtScanFilter").setText("ABSOR 10000 1.00");
  EXPECT_EQ(Rows(), "|1|4");
  GoTo("00004.RA1");
  Key(Qt::Key_Space);
  Find<QLineEdit>("txtScanFilter").setText("no such");
  EXPECT_EQ(Rows(), "");
  Find<QLineEdit>("txtScanFilter").clear();
  EXPECT_EQ(Rows(), "|3|21|54");
  std::filesystem::remove(folder / "00004.RA1");
  folder.Write("00006.RA2", Scan(2, 20000, 10, 0.3));
  Key(Qt::Key_F5);
  AwaitList();
  EXPECT_EQ(Rows(), "|63|21|5");
  EXPECT_EQ(Text("lblScanState"), "5 scans in 3 groups, 1 checked");
  const QModelIndex series = tree().model()->index(1, 0);
  EXPECT_EQ(series.data(Qt::CheckStateRole), Qt::PartiallyChecked);
  tree().setCurrentIndex(series);
  Key(Qt::Key_Space);
  Key(Qt::Key_Return, "txtScanFilter");
  EXPECT_EQ(Loaded(), "1_2A10280.dat 2_2A10280.dat ");
}

TEST_F(ChooseScans, CurrentRowShowsItsScanAndTheChangesOfItsSeries) {
  Open();
  GoTo("00002.RA2");
  auto& scan = Find<ChartWidget>("TChartScan");
  auto& change = Find<ChartWidget>("TChartChange");
  EXPECT_EQ(Text("lblScanPreview"), "00002.RA2");
  EXPECT_EQ(scan.GetChart().panels.at(0).series.at(0).x.size(), 59U);
  const auto shown = [&] { return change.GetChart().panels.at(0).series.at(0).y.at(0); };
  const double all = shown();
  EXPECT_EQ(change.GetChart().title, "Cell 2, 280 nm, 10000 rpm");
  scan.ZoomTo({5.85, 0.0, 6.05, 1.5});  // the change over these radii alone
  ASSERT_TRUE(QTest::qWaitFor([&] { return change.GetChart().title.ends_with("6.05 cm"); }));
  EXPECT_NEAR(shown(), 0.1 * 5.95, 0.01);
  EXPECT_LT(shown(), all);

  QSignalSpy matches(&window, &ChooseScansWindow::MatchRequested);
  Click("cmdMatchGroup");
  ASSERT_EQ(matches.size(), 1);
  const auto paths = matches[0][0].value<std::vector<std::filesystem::path>>();
  EXPECT_EQ(paths, (std::vector{folder / "00001.RA2", folder / "00002.RA2"}));
  GoTo("00003.RA2");
  EXPECT_FALSE(Find<QWidget>("cmdMatchGroup").isEnabled());
}

TEST_F(ChooseScans, ForeignFilesAndVanishedFoldersAreTold) {
  Open();
  EXPECT_EQ(Find<QToolButton>("cmdForeign").text(), "1 file is no scan");
  Click("cmdForeign");
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(dialogs.messages[0].text.endsWith("bad.RA1: ends before its header line"));
  std::filesystem::create_directory(folder / "empty");
  dialogs.files = {ToQString(folder / "empty")};
  Click("cmdScanFolder");
  AwaitList();
  EXPECT_EQ(Rows(), "");
  EXPECT_EQ(Text("lblScanState"), "There are no scans in this folder.");
  EXPECT_EQ(session.CurrentFolder, folder / "empty");
  std::filesystem::remove(folder / "empty");
  Key(Qt::Key_F5);
  AwaitList();
  EXPECT_TRUE(Text("lblScanState").contains("empty: "));
  Key(Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(ChooseScans, ColumnsStandAsTheyWereLeft) {
  Open();
  tree().header()->moveSection(ScanTreeModel::kChange, 1);
  window.close();
  ChooseScansWindow next(session, source);
  next.Open();
  EXPECT_EQ(next.findChild<QTreeView*>("treeScans")->header()->visualIndex(ScanTreeModel::kChange),
            1);
}
