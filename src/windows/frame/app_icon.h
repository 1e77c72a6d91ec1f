// The program's icon, which the desktop shows too, at every size that one asks for.
#pragma once

#include <QIcon>

namespace quorvane {

QIcon AppIcon();

}  // namespace quorvane
