// The models as sums over species. All that does not depend on the point is worked out once for a
// dataset and a parameter vector; a value then takes one exponential a species.
#pragma once

#include <array>
#include <span>

#include "base/array1.h"

namespace quorvane {

struct FitState;
struct Model;

inline constexpr int kMaxSpecies = 5;

// One species: its signal at x is amplitude exp(rate x + shift), its share of the total
// concentration of A (of B) totalA (totalB) times the same exponential.
struct SpeciesTerm {
  double amplitude = 0.0;  // signal units
  double rate = 0.0;       // 1/cm^2, with x = (r^2 - R0^2)/2
  double shift = 0.0;      // ln K
  double totalA = 0.0;
  double totalB = 0.0;
};

enum class SignalForm {
  kSpeciesSum,  // baseline + sum over species
  kNonideal,    // one species whose exponent holds the measured signal of the point
  kIsodesmic,   // closed sum over all chain lengths
};

// Component A or B in a mass conservation sum.
enum class Component { kA, kB };

// A Model at one dataset and one parameter vector.
struct SetTerms {
  SignalForm form = SignalForm::kSpeciesSum;
  double baseline = 0.0;
  int count = 0;  // species in use
  std::array<SpeciesTerm, kMaxSpecies> species = {};
  double extinction = 1.0;       // nonideal and isodesmic: signal units/mole
  double concentration = 0.0;    // nonideal: at the reference radius
  double molecularWeight = 0.0;  // nonideal, Da
  double virial = 0.0;           // nonideal
  double association = 0.0;      // isodesmic: K

  void Add(const SpeciesTerm& term) { species[static_cast<std::size_t>(count++)] = term; }
};

// The flat points of one dataset: n data points, behind them its mass conservation points.
struct SetPoints {
  int first = 1;          // flat index of the first point
  std::size_t n = 0;      // data points
  std::size_t extra = 0;  // mass conservation points, 0 or 2
  const double* r = nullptr;
  const double* x = nullptr;
  const double* f = nullptr;
  const double* y = nullptr;
  double aLoad = 0.0;
  double bLoad = 0.0;
};

SetPoints PointsOf(const FitState& fit, int d);

// Pointers to the exponentials of each species over the points of a dataset.
using Exponentials = std::array<const double*, kMaxSpecies>;

// Fills `storage` ([species][stride]) with exp(rate x + shift) over the data points. A species
// whose rate and shift are those of an earlier one, or of the same one in `base`, shares its
// values instead; `base` may be null.
Exponentials ComputeExponentials(const SetTerms& terms, const SetPoints& points,
                                 const SetTerms* base, const Exponentials* baseExponentials,
                                 std::span<double> storage, std::size_t stride);

// Model values at the data points and then at the mass conservation points of a dataset.
void EvaluateSet(const SetTerms& terms, const SetPoints& points, const Exponentials& exponentials,
                 std::span<double> values);

// Mean concentration of a component over the data points of dataset d, from 1, weighted with the
// sector width (trapezoid rule).
double MeanConcentration(const FitState& fit, const SetTerms& terms, int d, Component component);

// Model value at flat point i alone, the same to the last bit.
double EvaluatePoint(const FitState& fit, const SetTerms& terms, int i);

// The builders: parameter vector a (layout of FitState), position d of the dataset, from 1. Those
// of the models that are tables of species stand in species.h.
using TermsBuilder = void (*)(const FitState& fit, const Model& model, const Array1<double>& a,
                              int d, SetTerms& out);

void NonidealTerms(const FitState& fit, const Model& model, const Array1<double>& a, int d,
                   SetTerms& out);
void IncompetentMonomerTerms(const FitState& fit, const Model& model, const Array1<double>& a,
                             int d, SetTerms& out);
void IncompetentNmerTerms(const FitState& fit, const Model& model, const Array1<double>& a, int d,
                          SetTerms& out);
void IsodesmicTerms(const FitState& fit, const Model& model, const Array1<double>& a, int d,
                    SetTerms& out);

}  // namespace quorvane
