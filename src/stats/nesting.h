// Whether one fit is another with parameters held: only then an F test compares the two.
#pragma once

#include <string>
#include <vector>

#include "stats/fit_summary.h"

namespace quorvane {

struct Nesting {
  bool nested = false;
  std::vector<std::string> restrictions;  // where it is: what the full fit leaves free, such as
                                          // "Alpha = 0", "N = 2", "RefC(3) linked to 1"
  bool limitOnly = false;                 // the model is the full one's where a ln K runs to minus
                                          // infinity, which is no value of it
  std::string reason;                     // where it is not: why, as a clause without a full stop
};

// Whether every curve of `restricted` is one of `full`: whether `full`, a fit of the same points,
// becomes `restricted` when parameters that it fits are held at a value inside their range.
//
// The rules, for values equal to the last bit:
// - The models are the same, or the catalogue names a parameter and a value at which the full one
//   is the other (Ideal in Nonideal at VirialC 0, Monomer-Nmer in its incompetent companions at
//   Alpha 0). That parameter then counts as held at this value.
// - What the full fit holds, the restricted one holds at the same value: shared parameters,
//   baselines, reference concentrations.
// - A link is a restriction: it makes two free reference concentrations one. Datasets that share
//   theirs in the full fit share them in the restricted one; the reverse need not be, where the
//   full one fits them. A model with one component has no shared concentrations, a link there only
//   moves the reference radius: links must then be equal.
// - Constrained K ratios are a restriction of ratios that the full fit leaves free.
// - What both take as known is equal: temperature, speeds, reference radii, extinction
//   coefficients; vbar and density where a virial coefficient counts, meniscus and base where both
//   models need them. Conditions that either does not know are taken as equal.
Nesting NestingOf(const FitSummary& restricted, const FitSummary& full);

}  // namespace quorvane
