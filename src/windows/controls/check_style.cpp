#include "windows/controls/check_style.h"

#include <QStyleOptionButton>

namespace quorvane {

namespace {

constexpr int kMiddle = 128;
constexpr int kUndone =
    127;  // percent; what Fusion makes of the window's colour, the other way round

// Between ground and text, as Fusion has it on a light ground.
QColor OutlineOn(const QPalette& palette) {
  const QColor ground = palette.color(QPalette::Base), text = palette.color(QPalette::Text);
  return QColor((ground.red() + text.red()) / 2, (ground.green() + text.green()) / 2,
                (ground.blue() + text.blue()) / 2);
}

}  // namespace

CheckStyle::CheckStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void CheckStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  const bool box = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
  if (!box || option->palette.color(QPalette::Base).lightness() >= kMiddle) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  QStyleOptionButton seen;
  seen.QStyleOption::operator=(*option);
  seen.palette.setColor(QPalette::Window, OutlineOn(option->palette).lighter(kUndone));
  QProxyStyle::drawPrimitive(element, &seen, painter, widget);
}

}  // namespace quorvane
