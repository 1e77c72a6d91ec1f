// The local average molecular weight of a dataset: what the data say about the weight at each
// concentration before any model is believed.
#pragma once

#include <vector>

#include "fit/fit_state.h"

namespace quorvane {

// Points of a moving window.
inline constexpr int kLeastWeightWindow = 5;
inline constexpr int kGreatestWeightWindow = 999;

// Average weights of windows, and the concentrations at which they are.
struct LocalAverages {
  std::vector<double> signal;  // above the baseline: exp of the mean logarithm in the window
  std::vector<double> weight;  // buoyant, Da
};

struct LocalWeights {
  LocalAverages data;   // of windows that move by a quarter of their length
  LocalAverages model;  // of the fitted curve, treated the same way, at every place
  int leftOut = 0;      // windows of the data with a point at or below the baseline
};

// An eighth of `points`, from 9 to 51, odd.
int AutomaticWeightWindow(int points);

// Of the data points of the dataset at position d of the fit, from 1, in windows of `window` points
// by rising radius; none if it has fewer. In a window
//   M = d ln c / d(r^2/2) R T / omega^2, Da, buoyant,
// with c the signal less the fitted baseline. The slope is that of a straight line by least squares
// with the weights c^2 of the fitted curve, since the error of ln c is that of c over c. It is the
// weight average where signals are as the masses, else the average weighted by signal.
// Source: Yphantis, Biochemistry 3 (1964) 297. Needs FitYCalc.
LocalWeights LocalWeightAverages(const FitState& fit, int d, int window);

}  // namespace quorvane
