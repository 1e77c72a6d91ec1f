// The species of a finished fit, each as a curve of its own.
#pragma once

#include <string>
#include <vector>

#include "fit/fit_state.h"

namespace quorvane {

struct SpeciesCurve {
  std::string name;            // "Monomer", "2.5-mer", "Incompetent dimer", "AB₂"
  std::vector<double> signal;  // above the baseline, at the data points of the dataset in order
};

// The species of the dataset at position d of the fit, from 1, at FitA: with the baseline they add
// up to FitYCalc. None for a model of a single species. Of endless chains the first three lengths,
// then all longer ones together.
// Throws ArithmeticFault for a constrained ratio of 0 or below.
std::vector<SpeciesCurve> SpeciesCurves(const FitState& fit, int d);

}  // namespace quorvane
