// Running a fit or a confidence search from the window, and stopping it.
#pragma once

#include <QObject>

#include "base/array1.h"
#include "windows/session/window_set.h"

namespace quorvane {

struct ConfidenceOutcome;
struct ConfidenceRequest;
struct ErrorAnalysis;
struct ErrorRequest;
class Host;
struct FitOutcome;
struct MinimumOutcome;
struct MinimumRequest;
struct QuorvaneModule;

class FitCommands : public QObject {
  Q_OBJECT
 public:
  explicit FitCommands(WindowSet windows, QObject* parent = nullptr);

  // The press of "Fit"; as "Fit to Rest" where the user always wants that. Returns when the fit has
  // ended; does nothing while one runs.
  void RunFit();

  // The press of "Fit to Rest". Where there is no rest it says why, and offers the fit from the
  // present values.
  void FitToRest();

  // The press of "Calculate" in frmConfInterval, for the last fit. Returns when the search has
  // ended; does nothing while a calculation runs. Afterwards it offers a better minimum that the
  // search has met as the new start.
  void RunConfidence(const ConfidenceRequest& request);

  // The press of "Check" in frmMinima, for the last fit, likewise.
  MinimumOutcome RunMinimumCheck(const MinimumRequest& request);

  // The press of "Calculate" in frmErrorAnalysis, for the last fit, likewise.
  ErrorAnalysis RunErrorAnalysis(const ErrorRequest& request);

  // Puts values of the parameters of the last fit into the page: the start of the next one.
  void UseAsStart(const Array1<double>& parameters);

  // Puts page, choice of datasets and result back as they were when the fit at `place` of the
  // session's list had finished; of a fit that only its values are known of, the page alone.
  void Restore(std::size_t place);

  // Ends the running calculation at its next check.
  void Stop();

 signals:
  // A calculation begins or ends: what could disturb it is disabled meanwhile.
  void CalculatingChanged(bool on);
  void FitFinished();  // and its values were taken over
  // A fit or search has ended, in whatever way.
  void CalculationEnded();

 private:
  // Does `work` with everything disabled that could disturb it, under the busy pointer.
  template <class Work>
  void Calculate(Work&& work);
  FitOutcome Run(FitOutcome (*fit)(QuorvaneModule&, Host&));
  void ShowOutcome(const FitOutcome& outcome);

  WindowSet windows_;
};

}  // namespace quorvane
