#include "windows/controls/row_keys.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <algorithm>
#include <cstddef>
#include <utility>

namespace quorvane {

RowKeys::RowKeys(QScrollArea& view) : QObject(&view), view_(view) {}

void RowKeys::AddRow(std::vector<QWidget*> controls) {
  for (QWidget* control : controls) control->installEventFilter(this);
  rows_.push_back(std::move(controls));
}

void RowKeys::RemoveLastRow() {
  rows_.pop_back();
}

bool RowKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
  const auto* pressed = static_cast<QKeyEvent*>(event);
  const bool plain = (pressed->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  const int by = pressed->key() == Qt::Key_Down ? 1 : pressed->key() == Qt::Key_Up ? -1 : 0;
  if (!plain || by == 0) return QObject::eventFilter(watched, event);
  Step(watched, by);
  return true;
}

void RowKeys::Step(const QObject* from, int by) {
  for (auto row = rows_.begin(); row != rows_.end(); ++row) {
    const auto control = std::find(row->begin(), row->end(), from);
    if (control == row->end()) continue;
    const auto column = static_cast<std::size_t>(control - row->begin());
    const auto count = static_cast<std::ptrdiff_t>(rows_.size());
    for (std::ptrdiff_t to = row - rows_.begin() + by; to >= 0 && to < count; to += by) {
      QWidget* next = rows_[static_cast<std::size_t>(to)][column];
      if (!next->isVisible() || !next->isEnabled()) continue;
      next->setFocus(Qt::TabFocusReason);
      view_.ensureWidgetVisible(next);
      return;
    }
    return;
  }
}

}  // namespace quorvane
