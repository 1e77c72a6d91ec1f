// Faults caught here: a change that is not noticed, a copy of the log that misses an edit, work
// that is offered though it was saved or given up, or is not offered though it was lost, a program
// that takes the place of another one, two programs that overwrite each other's archive unasked.
#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QTextDocument>
#include <cstring>
#include <functional>
#include <random>

#include "archive/experiment_session.h"
#include "core/settings/recent_files.h"
#include "rtf/picture_file.h"
#include "rtf/rtf_writer.h"
#include "windows/log/log_copy.h"
#include "windows/log/log_window.h"
#include "windows/main_window_fixture.h"
#include "windows/session/autosave.h"

using namespace quorvane;

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kSoon(5);
constexpr milliseconds kNever(3600 * 1000);
constexpr int kPatience = 20000;  // ms; a write takes a few

const std::filesystem::path kArchive = kExamples / "monomer-dimer" / "experiment.exz";

}  // namespace

class AutosaveTest : public MainWindowTest {
 protected:
  AutosaveTest() {
    session.LockArchives = true;
    std::filesystem::copy_file(kArchive, archive);
  }

  void Keep(milliseconds interval) { window->KeepUnsavedWork(unsaved, interval); }
  void Load() { window->Experiments().Load(ToQString(archive)); }

  Autosave& Saver() { return *window->findChild<Autosave*>(); }

  // Lets `change` happen and waits until it is kept.
  template <class Change>
  void ChangeAndWait(Change&& change) {
    QSignalSpy kept(&Saver(), &Autosave::Kept);
    change();
    EXPECT_TRUE(kept.count() > 0 || kept.wait(kPatience));
  }

  // The end of the program without a word, and its next start; nothing of the session is left.
  void CrashAndStart() {
    window.reset();
    session.Module = {};
    dialogs.questions.clear();
    dialogs.messages.clear();
    Start();
  }

  std::size_t CountKept() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(unsaved)) {
      if (entry.path().extension() == ".exz") ++count;
    }
    return count;
  }

  std::filesystem::path archive = folder / "work.exz";
  std::filesystem::path unsaved = folder / "data" / "unsaved";
};

TEST_F(AutosaveTest, EveryKindOfChangeIsKeptAndOnlyChangesAre) {
  Load();
  Keep(kNever);
  Saver().Keep();
  EXPECT_EQ(CountKept(), 0U) << "nothing has changed";
  QuorvaneModule& module = session.Module;
  const auto read = [this] {
    return ReadExperimentFile(unsaved / "1" / "experiment.exz").experiment;
  };
  const std::vector<std::function<void()>> changes = {
      [&] { module.FitPage.ModelMW += 1e-9; },
      [&] { module.FitPage.ModelIndex = 3.0; },
      [&] { Find<QComboBox>("cmbModel")->setCurrentIndex(4); },
      [&] { module.Store.Datasets.back().Spare.back() = 1.0; },
      [&] {  // neighbours, by their signs only
        module.Store.Datasets[0].Err[20] *= -1.0;
        module.Store.Datasets[0].Err[21] *= -1.0;
      },
      [&] { module.Store.Datasets.pop_back(); },
      [&] { module.GraphStreams.pop_back(); },
      [&] { Find<QTextEdit>("logFile")->append("a remark"); },
      [&] { Find<QTextEdit>("logFile")->undo(); }};
  for (std::size_t k = 0; k < changes.size(); ++k) {
    changes[k]();
    ChangeAndWait([this] { Saver().Keep(); });
    const Experiment kept = read();
    EXPECT_EQ(kept.FitPage.ModelMW, module.FitPage.ModelMW) << k;
    EXPECT_EQ(kept.FitPage.ModelIndex, Find<QComboBox>("cmbModel")->currentIndex()) << k;
    EXPECT_EQ(std::memcmp(kept.Datasets.data(), module.Store.Datasets.data(),
                          kept.Datasets.size() * sizeof(Dataset)),
              0)
        << k;
    EXPECT_EQ(kept.Datasets.size(), module.Store.Datasets.size()) << k;
    EXPECT_EQ(kept.GraphStreams, module.GraphStreams) << k;
    EXPECT_EQ(kept.log, window->findChild<LogWindow*>("frmDocument")->ToRtf()) << k;
  }
}

TEST_F(AutosaveTest, AFitIsPrecededByItsOwnAndTheTimerDoesTheRest) {
  Load();
  Keep(kNever);
  Click("cmdSetFit");
  session.Module.FitPage.ModelMW = 8000.0;
  ChangeAndWait([this] { Click("cmdFitMe"); });
  const auto kept = ReadExperimentFile(unsaved / "1" / "experiment.exz").experiment;
  EXPECT_EQ(kept.FitPage.ModelMW, 8000.0);
  EXPECT_NE(session.Module.FitPage.ModelMW, 8000.0);
  CrashAndStart();
  dialogs.works = {WorkChoice::kDelete};
  Keep(kSoon);
  ChangeAndWait([this] { session.Module.FitPage.ModelMW = 1.0; });
}

