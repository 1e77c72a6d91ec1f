// What follows from fitted parameters: molecular weights, association and dissociation constants,
// free energies, with the limits of their profiles.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fit/concentration_scale.h"
#include "fit/fit_page.h"
#include "stats/profile.h"

namespace quorvane {

struct FitState;
struct ErrorAnalysis;

struct DerivedLimits {
  double level = 0.0;           // percent
  std::optional<double> lower;  // absent: an open side, or one that was stopped
  std::optional<double> upper;
  SideEnd lowerEnd = SideEnd::kStopped;
  SideEnd upperEnd = SideEnd::kStopped;
};

struct DerivedQuantity {
  std::string name;  // "M", "M(A)", "log10 K1", "K1", "Kd1", "dG1"
  std::string unit;  // "Da", "1/M", "M", "kJ/mol" ...; empty without one
  double value = 0.0;
  std::vector<DerivedLimits> limits;  // by level; none without profiles
};

// Of each analysed shared parameter that is a weight or ln K, in the order of FitA:
//   M = M_b / (1 - vbar density), Da;
//   log10 K, K and Kd = 1/K, with [A_n]/[A]^n in units of concentration to the power 1 - n;
//   dG = -R T ln K, kJ/mol, standard state 1 M, if the scale is molar.
// All are monotone in the parameter, so limits of the profile go over into limits; they are put in
// rising order. A value beyond the range of double, or where vbar density is 1, is left out.
std::vector<DerivedQuantity> DerivedQuantities(const FitState& fit, const FitPage& page,
                                               const ErrorAnalysis& analysis);

// "K and ln K count in signal units, as every extinction coefficient is 1: ...", where ln K was
// analysed and the scale is not molar; else empty.
std::string ScaleRemark(const FitState& fit, const ErrorAnalysis& analysis);

}  // namespace quorvane
