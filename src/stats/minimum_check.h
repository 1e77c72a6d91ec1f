// Whether a fit stands at its best minimum: the fit again from scattered start values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/array1.h"

namespace quorvane {

class Host;
class StopFlag;
struct FitState;

struct MinimumRequest {
  int starts = 20;         // scattered ones; the result of the fit itself is one more
  std::uint64_t seed = 1;  // the same seed gives the same starts
  int threads = 0;         // at once; 0: one a processor core
};

// A place where fits came to rest.
struct FoundMinimum {
  double sum = 0.0;           // of squared residuals
  double rms = 0.0;           // root of the sum over the degrees of freedom; 0 with none
  int starts = 0;             // scattered starts that led here
  bool current = false;       // the fit that was checked leads here
  Array1<double> parameters;  // FitA at the lowest sum of those that came here
};

struct MinimumOutcome {
  bool stopped = false;              // by the user; what had come to rest until then is here
  int ended = 0;                     // scattered starts that came to rest
  int failed = 0;                    // those that ended in a fault, a singular matrix or not at all
  double currentSum = 0.0;           // of the fit as it was given
  double seconds = 0.0;              // steady clock
  std::vector<FoundMinimum> minima;  // the best first

  // Place in `minima` of one that lies below the given fit by more than rounding.
  std::optional<std::size_t> better;
};

// Fits the finished `fit` again, by SettleFit on copies, from its own values and from `starts`
// scattered ones, all cores at once. Every fitted parameter that is listed moves, evenly
// distributed:
//   molecular weights by a factor of up to 2 either way, stoichiometries by up to 20 %, ln K by up
//   to 5, a virial coefficient by a factor of up to 10 either way, alpha anywhere in 0 to 1, ln
//   reference concentrations by up to 0.2. Baselines start where they are; a 0 that is scaled
//   stays.
// Two ends are one minimum if their sums agree to a relative 1e-4 and each fitted parameter to a
// quarter of its standard error (or a relative 1e-4, if that is more). Better is a sum that is
// lower by a relative 1e-6. Sums below 1e-12 of the squared signal count as equal. A start is given
// up after 500 steps. The result does not depend on the number of threads. `stop`, raised by the
// host's events, ends all of it; nothing is logged. Throws nothing that a start ran into.
MinimumOutcome CheckMinimum(const FitState& fit, const MinimumRequest& request,
                            const StopFlag& stop, Host& host);

// What came out, in a sentence or two for a window or a terminal.
std::string MinimumSummary(const MinimumOutcome& outcome, const MinimumRequest& request);

// Below this all sums of squares are 0 to the fit: 1e-12 of the squared signal.
double LeastSum(const FitState& fit);

// Whether a sum of squares is lower than `than` by more than rounding, in the sense of
// CheckMinimum.
bool IsLowerSum(const FitState& fit, double sum, double than);

}  // namespace quorvane
