#include "windows/controls/child_window.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace quorvane {

void ShowChild(QWidget& window) {
  window.show();
  auto* child = qobject_cast<QMdiSubWindow*>(window.parentWidget());
  if (child == nullptr) return;
  if (child->isMinimized()) child->showNormal();
  child->show();
  child->mdiArea()->setActiveSubWindow(child);
}

void CloseChild(QWidget& window) {
  auto* child = qobject_cast<QMdiSubWindow*>(window.parentWidget());
  (child == nullptr ? &window : child)->close();
}

QSize FromTwips(const QWidget& window, QSize twips) {
  constexpr int kTwipsPerInch = 1440;
  return {twips.width() * window.logicalDpiX() / kTwipsPerInch,
          twips.height() * window.logicalDpiY() / kTwipsPerInch};
}

}  // namespace quorvane