TEST_F(AutosaveTest, AfterACrashTheWorkIsOfferedAndComesBackWhole) {
  Load();
  Keep(kNever);
  Find<QTextEdit>("logFile")->append("the last remark");
  session.Module.Store.Datasets.pop_back();
  ChangeAndWait([this] { Saver().Keep(); });
  const QString log = LogText();
  const QuorvaneModule lost = session.Module;
  CrashAndStart();
  dialogs.works = {WorkChoice::kOpen};
  const auto recent = RecentFiles(settings);
  Keep(kNever);
  ASSERT_EQ(dialogs.questions.size(), 1U);
  const QString offer = dialogs.questions[0].text;
  for (const char* part : {"8 datasets, model Monomer-Nmer\n", "9 graphs\n",
                           "lines with 9 pictures", "As it was on 20", "Folder "}) {
    EXPECT_TRUE(offer.contains(part)) << part << " in " << offer.toStdString();
  }
  EXPECT_EQ(session.Module.Store.NumDatasets(), 8);
  EXPECT_EQ(session.Module.FitPage.ModelMW, lost.FitPage.ModelMW);
  EXPECT_EQ(session.Module.GraphStreams, lost.GraphStreams);
  EXPECT_TRUE(LogText().startsWith(log)) << "goes on where it ended";
  EXPECT_EQ(session.CurrentFolder, folder.path());
  EXPECT_EQ(RecentFiles(settings), recent);
  EXPECT_TRUE(session.Module.ExperimentOpen);
  window->Experiments().OpenArgument(ToQString(archive));
  EXPECT_EQ(dialogs.messages.size(), 1U) << "the file that the program was started with waits";
  EXPECT_EQ(session.Module.Store.NumDatasets(), 8);
  for (const WorkChoice choice : {WorkChoice::kLater, WorkChoice::kDelete}) {
    CrashAndStart();  // it stays until it is saved or given up
    dialogs.works = {choice};
    Keep(kNever);
    EXPECT_EQ(dialogs.questions.size(), 1U);
    EXPECT_EQ(CountKept(), choice == WorkChoice::kLater ? 1U : 0U);
    EXPECT_EQ(session.Module.Store.NumDatasets(), 0);
  }
}

TEST_F(AutosaveTest, WhatIsSavedOrGivenUpIsNotOffered) {
  const std::vector<std::function<void()>> ends = {
      [this] {
        dialogs.files = {ToQString(folder / "saved.exz")};
        Trigger("mnuFileSave");
      },
      [this] {
        dialogs.yesNo = {true};
        Trigger("mnuFileNew");
      },
      [this] { Load(); },
      [this] {
        dialogs.yesNo = {true};
        window->close();
      }};
  for (std::size_t k = 0; k < ends.size(); ++k) {
    Keep(kNever);
    EXPECT_TRUE(dialogs.questions.empty()) << k;
    Load();
    session.Module.FitPage.ModelMW = 1.0;
    ChangeAndWait([this] { Saver().Keep(); });
    EXPECT_EQ(CountKept(), 1U) << k;
    session.Module.FitPage.ModelMW = 2.0;
    Saver().Keep();  // still under way when the end comes
    ends[k]();
    CrashAndStart();
    EXPECT_EQ(CountKept(), 0U) << k;
  }
}

TEST_F(AutosaveTest, ProgramsKeepApartAndDamagedWorkIsSetAside) {
  Load();
  Keep(kNever);
  session.Module.FitPage.ModelMW = 1.0;
  ChangeAndWait([this] { Saver().Keep(); });
  {
    Session other(settings, dialogs, folder.path());
    MainWindow second(other);
    second.KeepUnsavedWork(unsaved, kNever);
    EXPECT_TRUE(dialogs.questions.empty()) << "the first one is alive";
    other.Module.FitPage.ModelMW = 2.0;
    auto& saver = *second.findChild<Autosave*>();
    QSignalSpy kept(&saver, &Autosave::Kept);
    saver.Keep();
    EXPECT_TRUE(kept.wait(kPatience));
    EXPECT_EQ(CountKept(), 2U);
  }
  CrashAndStart();
  std::filesystem::resize_file(unsaved / "1" / "experiment.exz", 1000);
  dialogs.works = {WorkChoice::kOpen};
  Keep(kNever);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(dialogs.messages[0].text.contains("damaged-1.exz"));
  EXPECT_TRUE(std::filesystem::exists(unsaved / "damaged-1.exz"));
  EXPECT_EQ(session.Module.FitPage.ModelMW, 2.0);
}

