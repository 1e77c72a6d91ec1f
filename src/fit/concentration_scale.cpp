#include "fit/concentration_scale.h"

#include "fit/fit_state.h"

namespace quorvane {

ConcentrationScale ScaleOf(const FitState& fit) {
  int ones = 0;
  int all = 0;
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    ones += fit.SetEpsA(d) == 1.0;
    ++all;
    if (!fit.TwoComponentModel) continue;
    ones += fit.SetEpsB(d) == 1.0;
    ++all;
  }
  if (ones == 0) return ConcentrationScale::kMolar;
  return ones == all ? ConcentrationScale::kSignal : ConcentrationScale::kMixed;
}

}  // namespace quorvane
