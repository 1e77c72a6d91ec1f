// The kinds of controls that the parameter page is made of.
#pragma once

#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QMenu>

#include "fit/fit_setup.h"

namespace quorvane {

class ValueBox;

// A check box of a row or of the page; its grey state is set by the program only.
class PageCheckBox : public QCheckBox {
  Q_OBJECT
 public:
  using QCheckBox::QCheckBox;
  void ShowState(CheckState state);

 signals:
  // The left button was released over the box, or the space bar, with Ctrl held; its state is
  // already the new one.
  void CtrlReleased();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
};

// A label that answers to the left button and, if it takes the focus, to the space bar.
class ClickLabel : public QLabel {
  Q_OBJECT
 public:
  using QLabel::QLabel;

 signals:
  void Clicked(Qt::KeyboardModifiers modifiers);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  // Disabled it does not answer, but its text can be read as before.
  void paintEvent(QPaintEvent* event) override;
};

// Shape1: the frame round the check box that has the focus.
class FocusMarker : public QFrame {
  Q_OBJECT
 public:
  explicit FocusMarker(QWidget* parent);
  void Watch(QWidget* box) { box->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Surround(QWidget* box);

  QWidget* marked_ = nullptr;
};

// Makes `box` wide enough for `longest`, lets it grow by half at most, and aligns its number to the
// right. The default is as long as a text of FormatParam.
void ShapeNumberBox(ValueBox& box, const QString& longest = QStringLiteral("-0.000E+00"));

// A menu that is deleted when it closes, and the entry that closes it.
QMenu* MakePopup(const char* name, const QString& title, QWidget* parent);
void AddCancel(QMenu* menu, const char* name);

}  // namespace quorvane
