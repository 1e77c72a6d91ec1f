// logFile: the editor of the log window.
#pragma once

#include <QTextEdit>
#include <functional>

inline constexpr int kTableColumns = 112;  // the widest report of a fit, and a little more

// Shows black on white, whatever the palette: the page that is saved and printed.
// Lines wrap at the right border of the window, but never before the columns that the tables of a
// report need; a narrower window scrolls sideways, which leaves the tables readable and spares a
// new layout of a long log at each resize.
class LogEdit : public QTextEdit {
  Q_OBJECT
 public:
  // While `locked` says so, the text can be looked at, selected and copied, but not changed.
  explicit LogEdit(std::function<bool()> locked, QWidget* parent = nullptr);

  QSize sizeHint() const override;

  // Lines of still wider tables, as that of many coefficients, are not broken in the paragraphs of
  // the positions `from` to `to`. What is saved and printed knows nothing of it.
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
  void changeEvent(QEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  void FollowLock();
  void FitWrapWidth();

  std::function<bool()> locked_;
};
