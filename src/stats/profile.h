// The profile of one parameter: the sum of squares as a function of its value, minimised over all
// other parameters, and the limits where it reaches a level.
//
// A limit of one parameter alone at probability p is where
//   S(v) = S (1 + F(1, NDF; p) / NDF),
// S being the sum of the fit at rest. In a linear problem that is value +- t sd with Student's t.
// Source: Bates & Watts, Nonlinear Regression Analysis and Its Applications (1988), section 6.1.
//
// The parameter is held at trial values that walk away from its best one; every trial is a fit of
// all others to rest, begun where the path of the last solutions leads. The length of a step aims
// at the same rise of the signed root sqrt((S(v) - S) NDF / S), which is the distance in standard
// errors where the problem is linear.
#pragma once

#include <limits>
#include <optional>
#include <vector>

#include "stats/held_fit.h"

namespace quorvane {

enum class SideEnd {
  kFound,    // the level was reached
  kOpen,     // the sum stays below it for good
  kBound,    // the parameter came to the end of its range first
  kStopped,  // by the user
};

// Where one side of a parameter reaches a level, or why it does not.
struct SideLimit {
  SideEnd end = SideEnd::kStopped;
  double limit = 0.0;    // found, or the bound
  double plateau = 0.0;  // open: the sum that it tends to
  bool HasLimit() const { return end == SideEnd::kFound || end == SideEnd::kBound; }
};

struct ProfilePoint {
  double value = 0.0;  // of the parameter
  double sum = 0.0;    // of squares, everything else at rest
};

// One side of a profile.
struct ProfileSide {
  std::vector<SideLimit> limits;     // by level, in the order of the request
  std::vector<ProfilePoint> points;  // in the order in which they were met; without the fit's own
  std::optional<RestPoint> lowest;   // the lowest met, if below the fit
};

// What all trials of a profile have in common.
struct ProfileScale {
  double sum = 0.0;  // of the fit at rest
  double variance =
      0.0;  // by which a rise is divided: that sum, or the least that counts, over NDF
  std::vector<double> roots;  // of F(1, NDF; p), by level: where the signed root is to come to
};

// The range that a parameter may be walked over, and how far apart its values are different ones.
struct ParameterRange {
  bool logarithm = false;  // of a concentration or constant: e-folds count, else octaves
  double lowest = -std::numeric_limits<double>::infinity();  // alpha 0, a stoichiometry 1
  double highest = std::numeric_limits<double>::infinity();  // alpha 1
};

ParameterRange RangeOf(const FitState& fit, int parameter);

// Walks parameter `j` of `fit`, which is at rest and has its covariance matrix in FitCovar, up
// (direction 1) or down (-1).
//   Bound: limits are cut to the range of the parameter; a fit whose value lies beyond a bound has
//   its
//          limit there at once.
//   Open:  the rise from octave to octave of the distance (of a logarithm: from two e-folds to the
//          next) falls geometrically, and what is left of it is a small share of what is missing to
//          the level. Without any influence so far a logarithm is followed over 80 e-folds.
//   Found: also at the place where the model can no longer be computed, if the sum has been rising.
ProfileSide WalkProfile(const FitState& fit, int j, int direction, const ProfileScale& scale,
                        const StopFlag& stop);

}  // namespace quorvane
