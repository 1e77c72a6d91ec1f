// Faults caught here: a choice that the preview does not follow, a file overwritten unasked, scans
// written and not loaded.
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTableWidget>

#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

class ImportWindowTest : public MainWindowTest {
 protected:
  void Open(const QStringList& names) {
    QStringList paths;
    for (const QString& name : names) paths << ToQString(folder / name.toStdString());
    dialogs.fileLists = {paths};
    Trigger("mnuFileImport");
    files = Find<QTableWidget>("gridImportFiles");
  }
  void Write(const char* name, const char* format, int rows = 30) {
    std::string text;
    for (int k = 0; k < rows; ++k) {
      char row[64];
      std::snprintf(row, sizeof row, format, 100 + 3 * k, 100 + k * k);
      text += row;
    }
    folder.Write(name, text);
  }
  std::string Cell(int row, int column) { return files->item(row, column)->text().toStdString(); }
  void Choose(const char* box, const QVariant& value) {
    auto* combo = Find<QComboBox>(box);
    combo->setCurrentIndex(combo->findData(value));
    QTest::qWait(200);
  }
  void Type(const char* box, const char* text) {
    Find<QLineEdit>(box)->setText(text);
    QTest::qWait(200);
  }
  QString Remarks() {
    QString all;
    const auto* list = Find<QListWidget>("lstImportRemarks");
    for (int k = 0; k < list->count(); ++k) all += list->item(k)->text() + "\n";
    return all;
  }

  QTableWidget* files = nullptr;
};

}  // namespace

TEST_F(ImportWindowTest, ShowsWhatWasUnderstoodAndFollowsTheChoices) {
  Write("plain.csv", "6.%d;0.%d\n");
  Write("open.csv", "6,%d,0,%d\n");
  folder.Write("empty.csv", "");
  Open({"plain.csv", "open.csv", "empty.csv"});
  EXPECT_EQ(Cell(0, 1), "plain.RA1");
  EXPECT_EQ(Cell(0, 2), "30 rows");
  EXPECT_NE(Cell(1, 2).find("choose the decimal sign"), std::string::npos);
  EXPECT_EQ(Cell(2, 2), "the file is empty");
  EXPECT_EQ(Find<QComboBox>("cmbImportSeparator")->currentText(), "As found: semicolon");
  const auto* rows = Find<QTableWidget>("gridImportRows");
  EXPECT_EQ(rows->rowCount(), 30);
  EXPECT_EQ(rows->item(1, 1)->text(), "6.103");
  EXPECT_TRUE(Find<QPlainTextEdit>("txtImportLines")->toPlainText().contains("2  6.103;0.101"));
  EXPECT_TRUE(Remarks().contains("The speed is not known."));
  Choose("cmbImportKind", int{'P'});
  Choose("cmbImportCell", 4);
  Type("txtImportSpeed", "12000");
  EXPECT_EQ(Cell(0, 1), "plain.IP4");
  EXPECT_FALSE(Remarks().contains("The speed is not known."));
  Type("txtImportSpeed", "fast");
  EXPECT_EQ(Cell(0, 2), "\"fast\" is no number");
  EXPECT_FALSE(Find<QAbstractButton>("cmdImport")->isEnabled());
  Type("txtImportSpeed", "");
  Choose("cmbImportSignal", 1);
  EXPECT_EQ(Cell(0, 2), "column 1 cannot serve twice: choose another");
}

TEST_F(ImportWindowTest, WritesScansAndLoadsThemWithTheChannelsOfThePage) {
  Write("a.csv", "6.%d;0.%d\n");
  Write("b.txt", "6,%d\t0,%d\n");
  folder.Write("a.RA1", "precious");
  Open({"a.csv", "b.txt"});
  Type("txtImportSpeed", "10000");
  dialogs.yesNo = {false};
  Click("cmdImportLoad");
  ASSERT_EQ(dialogs.questions.size(), 1U);
  EXPECT_TRUE(dialogs.questions[0].text.contains("a.RA1.  Overwrite?"));
  EXPECT_EQ(ReadText(folder / "a.RA1"), "precious");
  EXPECT_TRUE(session.Module.Store.Datasets.empty());
  dialogs.yesNo = {true};
  Click("cmdImportLoad");
  ASSERT_EQ(session.Module.Store.NumDatasets(), 2);
  const Dataset& second = session.Module.Store.Datasets[1];
  EXPECT_EQ(NameOf(second), "b_1A100.dat");
  EXPECT_EQ(second.Speed, 10000);
  EXPECT_EQ(second.NumPoints, 30);
  EXPECT_EQ(second.R[1], 6.103);
  EXPECT_EQ(Cell(1, 2), "written");
}
