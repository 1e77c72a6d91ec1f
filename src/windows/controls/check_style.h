// The style of the window program.
#pragma once

#include <QProxyStyle>

namespace quorvane {

// Fusion, but on a dark ground empty check boxes and radio buttons keep an outline that can be
// seen: Fusion makes it darker than the window.
class CheckStyle : public QProxyStyle {
  Q_OBJECT
 public:
  CheckStyle();
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace quorvane
