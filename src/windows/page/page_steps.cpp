#include "windows/page/page_steps.h"

#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>

#include "windows/controls/control_names.h"
#include "windows/controls/value_box.h"
#include "windows/session/session.h"

namespace quorvane {

PageSteps::PageSteps(Session& session, QWidget& page)
    : session_(session),
      page_(page),
      undo_(MakeAction("UndoPage", {Qt::CTRL | Qt::Key_Z}, &PageHistory::Undo)),
      redo_(MakeAction("RedoPage", {Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z},
                       &PageHistory::Redo)),
      undoButton_(MakeButton("cmdUndoPage", tr("Undo"),
                             tr("Take the last change of this page back (Ctrl+Z)"), *undo_)),
      redoButton_(MakeButton("cmdRedoPage", tr("Redo"), tr("Make it again (Ctrl+Y)"), *redo_)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(undoButton_);
  layout->addWidget(redoButton_);
  soon_.setSingleShot(true);
  connect(&soon_, &QTimer::timeout, this, &PageSteps::Note);
  qApp->installEventFilter(this);
  UpdateActions();
}

PageSteps::~PageSteps() {
  qApp->removeEventFilter(this);
}

QAction* PageSteps::MakeAction(const char* name, const QList<QKeySequence>& keys, Step step) {
  auto* action = Named(new QAction(&page_), name);
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  page_.addAction(action);
  connect(action, &QAction::triggered, this, [this, step] { Go(step); });
  return action;
}

QToolButton* PageSteps::MakeButton(const char* name, const QString& caption, const QString& toolTip,
                                   QAction& action) {
  auto* button = Named(new QToolButton, name);
  button->setText(caption);
  button->setToolTip(toolTip);
  button->setFocusPolicy(Qt::StrongFocus);
  connect(button, &QToolButton::clicked, &action, &QAction::trigger);
  return button;
}

void PageSteps::Begin() {
  history_.Begin(session_.Module);
  UpdateActions();
}

bool PageSteps::IsIdle() const {
  return !session_.Calculating && page_.isVisible();
}

void PageSteps::Note() {
  if (session_.Calculating) return;
  history_.Note(session_.Module);
  UpdateActions();
}

void PageSteps::Go(Step step) {
  if (!IsIdle() || !session_.CommitPending()) return;
  (history_.*step)(session_.Module);
  UpdateActions();
  emit Stepped();
}

void PageSteps::UpdateActions() {
  undo_->setEnabled(history_.CanUndo());
  redo_->setEnabled(history_.CanRedo());
  undoButton_->setEnabled(undo_->isEnabled());
  redoButton_->setEnabled(redo_->isEnabled());
}

// Boxes, checks, menus and other windows change the page: each gesture ends in one of these events.
// A box in which nothing was typed leaves the keys to the page; a changed one undoes its typing.
bool PageSteps::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonRelease:
    case QEvent::KeyRelease:
    case QEvent::FocusOut:
      if (IsIdle() && !soon_.isActive()) soon_.start(0);
      return false;
    case QEvent::ShortcutOverride: {
      const auto* box = qobject_cast<ValueBox*>(watched);
      const auto* key = static_cast<QKeyEvent*>(event);
      return box != nullptr && !box->IsChanged() && page_.isAncestorOf(box) &&
             (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo) ||
              key->keyCombination() == (Qt::CTRL | Qt::Key_Y));
    }
    default:
      return false;
  }
}

}  // namespace quorvane
