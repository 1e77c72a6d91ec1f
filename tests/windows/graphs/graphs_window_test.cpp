// Faults caught here: a list that shows another graph than it names, pictures of the wrong kind or
// size, a table that loses digits, foreign graphs that can be exported.
#include "windows/graphs/graphs_window.h"

#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include "core/graph_store.h"
#include "plot/chart_csv.h"
#include "plot/chart_widget.h"
#include "windows/session_fixture.h"

using namespace quorvane;

namespace {

class GraphsWindowTest : public SessionFixture {
 protected:
  GraphsWindowTest() {
    for (const char* title : {"first", "second"}) {
      SaveGraph(session.Module,
                {title, "r", {{"A, \"280\"", 1.0, {{"s", {}, 0, {0.1}, {2.0}}}, {}}}});
    }
    window.Refresh();
    window.show();
  }

  QString Title() const {
    return QString::fromStdString(window.findChild<ChartWidget*>("ExportTChart")->GetChart().title);
  }
  void Press(QWidget& in, const char* name) {
    QTest::mouseClick(in.findChild<QPushButton*>(name), Qt::LeftButton);
  }
  QDialog* OpenExport() {
    Press(window, "cmdExportGraph");
    return window.findChildren<QDialog*>("frmExport").last();
  }

  GraphsWindow window{session};
  QComboBox* list = window.findChild<QComboBox*>("TeeChartList");
};

}  // namespace

TEST_F(GraphsWindowTest, ShowsTheGraphThatItNames) {
  EXPECT_EQ(list->currentText(), "Graph #1");
  EXPECT_EQ(Title(), "Graph #1 :: first");
  window.ShowGraph(2);
  EXPECT_EQ(Title(), "Graph #2 :: second");
  SaveGraph(session.Module, {"third", "", {}});
  window.Refresh();
  EXPECT_EQ(list->count(), 3);
  EXPECT_EQ(Title(), "Graph #2 :: second");
  session.Module.GraphStreams = {{std::byte{7}}};
  window.Refresh();
  EXPECT_EQ(Title(), "Graph #1 :: kept by another program");
  EXPECT_FALSE(window.findChild<QPushButton*>("cmdExportGraph")->isEnabled());
  session.Module.GraphStreams.clear();
  window.Refresh();
  EXPECT_EQ(list->count(), 0);
  EXPECT_EQ(Title(), "");
}

TEST_F(GraphsWindowTest, IsNeverTooSmall) {
  window.resize(7, 7);
  EXPECT_EQ(window.width(), 6000 * window.logicalDpiX() / 1440);
  EXPECT_EQ(window.height(), 3000 * window.logicalDpiY() / 1440);
  window.close();
  EXPECT_FALSE(window.isVisible());
}

TEST_F(GraphsWindowTest, ExportsEachFormat) {
  const struct {
    int format;
    const char* file;
    const char* begin;
    int width;
    int height;
  } kCases[] = {{0, "a.png", "\x89PNG", 1000, 900},
                {1, "a.svg", "<?xml", 1000, 900},
                {2, "a.pdf", "%PDF", 100, 90}};
  for (const auto& c : kCases) {
    QDialog* dialog = OpenExport();
    dialog->findChild<QComboBox*>("cboFormat")->setCurrentIndex(c.format);
    dialog->findChild<QSpinBox*>("txtWidth")->setValue(c.width);
    EXPECT_EQ(dialog->findChild<QSpinBox*>("txtHeight")->value(), c.height) << c.file;
    dialogs.files = {ToQString(folder / c.file)};
    Press(*dialog, "cmdSavePicture");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(ReadText(folder / c.file).starts_with(c.begin)) << c.file;
  }
  EXPECT_EQ(QImage(ToQString(folder / "a.png")).size(), QSize(1000, 900));
  EXPECT_NE(ReadText(folder / "a.pdf").find("/MediaBox [0 0 283.0"), std::string::npos);
  EXPECT_EQ(dialogs.requests[0].defaultName, "Graph 1.png");
}

TEST_F(GraphsWindowTest, SavesNumbersAndCopies) {
  QDialog* dialog = OpenExport();
  Press(*dialog, "cmdCopyPicture");
  const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(copied->imageData().value<QImage>().size(), QSize(1200, 1080));
  EXPECT_TRUE(copied->data("image/svg+xml").contains("<svg"));
  dialogs.files = {"", ToQString(folder / "no folder" / "a.csv"), ToQString(folder / "a.csv")};
  Press(*dialog, "cmdSavePicture");  // cancel
  Press(*dialog, "cmdSaveNumbers");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  Press(*dialog, "cmdSaveNumbers");
  EXPECT_EQ(ReadText(folder / "a.csv"),
            "panel,series,x,y\r\n\"A, \"\"280\"\"\",s,0.10000000000000001,2\r\n");
}
