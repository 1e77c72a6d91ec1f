// Faults caught here: formats or pictures that a load and a save lose, lines at the wrong place or
// in the wrong font, a log that can be changed during a calculation, a save that loses what it had.
#include "windows/log/log_window.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>

#include "plot/chart_export.h"
#include "rtf/picture_file.h"
#include "rtf/rtf_reader.h"
#include "rtf/rtf_writer.h"
#include "support/recording_host.h"
#include "windows/log/rich_text_document.h"
#include "windows/session_fixture.h"

using namespace quorvane;

namespace {

std::string SmallPng() {
  return RenderChart({"Title", "x", {}}, PictureFormat::kPng, {200, 200});
}

CharFormat Look(const char* family, int halfPoints, bool bold = false) {
  CharFormat look;
  look.family = family;
  look.halfPoints = halfPoints;
  look.bold = bold;
  return look;
}

RichText RichSample() {
  RichText text;
  AppendText(text, "plain\tand ", {});
  CharFormat look = Look("Liberation Serif", 33, true);
  look.italic = look.underline = look.strikeout = true;
  AppendText(text, "\xCE\xBB\xE2\x80\xA8next \xF0\x9F\x99\x82", look);
  for (const auto script : {ScriptPosition::kSuperscript, ScriptPosition::kSubscript}) {
    look = {};
    look.script = script;
    look.color = 0x0180FF;
    AppendText(text, "2", look);
  }
  text.paragraphs.back().format = {Alignment::kJustified, 1440, -331, {700, 2881}};
  AppendText(text, "\n", Look("Courier New", 48));
  AppendPicture(text, PictureFromFile(SmallPng()));
  // The header is whole, the pixels are not: a picture that cannot be shown.
  AppendPicture(text, PictureFromFile(SmallPng().substr(0, 60)));
  std::get<Picture>(text.paragraphs.back().items.back()).widthTwips = 451;
  AppendText(text, "\n", {});
  text.paragraphs[2].format = {Alignment::kRight, 0, 0, {}};
  return text;
}

class LogWindowTest : public SessionFixture {
 protected:
  LogWindowTest() {
    window.resize(500, 300);
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    edit->setFocus();
  }

  QString Text() const { return edit->toPlainText(); }
  QAction* Action(const char* name) const { return window.findChild<QAction*>(name); }

  // The names of the commands that a right click offers now.
  QStringList Offered() {
    const QPoint middle = edit->viewport()->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, middle, edit->mapToGlobal(middle));
    QCoreApplication::sendEvent(edit->viewport(), &event);
    auto* menu = window.findChild<QMenu*>("mnuRTBcontext");
    EXPECT_TRUE(menu->isVisible());
    menu->close();
    QStringList names;
    for (const QAction* action : menu->actions()) {
      if (action->isEnabled() && !action->isSeparator()) names.append(action->text());
    }
    return names;
  }

  LogWindow window{session};
  QTextEdit* edit = window.findChild<QTextEdit*>("logFile");
};

}  // namespace

TEST(RichTextDocument, GivesBackWhatItShows) {
  const RichText sample = RichSample();
  QTextDocument document;
  document.setDefaultFont(QFont("Courier New", 10));
  ShowRichText(sample, document);
  EXPECT_EQ(document.blockCount(), static_cast<int>(sample.paragraphs.size()));
  EXPECT_EQ(RichTextOf(document), sample);
  RichText signs;  // that would break a paragraph of the document
  signs.paragraphs[0].items = {TextRun{"a\u2029b\uFDD0c\uFFFC", {}}};
  ShowRichText(signs, document);
  EXPECT_EQ(PlainText(RichTextOf(document)), "a\u2028b\uFFFDc\uFFFD");
}

