// Faults caught here: a crash, an access outside of an array or a window that cannot be left, after
// any order of clicks, keys, entries, menus and files. A user without much aim.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <random>

#include <gtest/gtest.h>

#include "base/files.h"
#include "core/settings/settings_store.h"
#include "support/temp_folder.h"
#include "windows/commands/experiment_commands.h"
#include "windows/frame/main_window.h"
#include "windows/print/print_job.h"
#include "windows/session/dialogs.h"
#include "windows/session/session.h"

using namespace quorvane;

namespace {

namespace fs = std::filesystem;

class Chance {
 public:
  explicit Chance(unsigned seed) : generator_(seed) {}
  int Below(qsizetype count) {
    return static_cast<int>(generator_() % static_cast<unsigned>(std::max<qsizetype>(count, 1)));
  }
  bool OneIn(int count) { return Below(count) == 0; }
  template <class Items>
  auto Of(const Items& items) {
    return items[static_cast<decltype(std::size(items))>(
        Below(static_cast<qsizetype>(std::size(items))))];
  }
  QPoint PointIn(const QWidget& widget) { return {Below(widget.width()), Below(widget.height())}; }

 private:
  std::mt19937 generator_;
};

// Answers at random; stays in `folder`.
class RandomAnswers : public Dialogs {
 public:
  RandomAnswers(Chance& chance, fs::path folder) : chance_(chance), folder_(std::move(folder)) {
    for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
      if (entry.is_regular_file()) files_ << ToText(entry.path());
    }
  }
  void ShowMessage(QWidget*, const QString&, const QString&, MessageIcon) override {}
  bool AskYesNo(QWidget*, const QString&, const QString& text) override {
    return !text.contains("Exit") && chance_.OneIn(2);
  }
  DiscardChoice AskDiscard(QWidget*, const QString&, const QString& text) override {
    if (!text.contains("Exit") && chance_.OneIn(4)) return DiscardChoice::kSave;
    return AskYesNo(nullptr, {}, text) ? DiscardChoice::kYes : DiscardChoice::kNo;
  }
  WorkChoice OfferWork(QWidget*, const QString&, const QString&) override {
    return WorkChoice::kLater;
  }
  std::optional<QString> AskText(QWidget*, const QString&, const QString&,
                                 const QString& value) override {
    const QString answers[] = {"0.7", "1", "x", "", "-1", "1e308", value};
    return chance_.OneIn(4) ? std::optional<QString>() : chance_.Of(answers);
  }
  QString OpenFile(QWidget*, const FileRequest&) override {
    return chance_.OneIn(4) ? QString() : chance_.Of(files_);
  }
  QStringList OpenFiles(QWidget*, const FileRequest&) override {
    QStringList chosen;
    for (int k = chance_.Below(4); k > 0; --k) chosen << chance_.Of(files_);
    return chosen;
  }
  QString SaveFile(QWidget*, const FileRequest&) override {
    const char* names[] = {"a.exz", "a.rtf", "a.png", "a.pdf", "a.csv", "a.html", "a", "a.IP8"};
    return chance_.OneIn(4) ? QString() : ToText(folder_ / chance_.Of(names));
  }
  QString ChooseFolder(QWidget*, const QString&, const QString&) override {
    return chance_.OneIn(3) ? QString() : ToText(folder_);
  }
  std::optional<QColor> ChooseColor(QWidget*, const QColor& start) override { return start; }
  std::optional<QFont> ChooseFont(QWidget*, const QFont& start) override { return start; }
  bool AskPrinter(QWidget*, QPrinter&, const PrintJob&) override { return false; }

 private:
  static QString ToText(const fs::path& path) { return QString::fromStdString(PathText(path)); }

  Chance& chance_;
  fs::path folder_;
  QStringList files_;
};

class RandomUser {
 public:
  RandomUser(MainWindow& window, Session& session, Chance& chance)
      : window_(window), session_(session), chance_(chance) {}

  void Act(int steps) {
    left_ = steps;
    Next();
    while (left_ > 0) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QCoreApplication::processEvents();
  }

 private:
  static constexpr int kDeepest = 3;  // events inside of events

  // Boxes and calculations run their own loops, so that each step is an event of its own.
  void Next() {
    const bool ending = left_ <= 0;
    if (ending && depth_ == 0) return;
    QTimer::singleShot(0, &window_, [this] { Next(); });
    if (session_.Calculating && (ending || chance_.OneIn(30))) {
      return window_.findChild<QAction*>("cmdStop")->trigger();
    }
    if (ending || depth_ > kDeepest) return CloseBoxes();
    --left_;
    ++depth_;
    Step();
    --depth_;
  }

  static void CloseBoxes() {
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    if (QWidget* box = QApplication::activeModalWidget()) box->close();
  }

