#include "windows/controls/page_controls.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include "windows/controls/value_box.h"

namespace quorvane {

void PageCheckBox::ShowState(CheckState state) {
  setTristate(state == CheckState::kGrey);
  setCheckState(state == CheckState::kGrey      ? Qt::PartiallyChecked
                : state == CheckState::kChecked ? Qt::Checked
                                                : Qt::Unchecked);
}

void PageCheckBox::mouseReleaseEvent(QMouseEvent* event) {
  const bool gesture = event->button() == Qt::LeftButton &&
                       event->modifiers().testFlag(Qt::ControlModifier) &&
                       rect().contains(event->position().toPoint());
  QCheckBox::mouseReleaseEvent(event);
  if (gesture) emit CtrlReleased();
}

void PageCheckBox::keyReleaseEvent(QKeyEvent* event) {
  const bool gesture = event->key() == Qt::Key_Space && !event->isAutoRepeat() && isDown() &&
                       event->modifiers().testFlag(Qt::ControlModifier);
  QCheckBox::keyReleaseEvent(event);
  if (gesture) emit CtrlReleased();
}

void ClickLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
    emit Clicked(event->modifiers());
  }
}

void ClickLabel::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
    emit Clicked(event->modifiers());
  } else {
    QLabel::keyPressEvent(event);
  }
}

void ClickLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawFrame(&painter);
  QPalette active = palette();
  active.setCurrentColorGroup(QPalette::Active);
  style()->drawItemText(&painter, contentsRect(), int(alignment()), active, true, text(),
                        foregroundRole());
  if (!hasFocus()) return;
  QStyleOptionFocusRect frame;
  frame.initFrom(this);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, this);
}

FocusMarker::FocusMarker(QWidget* parent) : QFrame(parent) {
  setObjectName("Shape1");
  setFrameShape(QFrame::Box);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

bool FocusMarker::eventFilter(QObject* watched, QEvent* event) {
  auto* box = qobject_cast<QWidget*>(watched);
  if (event->type() == QEvent::FocusIn) {
    marked_ = box;
    Surround(box);
  } else if (box == marked_) {
    if (event->type() == QEvent::FocusOut || event->type() == QEvent::Hide) {
      marked_ = nullptr;
      hide();
    } else if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
      Surround(box);
    }
  }
  return QFrame::eventFilter(watched, event);
}

void FocusMarker::Surround(QWidget* box) {
  if (parentWidget() != box->parentWidget()) setParent(box->parentWidget());
  setGeometry(box->geometry().adjusted(-2, -1, 2, 1));
  show();
  raise();
}

void ShapeNumberBox(ValueBox& box, const QString& longest) {
  box.setAlignment(Qt::AlignRight);
  const QFontMetrics metrics(box.font());
  // Besides the digits a line edit needs its frame and inner margins.
  const int width = metrics.horizontalAdvance(longest) + metrics.height();
  box.setMinimumWidth(width);
  box.setMaximumWidth(width * 3 / 2);
}

QMenu* MakePopup(const char* name, const QString& title, QWidget* parent) {
  auto* menu = new QMenu(title, parent);
  menu->setObjectName(name);
  QObject::connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
  return menu;
}

void AddCancel(QMenu* menu, const char* name) {
  menu->addSeparator();
  menu->addAction(QObject::tr("Cancel"))->setObjectName(name);
}

}  // namespace quorvane
