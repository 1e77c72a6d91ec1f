// Faults caught here: pages that are lost or empty, a selection that prints everything, margins and
// scaling without effect, the wrong window printed, half a file after an error.
#include <QBuffer>
#include <QClipboard>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QTimer>

#include "base/files.h"
#include "core/graph_store.h"
#include "windows/frame/about_window.h"
#include "windows/main_window_fixture.h"
#include "windows/print/grid_printing.h"
#include "windows/print/print_dialog.h"
#include "windows/print/print_preview.h"
#include "windows/print/printing.h"

using namespace quorvane;

namespace {

class Printing : public MainWindowTest {
 protected:
  // A user who prints to `name` in the folder of the test.
  ScriptedDialogs::PrinterSetUp ToPdf(const char* name) {
    const QString path = ToQString(folder / name);
    return [this, path](QPrinter& printer) {
      range = printer.printRange();
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(path);
      return true;
    };
  }
  int Pages(const char* name) {
    const QString pdf = QString::fromLatin1(ReadText(folder / name).c_str(),
                                            qsizetype(ReadText(folder / name).size()));
    EXPECT_TRUE(pdf.trimmed().endsWith("%%EOF")) << name;
    return int(pdf.count(QRegularExpression("/Type /Page\\b")));
  }
  void Activate(const char* name) {
    auto* child = qobject_cast<QMdiSubWindow*>(Find<QWidget>(name)->parentWidget());
    child->show();
    child->mdiArea()->setActiveSubWindow(child);
  }
  void PrintTo(const char* name) {
    dialogs.printers = {ToPdf(name)};
    Trigger("mnuPrint");
    EXPECT_TRUE(dialogs.printers.empty()) << "nothing was printed";
  }

  QPrinter::PrintRange range = QPrinter::AllPages;  // that the last dialog started from
};

// `rows` x `columns` cells.
std::unique_ptr<QStandardItemModel> Cells(int rows, int columns) {
  auto cells = std::make_unique<QStandardItemModel>(rows, columns);
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      cells->setItem(row, column, new QStandardItem(QString::number(row * columns + column)));
    }
  }
  return cells;
}

}  // namespace

TEST_F(Printing, PrintsWhatTheActiveWindowShows) {
  Activate("frmData");
  Trigger("mnuPrint");
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "No printing from this tab!");

  Activate("frmDocument");
  PrintTo("head.pdf");
  EXPECT_EQ(Pages("head.pdf"), 1);
  auto* log = Find<QTextEdit>("logFile");
  for (int line = 0; line < 300; ++line) log->append("line " + QString::number(line));
  PrintTo("log.pdf");
  EXPECT_GE(Pages("log.pdf"), 4);
  log->moveCursor(QTextCursor::Start);
  log->moveCursor(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
  EXPECT_EQ(range, QPrinter::AllPages);
  PrintTo("selection.pdf");
  EXPECT_EQ(range, QPrinter::Selection);
  EXPECT_EQ(Pages("selection.pdf"), 1);

  Trigger("mnuWindowNewWindow");
  Find<QWidget>("frmDocument(1)")->findChild<QTextEdit*>("logFile")->setPlainText("notes");
  PrintTo("document.pdf");
  EXPECT_EQ(Pages("document.pdf"), 1);

  SaveGraph(session.Module, {"title", "r", {{"signal", 1.0, {{"s", {}, 0, {1, 2}, {3, 4}}}, {}}}});
  Activate("frmGraphs");
  PrintTo("chart.pdf");
  EXPECT_EQ(Pages("chart.pdf"), 1);
  EXPECT_EQ(dialogs.messages.size(), 1U);
}

TEST_F(Printing, AnErrorIsToldAndLeavesNoFile) {
  Activate("frmDocument");
  const struct {
    const char* name;
    const char* text;
  } cases[] = {{"missing/log.pdf", "Error 2\r\n"}, {"file/log.pdf", "Error 20\r\n"}};
  folder.Write("file", "no folder");
  for (const auto& test : cases) {
    dialogs.messages.clear();
    PrintTo(test.name);
    ASSERT_EQ(dialogs.messages.size(), 1U) << test.name;
    EXPECT_TRUE(dialogs.messages[0].text.startsWith(test.text))
        << dialogs.messages[0].text.toStdString();
    EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::kStop);
    EXPECT_FALSE(FileExists(folder / test.name));
  }
  dialogs.messages.clear();
  dialogs.printers = {[](QPrinter&) { return false; }};
  Trigger("mnuPrint");
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_FALSE(HasPrinter("no such printer"));
}

