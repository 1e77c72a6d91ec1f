// The sums of one dataset for models that are sums over species, by the vector kernel. How it is
// made fast, and why its results are those of PARTIALSk (fit/partials.h), stands in
// docs/performance.md.
#pragma once

#include <vector>

#include "fit/pass_kernel.h"
#include "fit/point_facts.h"

struct FitState;

// Fills `facts` [dataset from 0] and, with mass conservation, `weights` [flat point from 0]: the
// mean concentration of a dataset is the sum of weight times concentration over its data points.
void PreparePoints(const FitState& fit, std::vector<PointFacts>& facts,
                   std::vector<double>& weights);

// The sums over the points of a dataset, for the parameters that touch it.
struct SetSums {
  std::array<std::array<double, kMostColumns>, kMostColumns> product = {};  // lower triangle
  std::array<double, kMostColumns> gradient = {};
  double squares = 0.0;  // of the residuals
};

// The sums of dataset d over the parameters fit.Workspace.touching, at the parameters
// fit.Workspace.work. False if they have to be made the plain way: a parameter is 0, an exponent is
// too large, a step would leave the kernel's range. Faults are left in the flags for the caller;
// throws ArithmeticFault for a constrained ratio of 0 or below.
bool SumSpeciesSet(FitState& fit, const SetPoints& points, int d, SetSums& sums);
