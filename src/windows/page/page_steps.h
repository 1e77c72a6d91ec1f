// Ctrl+Z on the parameter page: its values, checks and links step back and forth.
#pragma once

#include <QTimer>
#include <QWidget>

#include "core/page/page_history.h"

class QAction;
class QToolButton;

namespace quorvane {

struct Session;

// Two buttons and the keys of `page`, whose boxes it looks after: both outlive this.
class PageSteps : public QWidget {
  Q_OBJECT
 public:
  PageSteps(Session& session, QWidget& page);
  ~PageSteps() override;

  // The page was set up: the steps begin there.
  void Begin();

  // What has changed since the last call is one step. Gestures of the user call it by themselves.
  void Note();

  // In the order of the focus.
  QToolButton* UndoButton() const { return undoButton_; }
  QToolButton* RedoButton() const { return redoButton_; }

 signals:
  void Stepped();  // the session's page is another one

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  using Step = void (PageHistory::*)(QuorvaneModule&);
  QAction* MakeAction(const char* name, const QList<QKeySequence>& keys, Step step);
  QToolButton* MakeButton(const char* name, const QString& caption, const QString& toolTip,
                          QAction& action);
  bool IsIdle() const;
  void Go(Step step);
  void UpdateActions();

  Session& session_;
  QWidget& page_;
  PageHistory history_;
  QTimer soon_;
  QAction* undo_;
  QAction* redo_;
  QToolButton* undoButton_;
  QToolButton* redoButton_;
};

}  // namespace quorvane
