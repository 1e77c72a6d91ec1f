// The numbers behind one simulation: parameters, grid and species.
#pragma once

#include <array>
#include <vector>

#include "sim/sim_catalogue.h"
#include "sim/sim_column.h"
#include "sim/sim_inputs.h"

namespace quorvane {

// Fixed constants of the simulator.
inline constexpr double kGasConstant = 83144000.0;  // erg/(mol K)
inline constexpr double kRadiansPerSecondOfRpm = 0.10471976;
inline constexpr double kRadialStep = 0.001;  // cm

// The inputs as numbers.
struct SimParameters {
  double MWA = 0.0;  // molecular weights, Da
  double MWB = 0.0;
  double vA = 0.0;  // partial specific volumes, ml/g
  double vB = 0.0;
  double EA = 0.0;  // extinction coefficients, signal units/mole
  double EB = 0.0;
  double LA = 0.0;  // loading concentrations, molar
  double LB = 0.0;
  double dens = 0.0;  // g/ml
  double T = 0.0;     // deg C
  double rpm = 0.0;
  double Rm = 0.0;     // meniscus, cm
  double Rb = 0.0;     // base, cm
  double RMS = 0.0;    // of the noise, signal units
  double BM = 0.0;     // second virial coefficient times molecular weight
  double alpha = 0.0;  // weight fraction of the incompetent species
  int N = 0;           // degrees of association
  int M = 0;
  std::array<double, 3> K = {};  // K1, K2, K3, 1/molar each step
  int n = 0;                     // grid points
  double sA = 0.0;               // M (1 - vbar density) omega^2 / (R T), 1/cm^2
  double sB = 0.0;
};

// The boxes as numbers, n and sA and sB worked out, K as `inputs` holds it.
// Throws ArithmeticFault.
SimParameters ReadParameters(const SimInputs& inputs);

// The number that a degree of association stands for.
int DegreeOf(SimDegree degree, const SimParameters& p);

// r[i] = i dr + Rm for i = 0 to n - 1: the last one need not be Rb.
// Throws SubscriptFault past 2049 points.
void BuildGrid(const SimParameters& p, SimColumn& column);

// The complex A_a B_b: its molar concentration at radius r is
// [A]^a [B]^b K exp((a sA + b sB) (r^2 - R0^2) / 2), [A] and [B] free at the reference radius R0.
struct SimSpecies {
  int a = 0;
  int b = 0;
  std::array<double, 3> K = {1.0, 1.0, 1.0};  // the factors of its overall constant
  std::vector<double> exponential = {};       // at each grid point

  // Concentration at R0. Faults are left in the flags for the caller.
  double AtReference(double cA, double cB) const;
};

// The free concentrations that the loads imply, molar. b is 0 without a component B.
struct SimReference {
  double a = 0.0;
  double b = 0.0;
};

// A column whose load is looked for: what the sums over the grid need.
struct SimProblem {
  SimParameters p;
  const SimColumn* column = nullptr;  // not owned; its radii are filled
  std::vector<SimSpecies> species;    // empty for the ideal, nonideal and isodesmic models
};

// Species of a model, in the order of SimColumn::species, without one that stands apart. R0 lies
// two thirds down the grid. Throws ArithmeticFault.
SimProblem MakeProblemOf(const SimModel& model, const SimParameters& p, const SimColumn& column);

}  // namespace quorvane
