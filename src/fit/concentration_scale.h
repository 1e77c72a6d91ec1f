// In what the concentrations of a fit are counted.
#pragma once

namespace quorvane {

struct FitState;

// In what the reference concentrations of a fit are counted.
enum class ConcentrationScale {
  kMolar,   // every extinction coefficient is given, and none of them is 1
  kSignal,  // all of them are 1
  kMixed,   // some are
};
ConcentrationScale ScaleOf(const FitState& fit);

}  // namespace quorvane
