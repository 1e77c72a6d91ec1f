// The buttons of all windows.
#pragma once

#include <QString>

class QPushButton;

namespace quorvane {

// A button with an object name, which Return in another control does not press.
QPushButton* MakeButton(const char* name, const QString& caption, const QString& toolTip = {});

}  // namespace quorvane
