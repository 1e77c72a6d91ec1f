// What the child windows of frmMain have in common.
#pragma once

#include <QSize>

class QWidget;

namespace quorvane {

// Shows a child window and brings it to the front, wherever the user has put it.
void ShowChild(QWidget& window);

// Closes a child window with its frame, which closing the window alone would leave standing empty.
void CloseChild(QWidget& window);

// A size in twips, 1/1440 inch, as pixels of the screen that `window` stands on.
QSize FromTwips(const QWidget& window, QSize twips);

}  // namespace quorvane
