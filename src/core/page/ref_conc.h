// Models evaluated without a fit: the preview of a fit, and reference concentrations set by eye.
// Each evaluation has a FitState of its own, so that the last fit stays as it ended.
#pragma once

#include <optional>
#include <vector>

#include "base/chart.h"
#include "core/page/fit_checks.h"
#include "core/program_state.h"
#include "fit/model_terms.h"

namespace quorvane {

class Host;

// What an evaluation gave.
struct ModelCurves {
  std::vector<Chart> charts;      // data and curve, one a dataset; none if it did not succeed
  std::vector<Chart> deviations;  // alone, as many
  std::optional<Notice> fault;    // still to be told; a check that asked has told its own
};

// The box of `fault`, and its line in the log.
void TellFault(const Notice& fault, Host& host);

// "cmdPreviewFit": every dataset of the fit against the curve of the present values.
ModelCurves PreviewFit(const QuorvaneModule& module, Host& host);

inline constexpr int kBarEnd = 10000;  // the bars reach from minus this to this

// `saved` times 10^(bar / 1000). Throws ArithmeticFault if that overflows or vanishes.
double RefConcAtBar(double saved, int bar);

// The adjustment of the reference concentrations of one dataset of the fit.
class RefConcAdjustment {
 public:
  // Saves the values of row `row` (from 0) of the parameter page, to which bars are relative.
  RefConcAdjustment(QuorvaneModule& module, int row);

  int Row() const { return row_; }

  // "SetRefC" as the adjustment begins: asks for a cell's ends where the model needs them, and logs
  // points outside the cell geometry.
  ModelCurves Begin(Host& host) const;

  // The same without a check or a log line, for a dataset that was changed meanwhile.
  ModelCurves Evaluate() const;

  // A bar was moved: sets the value, which stays whatever comes of the evaluation, and evaluates.
  ModelCurves Move(Component component, int bar);

  // Gives the dataset the saved values back, if it is still loaded.
  void Restore();

 private:
  void Assemble(FitState& fit, Host& host) const;

  QuorvaneModule& module_;
  int row_;
  int dataset_;  // position in the store
  double RefConc_;
  double RefConc2_;
};

}  // namespace quorvane
