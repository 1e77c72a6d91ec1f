#include "windows/controls/child_area.h"

#include <QEvent>
#include <QMdiSubWindow>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>

namespace quorvane {

namespace {

bool IsAway(const QMdiSubWindow& child) {
  return child.isMaximized() || child.isMinimized();
}

}  // namespace

ChildArea::ChildArea(QWidget* parent) : QMdiArea(parent) {
  // The frame fits a small screen even if the children do not; they can be scrolled then.
  setMinimumSize(320, 240);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

QMdiSubWindow* ChildArea::AddChild(QWidget* widget) {
  QMdiSubWindow* child = addSubWindow(widget);
  child->setAttribute(Qt::WA_DeleteOnClose, false);
  child->installEventFilter(this);
  shares_.remove(child);  // of one that is gone
  return child;
}

QRect ChildArea::Room() const {
  return {QPoint(), maximumViewportSize()};
}

void ChildArea::Remember(const QMdiSubWindow& child) {
  if (room_.isEmpty()) return;
  const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
  const QRectF place = child.geometry().translated(scrolled);
  const double width = room_.width();
  const double height = room_.height();
  shares_[&child].place = {place.x() / width, place.y() / height, place.width() / width,
                           place.height() / height};
}

// Edges rather than sizes are rounded: neighbours stay neighbours.
void ChildArea::Place(QMdiSubWindow& child) {
  const QRectF& share = shares_[&child].place;
  if (share.isEmpty() || room_.isEmpty()) return;
  const QScopedValueRollback<bool> placing(placing_, true);
  const QPoint corner(qRound(share.left() * room_.width()), qRound(share.top() * room_.height()));
  const QPoint end(qRound(share.right() * room_.width()), qRound(share.bottom() * room_.height()));
  const QSize size = QSize(end.x() - corner.x(), end.y() - corner.y());
  child.setGeometry({corner, size.expandedTo(child.minimumSizeHint())});
}

void ChildArea::resizeEvent(QResizeEvent* event) {
  {
    const QScopedValueRollback<bool> placing(placing_, true);
    QMdiArea::resizeEvent(event);
  }
  if (Room().size() == room_) return;  // only the bars came or went
  horizontalScrollBar()->setValue(0);
  verticalScrollBar()->setValue(0);
  room_ = Room().size();
  for (QMdiSubWindow* child : subWindowList()) {
    if (child->isVisible() && !IsAway(*child)) Place(*child);
  }
}

bool ChildArea::eventFilter(QObject* watched, QEvent* event) {
  auto* child = qobject_cast<QMdiSubWindow*>(watched);
  const bool moved = event->type() == QEvent::Move || event->type() == QEvent::Resize ||
                     event->type() == QEvent::Show;
  if (child == nullptr || !moved || placing_) return QMdiArea::eventFilter(watched, event);
  Share& share = shares_[child];
  if (IsAway(*child)) {
    share.away = true;
  } else if (share.away) {  // it comes back with the size that it had in the room of then
    QMetaObject::invokeMethod(
        child,
        [this, child] {
          shares_[child].away = false;
          Place(*child);
        },
        Qt::QueuedConnection);
  } else if (child->isVisible()) {
    Remember(*child);
  }
  return QMdiArea::eventFilter(watched, event);
}

QList<QMdiSubWindow*> ChildArea::Shown() const {
  QList<QMdiSubWindow*> shown;
  for (QMdiSubWindow* child : subWindowList()) {
    if (child->isVisible() && !child->isMinimized()) shown.push_back(child);
  }
  return shown;
}

void ChildArea::Grow(QMdiSubWindow& child, QSize by) {
  const QRect place = child.geometry();
  int right = by.width();
  int down = std::clamp(Room().bottom() - place.bottom(), 0, by.height());
  QList<QMdiSubWindow*> neighbours;
  for (QMdiSubWindow* other : Shown()) {
    const QRect its = other->geometry();
    if (other == &child || IsAway(*other)) continue;
    if (its.top() == place.bottom() + 1) down = 0;
    if (its.left() != place.right() + 1) continue;
    neighbours.push_back(other);
    right = std::min(right, its.width() - other->minimumSizeHint().width());
  }
  if (neighbours.isEmpty()) right = std::min(right, Room().right() - place.right());
  right = std::max(right, 0);
  for (QMdiSubWindow* other : neighbours) {
    other->setGeometry(other->geometry().adjusted(right, 0, 0, 0));
  }
  child.setGeometry(place.adjusted(0, 0, right, down));
}

void ChildArea::Tile(Qt::Orientation orientation) {
  const QList<QMdiSubWindow*> shown = Shown();
  const bool rows = orientation == Qt::Horizontal;
  const int count = static_cast<int>(shown.size());
  int left = count;
  int from = 0;
  for (QMdiSubWindow* child : shown) {
    child->showNormal();
    const QSize least = child->minimumSizeHint();
    const int whole = rows ? Room().height() : Room().width();
    const int share = std::max(0, whole - from) / left--;
    if (rows) {
      const int height = std::max(share, least.height());
      child->setGeometry(0, from, std::max(Room().width(), least.width()), height);
      from += height;
    } else {
      const int width = std::max(share, least.width());
      child->setGeometry(from, 0, width, std::max(Room().height(), least.height()));
      from += width;
    }
  }
}

void ChildArea::Cascade() {
  const int step = style()->pixelMetric(QStyle::PM_TitleBarHeight) + 4;
  QPoint corner;
  for (QMdiSubWindow* child : Shown()) {
    child->showNormal();
    child->setGeometry({corner, (Room().size() * 3 / 4).expandedTo(child->minimumSizeHint())});
    child->raise();
    corner += QPoint(step, step);
  }
}

void ChildArea::ArrangeIcons() {
  int left = 0;
  for (QMdiSubWindow* child : subWindowList()) {
    if (!child->isMinimized()) continue;
    child->move(left, Room().height() - child->height());
    left += child->width();
  }
}

}  // namespace quorvane
