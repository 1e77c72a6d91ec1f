// A page of a tab that scrolls where the window is too small for it.
#pragma once

#include <QScrollArea>

namespace quorvane {

// Takes the room that it gets, but leaves its page what that needs.
class PageScroll : public QScrollArea {
  Q_OBJECT
 public:
  explicit PageScroll(QWidget* page, QWidget* parent = nullptr);

  // What the page needs, and by how much that is more than it has.
  QSize Need() const { return widget()->minimumSizeHint(); }
  QSize Lack() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
};

}  // namespace quorvane
