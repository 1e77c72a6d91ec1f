// logFile: the editor of the log window.
#pragma once

#include <QTextEdit>
#include <functional>

namespace quorvane {

inline constexpr int kTableColumns = 112;  // the widest report of a fit, and a little more

// Shows black on white, whatever the palette: the page that is saved and printed.
// Lines and pictures that follow each other wrap at the right border of the window. Those of tables
// do not: a window that is too narrow for one scrolls sideways, which leaves it readable.
class LogEdit : public QTextEdit {
  Q_OBJECT
 public:
  // While `locked` says so, the text can be looked at, selected and copied, but not changed.
  explicit LogEdit(std::function<bool()> locked, QWidget* parent = nullptr);

  QSize sizeHint() const override;

  // Of the paragraphs at the positions `from` to `to`, those that are lines of a table are not
  // broken. What is saved and printed knows nothing of it.
  void KeepTablesWhole(int from, int to);

 signals:
  void Clicked();  // any mouse button, or Esc
  void MenuWanted(const QPoint& globalPosition);

 protected:
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  void FollowLock();

  std::function<bool()> locked_;
};

}  // namespace quorvane
