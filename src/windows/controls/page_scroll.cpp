#include "windows/controls/page_scroll.h"

namespace quorvane {

PageScroll::PageScroll(QWidget* page, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  setWidget(page);
  page->setAutoFillBackground(false);  // the tab's own background shows through
  viewport()->setAutoFillBackground(false);
}

QSize PageScroll::Lack() const {
  return (Need() - maximumViewportSize()).expandedTo({0, 0});
}

QSize PageScroll::sizeHint() const {
  return widget()->sizeHint().expandedTo(Need());
}

QSize PageScroll::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 8};
}

}  // namespace quorvane