TEST_F(AutosaveTest, AFolderThatCannotBeUsedIsToldAndTriedAgain) {
  folder.Write("data", "a file");
  Keep(kNever);
  EXPECT_TRUE(Find<QLabel>("sbStatusBar")->text().startsWith("Unsaved work is not kept: "));
  session.Module.FitPage.ModelMW = 1.0;
  Saver().Keep();
  for (const auto& gone : {folder / "data", unsaved}) {
    std::filesystem::remove_all(gone);
    session.Module.FitPage.ModelMW += 1.0;
    ChangeAndWait([this] { Saver().Keep(); });
    EXPECT_EQ(CountKept(), 1U) << gone;
    EXPECT_TRUE(UnsavedWork::Abandoned(unsaved).empty()) << gone;
  }
  dialogs.yesNo = {true};
  window->close();
  EXPECT_EQ(CountKept(), 0U);
}

TEST_F(AutosaveTest, AnArchiveThatIsOpenElsewhereIsNotOpenedOrReplacedUnasked) {
  const auto other = std::make_unique<FileLock>(LockArchive(archive));
  ASSERT_TRUE(other->Held());
  dialogs.yesNo = {false, true};
  Load();
  ASSERT_EQ(dialogs.questions.size(), 1U);
  EXPECT_TRUE(dialogs.questions[0].text.contains(" is open in another Quorvane:\nprocess "));
  EXPECT_EQ(session.Module.Store.NumDatasets(), 0);
  Load();
  EXPECT_EQ(session.Module.Store.NumDatasets(), 9);
  const std::string before = ReadText(archive);
  session.Module.FitPage.ModelMW = 1.0;
  dialogs.files = {ToQString(archive), ToQString(folder / "copy.exz"), ToQString(archive)};
  dialogs.yesNo = {false, true};
  Trigger("mnuFileSave");
  EXPECT_EQ(ReadText(archive), before);
  Trigger("mnuFileSave");
  EXPECT_FALSE(LockArchive(folder / "copy.exz").Held()) << "open here";
  Trigger("mnuFileSave");
  EXPECT_NE(ReadText(archive), before);
  EXPECT_TRUE(LockArchive(folder / "copy.exz").Held()) << "no longer";
  dialogs.yesNo = {};
  window->Experiments().Load(ToQString(folder / "copy.exz"));
  window->Experiments().Load(ToQString(folder / "copy.exz"));  // its own lock asks nothing
}

namespace {

// One of the ways in which a log changes, at `cursor`.
void Edit(QTextDocument& document, QTextCursor& cursor, const std::function<int(int)>& below) {
  QTextCharFormat bold;
  bold.setFontWeight(QFont::Bold);
  QTextBlockFormat shape;
  shape.setLeftMargin(below(100));
  switch (below(8)) {
    case 0:
      cursor.insertText("one\ntwo\nthree");
      break;
    case 1:
      cursor.mergeCharFormat(bold);
      break;
    case 2:
      cursor.mergeBlockFormat(shape);
      break;
    case 3:
      cursor.insertBlock();
      break;
    case 4:
      cursor.deleteChar();
      break;
    case 5:
      document.undo();
      break;
    case 6:
      document.setDefaultFont(QFont("Liberation Mono", 8 + below(5)));
      break;
    default:
      cursor.beginEditBlock();  // two places at once
      cursor.insertText("x");
      cursor.movePosition(QTextCursor::Start);
      cursor.insertImage("none.png");
      cursor.endEditBlock();
  }
}

}  // namespace

TEST(DocumentReader, FollowsEveryEdit) {
  QTextEdit edit;
  QTextDocument& document = *edit.document();
  DocumentReader reader(document);
  std::string png =
      ReadText(std::filesystem::path(QUORVANE_SOURCE_DIR) / "docs" / "images" / "about.png");
  std::mt19937 random(7);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 400; ++round) {
    QTextCursor cursor(&document);
    cursor.setPosition(below(document.characterCount()));
    if (round % 3 == 0)
      cursor.setPosition(below(document.characterCount()), QTextCursor::KeepAnchor);
    Edit(document, cursor, below);
    if (round % 40 == 0) InsertPicture(PictureFromFile(png), cursor);
    if (round % 2 == 0) reader.Read(milliseconds(round % 5));
    ASSERT_EQ(WriteRtf(RichTextOf(reader.Copy())), WriteRtf(RichTextOf(document))) << round;
  }
}
