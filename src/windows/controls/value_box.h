// An entry box that checks its text when it is left.
#pragma once

#include <QLineEdit>
#include <functional>

namespace quorvane {

class ValueBox : public QLineEdit {
  Q_OBJECT
 public:
  // Takes the text of the box. False if it was refused: the message has been shown and the box
  // holds the old text again.
  using Store = std::function<bool(const QString& text)>;

  explicit ValueBox(QWidget* parent = nullptr);
  void SetStore(Store store) { store_ = std::move(store); }

  // Shows a stored value; leaving the box without a change stores nothing, so that digits which the
  // text does not show are kept.
  void ShowStored(const QString& text);

  // Whether the text is another than the one that was shown last.
  bool IsChanged() const { return text() != shown_; }

  // Stores a changed text now. False if it was refused; then the focus stays in the box.
  bool Commit();

 signals:
  // The left button or Return was pressed with Ctrl held, and the text, if changed, was stored.
  void CtrlClicked();
  // The right button was released over the box, or the menu key pressed in it.
  void RightReleased();
  void DoubleClicked();

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void ComeIntoSight();

  Store store_;
  QString shown_;
  bool committing_ = false;
};

}  // namespace quorvane
