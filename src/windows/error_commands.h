// Error analysis of the last fit: the windows that show and search it.
#pragma once

#include <QObject>
#include <QPointer>

#include "windows/window_set.h"

class FitCommands;
class frmCCCs;
class frmConfInterval;
struct ConfidenceRequest;

class ErrorCommands : public QObject {
  Q_OBJECT
 public:
  // All outlive this.
  ErrorCommands(WindowSet windows, FitCommands& fits, frmCCCs& coefficients,
                QObject* parent = nullptr);

  // The button cmdCalcCI of frmData: opens frmConfInterval anew.
  void OpenConfidence();

  // The button cmdShowCCCs of frmData: fills frmCCCs and brings it to the front.
  void ShowCoefficients();

  // Writes the table that frmCCCs shows to the log.
  void LogCoefficients();

  // The fit that frmConfInterval was opened for is no longer the last one.
  void CloseConfidence();

 private:
  void Search(const ConfidenceRequest& request);

  WindowSet windows_;
  FitCommands& fits_;
  frmCCCs& coefficients_;
  QPointer<frmConfInterval> confidence_;
};