TEST_F(LogWindowTest, AppendsAtTheCaretInItsFormat) {
  EXPECT_FALSE(session.Module.ExperimentOpen);
  const QSignalSpy changes(&window, &LogWindow::Changed);
  window.AppendLogText("one\r\ntwo");
  EXPECT_EQ(Text(), "one\ntwo\n");
  EXPECT_GT(changes.count(), 0);
  EXPECT_TRUE(session.Module.ExperimentOpen);
  edit->moveCursor(QTextCursor::Start);
  edit->moveCursor(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
  edit->setFontItalic(true);
  window.AppendLogText("more");  // behind the selection, which is not lost
  EXPECT_EQ(Text(), "onemore\n\ntwo\n");
  window.InsertPictureAtEnd(SmallPng());
  window.AppendLogText("end");
  const RichText log = RichTextOf(*edit->document());
  EXPECT_TRUE(std::get<TextRun>(log.paragraphs[0].items.at(0)).format.italic);
  EXPECT_TRUE(std::holds_alternative<Picture>(log.paragraphs[3].items.at(0)));
  EXPECT_EQ(std::get<TextRun>(log.paragraphs[3].items.at(1)), (TextRun{"end", CharFormat()}));
}

TEST_F(LogWindowTest, LinesOfTablesAreNotBrokenAndAllElseIsNoWiderThanTheWindow) {
  const auto* bar = edit->horizontalScrollBar();
  window.AppendLogText("head");
  window.AppendLogText(QString("a long sentence ").repeated(20));
  for (int k = 0; k < 3; ++k) window.InsertPictureAtEnd(SmallPng());
  EXPECT_EQ(bar->maximum(), 0);
  QTextCursor caret = edit->textCursor();
  EXPECT_EQ(caret.block().layout()->lineCount(), 2);  // a picture that has no room begins a line
  window.resize(290, 300);
  EXPECT_EQ(caret.block().layout()->lineCount(), 3);
  EXPECT_EQ(RichTextOf(*edit->document()).paragraphs.size(), 3U);
  window.Clear();
  window.AppendLogText("head");
  window.AppendLogText(QString("1.000     ").repeated(10));
  window.AppendLogText(QString("a long sentence ").repeated(20));
  EXPECT_GT(bar->maximum(), 0);
  for (int round = 0; round < 2; ++round) {
    QString kept;
    for (QTextBlock block = edit->document()->begin(); block.isValid(); block = block.next()) {
      kept += block.blockFormat().nonBreakableLines() ? '1' : '0';
    }
    EXPECT_EQ(kept.toStdString(), "0100") << round;
    EXPECT_TRUE(window.LoadRtf(window.ToRtf()));
  }
  edit->undo();
  EXPECT_TRUE(Text().startsWith("head\n1.000"));
}

TEST_F(LogWindowTest, ReadsBackItsRtfAndTakesOtherBytesAsText) {
  RichText sample = RichSample();
  EXPECT_TRUE(window.LoadRtf(WriteRtf(sample)));
  EXPECT_EQ(ReadRtf(window.ToRtf()).text, sample);
  window.AppendLogText("more");
  EXPECT_TRUE(Text().endsWith("\nmore\n"));
  EXPECT_FALSE(window.LoadRtf("no \xB1 rich text"));
  EXPECT_EQ(Text(), QString("no \u00B1 rich text\n"));
  edit->undo();  // would bring back a log of another experiment
  EXPECT_EQ(Text(), QString("no \u00B1 rich text\n"));
  EXPECT_TRUE(window.LoadRtf(""));
  EXPECT_EQ(Text(), "");
}

TEST_F(LogWindowTest, MenuFollowsSelectionAndCalculation) {
  EXPECT_EQ(Offered(), QStringList({"Paste", "Select All", "Change Font"}));
  Action("mnuRTBselectall")->trigger();
  EXPECT_FALSE(edit->textCursor().hasSelection());
  window.AppendLogText("abc");
  Action("mnuRTBselectall")->trigger();
  EXPECT_EQ(Offered().size(), 6);
  session.Calculating = true;
  EXPECT_EQ(Offered(), QStringList({"Copy", "Select All"}));
}

TEST_F(LogWindowTest, CutAndPasteKeepFormatsAndPictures) {
  const RichText sample = RichSample();
  window.LoadRtf(WriteRtf(sample));
  edit->selectAll();
  Action("mnuRTBcut")->trigger();
  EXPECT_EQ(Text(), "");
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(ReadRtf(data->data("text/rtf").toStdString()).text, sample);
  EXPECT_TRUE(data->hasHtml() && data->text().startsWith("plain"));
  Action("mnuRTBpaste")->trigger();
  EXPECT_EQ(RichTextOf(*edit->document()), sample);
  edit->undo();
  EXPECT_EQ(Text(), "");
  edit->redo();
  edit->selectAll();
  Action("mnuRTBdelete")->trigger();
  EXPECT_EQ(Text(), "");
}

TEST_F(LogWindowTest, PastesWhatOtherProgramsCopy) {
  auto* html = new QMimeData;
  html->setHtml("<p>one <b>two</b></p>");
  QGuiApplication::clipboard()->setMimeData(html);
  edit->paste();
  EXPECT_EQ(RichTextOf(*edit->document()).paragraphs.at(0).items,
            (std::vector<InlineItem>{TextRun{"one ", CharFormat()},
                                     TextRun{"two", Look("Courier New", 20, true)}}));
  window.Clear();
  QImage image(3, 2, QImage::Format_RGB32);
  image.fill(Qt::red);
  QGuiApplication::clipboard()->setImage(image);
  edit->paste();
  const RichText log = RichTextOf(*edit->document());
  EXPECT_EQ(std::get<Picture>(log.paragraphs.at(0).items.at(0)).pixelWidth, 3);
}

TEST_F(LogWindowTest, CannotBeChangedDuringACalculation) {
  window.AppendLogText("abc");
  QGuiApplication::clipboard()->setText("paste");
  const QSignalSpy clicks(&window, &LogWindow::Clicked);
  session.Calculating = true;
  QTest::keyClicks(edit, "typed");
  for (const auto key : {Qt::Key_Backspace, Qt::Key_Z, Qt::Key_V, Qt::Key_X}) {
    QTest::keyClick(edit, key, key == Qt::Key_Backspace ? Qt::NoModifier : Qt::ControlModifier);
  }
  EXPECT_EQ(Text(), "abc\n");
  EXPECT_EQ(clicks.count(), 0);
  QTest::mouseClick(edit->viewport(), Qt::LeftButton);
  QTest::mouseClick(edit->viewport(), Qt::RightButton);
  QTest::keyClick(edit, Qt::Key_Escape);
  EXPECT_EQ(clicks.count(), 3);
  window.MoveToEnd();
  window.AppendLogText("the fit goes on");
  session.Calculating = false;
  QTest::keyClicks(edit, "typed");
  EXPECT_EQ(Text(), "abc\nthe fit goes on\ntyped");
}

TEST_F(LogWindowTest, FontIsThatOfTheSelectionAndOfWhatComesNext) {
  window.AppendLogText("old");
  // A name that stands for another: the dialog starts from the other, the name stays.
  EXPECT_TRUE(QFontInfo(edit->font()).fixedPitch());
  dialogs.fonts = {std::nullopt};
  Action("mnuRTBfont")->trigger();
  EXPECT_EQ(dialogs.fontOffered.family(), QFontInfo(edit->font()).family());
  dialogs.fonts = {QFont(dialogs.fontOffered.family(), 10)};
  Action("mnuRTBfont")->trigger();
  EXPECT_EQ(edit->font().family(), "Courier New");
  dialogs.fonts = {QFont("DejaVu Sans", 14, QFont::Bold), std::nullopt};
  Action("mnuRTBfont")->trigger();
  Action("mnuRTBfont")->trigger();
  window.MoveToEnd();
  window.AppendLogText("new");
  const RichText log = RichTextOf(*edit->document());
  EXPECT_EQ(std::get<TextRun>(log.paragraphs[0].items.at(0)).format, CharFormat());
  EXPECT_EQ(std::get<TextRun>(log.paragraphs[1].items.at(0)).format, Look("DejaVu Sans", 28, true));
  RecordingHost host;
  window.SaveFont(host);
  LogWindow later(session);
  later.AppendLogText("later");
  EXPECT_EQ(RichTextOf(*later.Editor()->document()).paragraphs[0].markFormat,
            Look("DejaVu Sans", 28, true));
}

TEST_F(LogWindowTest, SavesOnceAndOnlyWhatChanged) {
  EXPECT_FALSE(window.SaveLog());
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "There is nothing more to save!");
  QTest::keyClicks(edit, "x");
  const auto file = folder.Write("log.rtf", "old");
  dialogs.files = {"", ToQString(file / "not a folder.rtf"), ToQString(file)};
  EXPECT_FALSE(window.SaveLog());  // cancel
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_FALSE(window.SaveLog());  // cannot be written
  EXPECT_EQ(dialogs.messages.size(), 2U);
  EXPECT_EQ(ReadText(file), "old");
  EXPECT_TRUE(session.Module.ExperimentOpen);
  EXPECT_TRUE(session.CurrentFolder.empty());
  EXPECT_TRUE(window.SaveLog());
  EXPECT_FALSE(session.Module.ExperimentOpen);
  EXPECT_EQ(session.CurrentFolder, folder.path());
  EXPECT_EQ(dialogs.requests[1].filter, "Rich Text File (*.rtf)");
  EXPECT_EQ(PlainText(ReadRtf(ReadText(file)).text), "x");
}
