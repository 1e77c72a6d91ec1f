// Error analysis of the last fit: the windows that show and search it.
#pragma once

#include <QObject>
#include <QPointer>

#include "windows/session/window_set.h"

namespace quorvane {

class FitCommands;
class CorrelationWindow;
class ConfidenceWindow;
class ErrorAnalysisWindow;
class QualityWindow;
class MinimaWindow;
struct ConfidenceRequest;
struct ErrorRequest;
struct MinimumRequest;

class ErrorCommands : public QObject {
  Q_OBJECT
 public:
  // All outlive this.
  ErrorCommands(WindowSet windows, FitCommands& fits, CorrelationWindow& coefficients,
                QualityWindow& quality, ErrorAnalysisWindow& analysis, QObject* parent = nullptr);

  // The button cmdCalcCI of frmData: opens frmConfInterval anew.
  void OpenConfidence();

  // The button cmdShowCCCs of frmData: fills frmCCCs and brings it to the front.
  void ShowCoefficients();

  // Writes the table that frmCCCs shows to the log.
  void LogCoefficients();

  // The menu "Fit Quality...": brings frmFitQuality to the front.
  void ShowQuality();

  // Fills frmFitQuality with the fit that has finished.
  void FollowFit();

  // The same if it shows a fit: names or constants have changed.
  void RefreshQuality();

  // The menu "Error Analysis...": brings frmErrorAnalysis to the front.
  void ShowErrorAnalysis();

  // The menu mnuCheckMinimum: opens frmMinima anew.
  void OpenMinima();

  // The fit that frmConfInterval or frmMinima was opened for is no longer the last one.
  void CloseForFit();

 private:
  bool MayAnalyse();
  void CheckMinima(const MinimumRequest& request);
  void Search(const ConfidenceRequest& request);
  void Analyse(const ErrorRequest& request);

  WindowSet windows_;
  FitCommands& fits_;
  CorrelationWindow& coefficients_;
  QualityWindow& quality_;
  ErrorAnalysisWindow& analysis_;
  QPointer<ConfidenceWindow> confidence_;
  QPointer<MinimaWindow> minima_;
  bool checking_ = false;  // a check of frmMinima runs, and it stays open
};

}  // namespace quorvane
