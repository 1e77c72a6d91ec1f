// Mass conservation with one component: the load that a trial concentration implies, and the
// concentration that gives a load.
#pragma once

#include "sim/sim_problem.h"

namespace quorvane {

// Mean concentration over the column, in monomer units, if the concentration at the meniscus
// (LoadNonideal, LoadIso: of the monomer) or the free monomer at the reference radius (LoadNmer,
// LoadNmerMmer) is c. A trapezoid rule over the grid that weighs each interval with its outer
// radius. Faults are left in the flags for the caller.
// LoadNonideal works the self-consistent profile out with two half steps a point; the second takes
// the radius of the point before: kept on purpose.
double LoadNonideal(const SimProblem& problem, double c);
double LoadNmer(const SimProblem& problem, double c);
double LoadNmerMmer(const SimProblem& problem, double c);
double LoadIso(const SimProblem& problem, double c);

// Root of Load(x) - LA between x1 and x2, to about `tol` (molar); 0 if they do not enclose one.
// After 100 iterations the best x so far. Throws ArithmeticFault.
// Source: Brent, Algorithms for Minimization without Derivatives (1973), chapter 4.
double SolveLoadNonideal(const SimProblem& problem, double x1, double x2, double tol);
double SolveLoadNmer(const SimProblem& problem, double x1, double x2, double tol);
double SolveLoadNmerMmer(const SimProblem& problem, double x1, double x2, double tol);
double SolveLoadIso(const SimProblem& problem, double x1, double x2, double tol);

using LoadRoutine = double (*)(const SimProblem& problem, double c);
using SolveRoutine = double (*)(const SimProblem& problem, double x1, double x2, double tol);

struct LoadBracket {
  double low = 0.0;
  double high = 0.0;
};

// Halves or doubles `start` until the load LA lies between the ends. Throws ArithmeticFault; a load
// that is never reached ends in an overflow.
LoadBracket BracketLoad(LoadRoutine load, const SimProblem& problem, double start);

// The way down alone: from `start`, halving until the load is below LA. If it is from the beginning
// both ends are `start`, and no root is enclosed.
LoadBracket BracketLoadBelow(LoadRoutine load, const SimProblem& problem, double start);

// c exp((r_i^2 - r_0^2) sA / 2), the ideal profile from the first grid point.
double FromMeniscus(const SimProblem& problem, double c, int i);

// Concentration in monomer units of isodesmic chains whose monomer is at u: u / (1 - K1 u)^2.
double IsodesmicTotal(const SimParameters& p, double u);

}  // namespace quorvane
