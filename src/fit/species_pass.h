// The sums of one dataset for models that are sums over species, by the vector kernel. The
// derivation stands in pass_kernel.h.
#pragma once

#include <array>

#include "fit/pass_kernel.h"

namespace quorvane {

struct FitState;

// The sums over the points of a dataset, for the parameters that touch it.
struct SetSums {
  std::array<std::array<double, kMostColumns>, kMostColumns> product = {};  // lower triangle
  std::array<double, kMostColumns> gradient = {};
  double squares = 0.0;  // of the residuals
};

// The sums of dataset d over the parameters fit.Workspace.touching, at the parameters
// fit.Workspace.work. False if they have to be made on the plain road: a dataset that the planner
// refuses (pass_planner.h), or a mass conservation point that may need another than the least step.
// Faults are left in the flags for the caller; throws ArithmeticFault for a constrained ratio of 0
// or below.
bool SumSpeciesSet(const FitState& fit, const SetPoints& points, int d, SetSums& sums);

}  // namespace quorvane
