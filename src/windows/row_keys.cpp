#include "windows/row_keys.h"

#include <QKeyEvent>
#include <QScrollArea>

#include "windows/control_names.h"

RowKeys::RowKeys(QScrollArea& rows) : QObject(&rows), rows_(rows) {}

void RowKeys::Watch(QWidget* control) {
  control->installEventFilter(this);
}

bool RowKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
  const auto* pressed = static_cast<QKeyEvent*>(event);
  const bool plain = (pressed->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  const int by = pressed->key() == Qt::Key_Down ? 1 : pressed->key() == Qt::Key_Up ? -1 : 0;
  if (!plain || by == 0) return QObject::eventFilter(watched, event);
  Step(watched->objectName(), by);
  return true;
}

void RowKeys::Step(const QString& name, int by) {
  const qsizetype bracket = name.lastIndexOf('(');
  const QByteArray array = name.left(bracket).toLatin1();
  int row = name.mid(bracket + 1).chopped(1).toInt() + by;
  auto* next = rows_.findChild<QWidget*>(ElementName(array.constData(), row));
  while (next != nullptr && !(next->isVisible() && next->isEnabled())) {
    row += by;
    next = rows_.findChild<QWidget*>(ElementName(array.constData(), row));
  }
  if (next == nullptr) return;
  next->setFocus(Qt::TabFocusReason);
  rows_.ensureWidgetVisible(next);
}
