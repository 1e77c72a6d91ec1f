// Mass balance of a planned column: the reference concentrations at which its mean concentrations
// are the loads.
#pragma once

#include "fit/fit_state.h"

namespace quorvane {

// Mean concentrations of A and B, as monomers, from meniscus to base.
struct MeanLoads {
  double a = 0.0;
  double b = 0.0;
};

// The means over the column of dataset d, from 1, at FitA. In the sector of a cell equal steps of
// r^2 hold equal volumes, so that each exponential of the model has a closed integral; only the
// nonideal profile is summed up (Simpson's rule). Infinite where isodesmic chains would be so.
// Needs SetCellTopR and SetCellBottomR. Faults are left in the flags for the caller.
MeanLoads MeanLoadsOf(const FitState& fit, int d);

// Brings the ln reference concentrations of dataset d, which nothing links to another, to those at
// which the means are SetALoad(d) and, with a second component, SetBLoad(d): to 12 digits, by
// TOMS 748. Throws ArithmeticFault.
// Source: Alefeld, Potra & Shi, ACM Transactions on Mathematical Software 21 (1995) 327.
void BalanceLoads(FitState& fit, int d);

// Concentration of the nonideal model at x = (r^2 - R0^2)/2, the c that solves
// c = c0 exp(rate x - beta (c - c0)) with beta = 2 BM M, by Newton's method in ln c.
// Throws ArithmeticFault (invalid operation) if there is none.
double NonidealConcentration(double c0, double rate, double beta, double x);

// Fills FitY with the values of the model at FitA, without noise. Throws ArithmeticFault.
void FillCurves(FitState& fit);

}  // namespace quorvane
