#include "windows/frame/app_icon.h"

namespace quorvane {

QIcon AppIcon() {
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
    icon.addFile(QStringLiteral(":/app_icon/quorvane-%1.png").arg(side), QSize(side, side));
  }
  return icon;
}

}  // namespace quorvane
