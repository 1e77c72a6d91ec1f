// Running a fit from the window, and stopping it.
#pragma once

#include <QObject>

#include "windows/window_set.h"

class FitCommands : public QObject {
  Q_OBJECT
 public:
  explicit FitCommands(WindowSet windows, QObject* parent = nullptr);

  // The press of "Fit". Returns when the fit has ended; does nothing while one runs.
  void RunFit();

  // Ends the running calculation at its next check.
  void Stop();

 signals:
  // A calculation begins or ends: what could disturb it is disabled meanwhile.
  void CalculatingChanged(bool on);
  // The fit has ended, in whatever way.
  void FitEnded();

 private:
  WindowSet windows_;
};