TEST_F(Printing, APreviewedFileIsReplacedOnlyWhenTheUserSaysSo) {
  folder.Write("old.pdf", "old");
  QPrinter printer;
  printer.setOutputFileName(ToQString(folder / "old.pdf"));
  const PrintJob job = {.title = "Log", .paint = [](QPagedPaintDevice& device, bool) {
                          QPainter(&device).drawText(99, 99, "new");
                        }};
  QString windows;
  QTimer user;  // previews and prints; back in the dialog, cancels
  QObject::connect(&user, &QTimer::timeout, window.get(), [&] {
    QWidget* active = QApplication::activeModalWidget();
    if (active == nullptr || !active->isVisible()) return;
    if (auto* preview = qobject_cast<PrintPreview*>(active)) {
      windows += "preview ";
      preview->findChild<QPushButton*>("cmdPrint")->click();
    } else if (windows.isEmpty()) {
      windows += "dialog ";
      for (const char* name : {"printRange", "from", "to"}) {  // no page numbers
        EXPECT_TRUE(active->findChild<QWidget*>(name)->isHidden()) << name;
      }
      active->findChild<QPushButton*>("cmdPreview")->click();
    } else {
      windows += "dialog";
      qobject_cast<QDialog*>(active)->reject();
    }
  });
  user.start(0);
  dialogs.yesNo = {false};
  EXPECT_FALSE(RunPrintDialog(dialogs, window.get(), printer, job));
  EXPECT_EQ(windows, "dialog preview dialog");
  EXPECT_EQ(dialogs.questions.size(), 1U);
  windows.clear();
  dialogs.yesNo = {true};
  EXPECT_TRUE(RunPrintDialog(dialogs, window.get(), printer, job));
  EXPECT_EQ(windows, "dialog preview ");
}

TEST_F(Printing, AGridFillsAsManyPagesAsItNeeds) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  QPdfWriter page(&bytes);
  page.setPageLayout({QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(40, 40, 40, 40)});
  const struct {
    int rows, columns;
    GridPrintOptions options;
    int least, most;  // pages
  } cases[] = {{0, 0, {}, 1, 1},
               {5, 5, {}, 1, 1},
               {5, 60, {}, 3, 6},
               {5, 60, {.fitWidth = true}, 1, 1},
               {5, 60, {.scale = 50}, 2, 3},
               {150, 5, {}, 3, 5},
               {150, 60, {}, 9, 30}};
  for (const auto& test : cases) {
    const auto cells = Cells(test.rows, test.columns);
    const int pages = CountGridPages({"Title", cells.get()}, test.options, page);
    EXPECT_GE(pages, test.least) << test.rows << " x " << test.columns;
    EXPECT_LE(pages, test.most) << test.rows << " x " << test.columns;
  }
}

TEST_F(Printing, TheGridFormHonoursRangeMarginsAndScaling) {
  SetUpExample();
  Click("cmdFitMe");
  Click("cmdShowCCCs");
  const auto print = [&](const char* name, auto&& fillIn) {
    dialogs.printers = {ToPdf(name)};
    Click("cmdPrintMe");
    auto* form = window->findChildren<QDialog*>("P001").last();
    EXPECT_EQ(form->findChild<QLineEdit*>("txtTitle")->text(), "Cross-Correlation Coefficients");
    fillIn(*form);
    form->findChild<QPushButton*>("cmdPrint")->click();
    EXPECT_FALSE(form->isVisible());
    return Pages(name);
  };
  const auto spin = [](QDialog& form, const char* name) { return form.findChild<QSpinBox*>(name); };
  const int all = print("all.pdf", [](QDialog&) {});
  EXPECT_GT(all, 1);
  EXPECT_EQ(print("second.pdf",
                  [&](QDialog& form) {
                    form.findChild<QRadioButton*>("optPages")->setChecked(true);
                    EXPECT_EQ(spin(form, "txtToPage")->value(), all);
                    spin(form, "txtFromPage")->setValue(2);
                    spin(form, "txtToPage")->setValue(1);  // not before the first page
                  }),
            1);
  EXPECT_EQ(print("small.pdf", [&](QDialog& form) { spin(form, "txtScale")->setValue(40); }), 1);
  EXPECT_GT(print("narrow.pdf",
                  [](QDialog& form) {
                    form.findChild<QDoubleSpinBox*>("txtMarginLeft")->setValue(80.0);
                  }),
            all);
  // The page stays for the next job, the rest does not.
  EXPECT_GT(print("again.pdf", [](QDialog&) {}), all);
}

TEST(frmAbout, CopiesTheSystemInformation) {
  AboutWindow about("/home/ada/.config/quorvane/quorvane.ini");
  about.show();
  EXPECT_FALSE(about.findChild<QWidget*>("txtSysInfo")->isVisible());
  about.findChild<QPushButton*>("cmdSysInfo")->click();
  EXPECT_TRUE(about.findChild<QWidget*>("txtSysInfo")->isVisible());
  about.findChild<QPushButton*>("cmdCopySysInfo")->click();
  const QString copied = QGuiApplication::clipboard()->text();
  for (const char* part : {"Quorvane 1.", "Kernel: ", "Cores: ", "Qt: 6.", "/home/ada/.config/"}) {
    EXPECT_TRUE(copied.contains(part)) << part << " in " << copied.toStdString();
  }
}
