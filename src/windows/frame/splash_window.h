// frmSplash: the name and version of the program while it starts.
#pragma once

#include <QSplashScreen>

namespace quorvane {

class frmSplash : public QSplashScreen {
  Q_OBJECT
 public:
  frmSplash();
};

}  // namespace quorvane
