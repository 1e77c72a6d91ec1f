// What the vector kernel needs to know of the points of a dataset, worked out once for a fit.
#pragma once

#include <vector>

namespace quorvane {

struct FitState;

struct PointFacts {
  double greatestX = 0.0;  // of |x|, cm^2
  bool plain = false;      // mass conservation sums that the kernel cannot make, see below
};

// Fills `facts` [dataset from 0] and, with mass conservation, `weights` [flat point from 0].
//
// The mean concentration of a dataset is the sum over its data points of w_j times the
// concentration there. It is the trapezoid rule over the radii r_j with the sector width f_j,
//
//   width_j = (f_j + f_{j+1}) (r_{j+1} - r_j),
//   mean    = sum of width_j (tot_j + tot_{j+1}) / 4  /  sum of width_j / 2,
//
// with the terms of each point taken together: w_j = (width_{j-1} + width_j) / 4 over the area, the
// sum below. A dataset is `plain` if a load is 0, a width is below 0 or there is no area: then a
// mean of positive concentrations need not be positive, and the kernel's bound does not hold.
void PreparePoints(const FitState& fit, std::vector<PointFacts>& facts,
                   std::vector<double>& weights);

}  // namespace quorvane