  void Step() {
    QWidget* box = QApplication::activeModalWidget();
    if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
      ChooseFrom(*menu);
    } else if (box == nullptr && chance_.OneIn(20)) {
      for (const Qt::Key key : {Qt::Key_F6, Qt::Key_F5}) QTest::keyClick(&window_, key);  // fits
    } else if (box == nullptr && chance_.OneIn(5)) {
      TriggerAction();
    } else {
      UseWidgetOf(box == nullptr ? window_ : *box);
    }
  }

  void ChooseFrom(QMenu& menu) {
    QList<QAction*> entries;
    for (QAction* entry : menu.actions()) {
      if (entry->isEnabled() && entry->menu() == nullptr) entries << entry;
    }
    const QPointer<QAction> entry = entries.isEmpty() ? nullptr : chance_.Of(entries);
    menu.close();
    if (entry != nullptr && !chance_.OneIn(3)) entry->trigger();
  }

  void TriggerAction() {
    QList<QAction*> actions;
    for (QAction* action : window_.findChildren<QAction*>()) {
      const bool usable = action->isEnabled() && action->isVisible() && action->menu() == nullptr;
      if (usable && action->objectName().startsWith("mnu")) actions << action;
    }
    if (!actions.isEmpty()) chance_.Of(actions)->trigger();
  }

  void UseWidgetOf(QWidget& top) {
    QList<QWidget*> widgets;
    for (QWidget* widget : top.findChildren<QWidget*>()) {
      if (widget->isVisible() && widget->isEnabled()) widgets << widget;
    }
    if (widgets.isEmpty()) return;
    QWidget* widget = chance_.Of(widgets);
    for (int k = 0; k < 3 && !widget->objectName().startsWith("cmd"); ++k) {  // they do the most
      widget = chance_.Of(widgets);
    }
    if (auto* box = qobject_cast<QLineEdit*>(widget); box != nullptr && !chance_.OneIn(3)) {
      TypeInto(*box);
    } else if (auto* list = qobject_cast<QComboBox*>(widget); list != nullptr) {
      list->setCurrentIndex(chance_.Below(list->count()));
    } else if (auto* tabs = qobject_cast<QTabBar*>(widget); tabs != nullptr) {
      const int tab = chance_.Below(tabs->count());
      if (tabs->isTabEnabled(tab)) tabs->setCurrentIndex(tab);
    } else {
      Touch(*widget);
    }
  }

  void TypeInto(QLineEdit& box) {
    const char* entries[] = {"0", "1",   "-1",   "1e-300", "1E308", "abc", "",
                             "2", "0.5", "7000", "nan",    "inf",   "6.5", "1e5"};
    box.setFocus();
    box.setText(chance_.Of(entries));
    QTest::keyClick(&box, chance_.OneIn(2) ? Qt::Key_Return : Qt::Key_Tab);
  }

  void Touch(QWidget& widget) {
    const QPointer<QWidget> alive(&widget);
    const QPoint place = chance_.PointIn(widget);
    const Qt::KeyboardModifiers keys = !chance_.OneIn(6)  ? Qt::NoModifier
                                       : chance_.OneIn(2) ? Qt::ControlModifier
                                                          : Qt::ShiftModifier;
    switch (chance_.Below(7)) {
      case 0: {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
        QApplication::sendEvent(&widget, &event);
        break;
      }
      case 1:
        QTest::mouseDClick(&widget, Qt::LeftButton, keys, place);
        break;
      case 2: {
        const Qt::Key pressed[] = {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Delete, Qt::Key_Space,
                                   Qt::Key_Up,     Qt::Key_Down,   Qt::Key_R,      Qt::Key_F5,
                                   Qt::Key_F6,     Qt::Key_Z,      Qt::Key_Menu};
        QTest::keyClick(&widget, chance_.Of(pressed), keys);
        break;
      }
      case 3:
        Drag(alive, keys);
        break;
      default:
        QTest::mouseClick(&widget, Qt::LeftButton, keys, place);
    }
  }

  void Drag(const QPointer<QWidget>& widget, Qt::KeyboardModifiers keys) {
    QTest::mousePress(widget, Qt::LeftButton, keys, chance_.PointIn(*widget));
    if (widget == nullptr) return;
    const QPoint to = chance_.PointIn(*widget);
    QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     keys);
    QApplication::sendEvent(widget, &move);
    if (widget != nullptr) QTest::mouseRelease(widget, Qt::LeftButton, keys, to);
  }

  MainWindow& window_;
  Session& session_;
  Chance& chance_;
  int left_ = 0;
  int depth_ = 0;
};

class RandomUserTest : public testing::TestWithParam<unsigned> {};

}  // namespace

TEST_P(RandomUserTest, BreaksNothing) {
  const TempFolder folder;
  fs::copy(fs::path(QUORVANE_SOURCE_DIR) / "examples", folder / "examples",
           fs::copy_options::recursive);
  IniSettings settings{folder / "quorvane.ini"};
  Chance chance(GetParam());
  RandomAnswers answers(chance, folder / "examples");
  Session session{settings, answers, folder.path()};
  session.ProgramFolder = folder.path();
  session.CurrentFolder = folder / "examples" / "monomer-dimer";
  MainWindow window(session);
  window.show();
  window.KeepUnsavedWork(folder / "unsaved", std::chrono::milliseconds(500));
  if (GetParam() % 2 == 0) {
    window.Experiments().LoadAsked(
        QString::fromStdString(PathText(session.CurrentFolder / "experiment.exz")));
  }
  RandomUser(window, session, chance).Act(2000);
  EXPECT_FALSE(session.Calculating);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomUserTest, testing::Range(1U, 5U));
