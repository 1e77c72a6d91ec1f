#include "windows/controls/push_button.h"

#include <QPushButton>

#include "windows/controls/control_names.h"

namespace quorvane {

QPushButton* MakeButton(const char* name, const QString& caption, const QString& toolTip) {
  auto* button = Named(new QPushButton(caption), name);
  button->setToolTip(toolTip);
  button->setAutoDefault(false);
  return button;
}

}  // namespace quorvane
