// frmSplash: the name and version of the program while it starts.
#pragma once

#include <QSplashScreen>

namespace quorvane {

class SplashWindow : public QSplashScreen {
  Q_OBJECT
 public:
  SplashWindow();
};

}  // namespace quorvane
