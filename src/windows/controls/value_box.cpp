#include "windows/controls/value_box.h"

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollArea>
#include <QTabWidget>
#include <QTimer>

namespace quorvane {

ValueBox::ValueBox(QWidget* parent) : QLineEdit(parent) {}

void ValueBox::ShowStored(const QString& text) {
  shown_ = text;
  setText(text);
}

bool ValueBox::Commit() {
  if (committing_ || !store_ || text() == shown_) return true;
  committing_ = true;
  const QPointer<ValueBox> self(this);
  const bool taken = store_(text());
  if (!self) return taken;  // the message's event loop closed the window
  committing_ = false;
  if (!taken) {
    ComeIntoSight();
    setFocus(Qt::OtherFocusReason);
    selectAll();
  }
  return taken;
}

// The refused box may have been left for another tab, or scrolled away.
void ValueBox::ComeIntoSight() {
  for (QWidget* above = parentWidget(); above != nullptr; above = above->parentWidget()) {
    if (auto* area = qobject_cast<QScrollArea*>(above)) area->ensureWidgetVisible(this);
    auto* tabs = qobject_cast<QTabWidget*>(above);
    if (tabs == nullptr) continue;
    for (int k = 0; k < tabs->count(); ++k) {
      if (tabs->widget(k)->isAncestorOf(this)) tabs->setCurrentIndex(k);
    }
  }
}

void ValueBox::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason) {
    return;
  }
  // A click would put the caret where it fell after this event.
  QTimer::singleShot(0, this, [this] { selectAll(); });
}

void ValueBox::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason) {
    return;
  }
  // A message box inside a focus event would confuse the focus of the widgets.
  QTimer::singleShot(0, this, [this] {
    if (!hasFocus()) Commit();
  });
}

void ValueBox::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && event->modifiers().testFlag(Qt::ControlModifier)) {
    setFocus(Qt::MouseFocusReason);
    if (Commit()) emit CtrlClicked();
    return;
  }
  QLineEdit::mousePressEvent(event);
}

void ValueBox::mouseReleaseEvent(QMouseEvent* event) {
  QLineEdit::mouseReleaseEvent(event);
  if (event->button() == Qt::RightButton) emit RightReleased();
}

void ValueBox::mouseDoubleClickEvent(QMouseEvent* event) {
  QLineEdit::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton) emit DoubleClicked();
}

void ValueBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (!Commit()) return;
    selectAll();
    if (event->modifiers().testFlag(Qt::ControlModifier)) emit CtrlClicked();
    return;
  }
  if (event->key() == Qt::Key_Escape && text() != shown_) {
    ShowStored(shown_);
    selectAll();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

void ValueBox::contextMenuEvent(QContextMenuEvent* event) {
  if (receivers(SIGNAL(RightReleased())) == 0) {
    QLineEdit::contextMenuEvent(event);
  } else if (event->reason() == QContextMenuEvent::Keyboard) {
    emit RightReleased();
  }
}

}  // namespace quorvane
