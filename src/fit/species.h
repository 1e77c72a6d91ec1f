// The models that are sums over species, as tables: what each species is made of. Values,
// derivatives and mass totals follow from that.
//
// A species of a A's and b B's has the concentration
//   c(x) = exp(a lnA + b lnB + sum of its ln K + (a rateA + b rateB) x),   x = (r^2 - R0^2)/2,
// the signal (a E + b E2) c, and holds a c of A and b c of B.
#pragma once

#include <array>

#include "base/array1.h"

namespace quorvane {

struct FitState;
struct Model;
struct SetTerms;

// How many of a component a species holds.
struct Stoichiometry {
  double fixed = 0.0;
  int parameter = 0;  // the shared parameter that says it, from 1; 0 if it is fixed
};

struct Species {
  Stoichiometry a = {};
  Stoichiometry b = {};
  std::array<int, 3> lnK = {};  // shared parameters whose ln K are summed, from 1; 0 for none
};

// What the species of one dataset are built on, at one parameter vector.
struct ReferenceState {
  // `d`: position of the dataset in the fit, from 1.
  ReferenceState(const FitState& fit, const Model& model, const Array1<double>& a, int d);

  double CountA(const Species& species) const { return Count(species.a); }
  double CountB(const Species& species) const { return Count(species.b); }
  double Extinction(const Species& species) const;  // signal units/mole
  double Rate(const Species& species) const;        // 1/cm^2
  // Sum of the ln K of a species. Throws ArithmeticFault for a constrained ratio of 0 or below.
  double LnK(const Species& species) const;

  double lnA = 0.0;  // ln of the reference concentrations
  double lnB = 0.0;
  double rateA = 0.0;  // 1/cm^2
  double rateB = 0.0;
  double extinctionA = 0.0;  // signal units/mole
  double extinctionB = 0.0;
  int base = 0;          // the shared parameters stand behind this index
  bool kRatios = false;  // ln K of the second and third site are given as ratios to the first

 private:
  double Count(const Stoichiometry& count) const;
  const Array1<double>& a_;
};

// The species of `model` at dataset d as terms for single values.
void SpeciesTerms(const FitState& fit, const Model& model, const Array1<double>& a, int d,
                  SetTerms& out);

}  // namespace quorvane
