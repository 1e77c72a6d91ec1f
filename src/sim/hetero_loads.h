// Mass conservation with two components: a two-parameter Levenberg-Marquardt fit of the free
// concentrations to the two loads.
// Source: Marquardt, J. SIAM 11 (1963) 431.
#pragma once

#include <string>

#include "base/array1.h"
#include "sim/sim_problem.h"

namespace quorvane {

class Host;

// y: mean concentration over the column of component i (1 is A, anything else B) at parameters
// a [1..2]: ln cA and ln cB, in FUNCSCT4 cA and cB. A trapezoid rule over the grid that weighs each
// interval with its inner radius. `problem` holds the species of the model: 6 (FUNCSCT), 7, 8, 10.
// Faults are left in the flags for the caller, here and in PARTIALSCT and MRQCOFCT.
void FUNCSCT(const SimProblem& problem, int i, const Array1<double>& a, double& y);
void FUNCSCT2(const SimProblem& problem, int i, const Array1<double>& a, double& y);
void FUNCSCT3(const SimProblem& problem, int i, const Array1<double>& a, double& y);
void FUNCSCT4(const SimProblem& problem, int i, const Array1<double>& a, double& y);

// dyda [1..ma]: central differences of the same routine in each parameter, by the step rule of
// fit/step_rule.h with the first steps of the models of one component and leastStepForNaN.
void PARTIALSCT(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                int ma);
void PARTIALSCT2(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                 int ma);
void PARTIALSCT3(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                 int ma);
void PARTIALSCT4(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                 int ma);

// The routines of one model.
struct HeteroModel {
  void (*funcs)(const SimProblem& problem, int i, const Array1<double>& a, double& y);
  void (*partials)(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                   int ma);
};

// One fit of the loads: the two parameters, all free, and what a step leaves for the next.
struct LoadFit {
  const SimProblem& problem;
  HeteroModel model;
  Array1<double> a = Array1<double>(2);
  Array1<double> atry = Array1<double>(2);
  Matrix1<double> alpha = Matrix1<double>(2, 2);  // curvature
  Matrix1<double> covar = Matrix1<double>(2, 2);
  Matrix1<double> beta = Matrix1<double>(2, 1);  // gradient
  Matrix1<double> da = Matrix1<double>(2, 1);    // step
  double chisq = 0.0;                            // of the last trial, molar^2
  double ochisq = 0.0;                           // of the accepted parameters
  double alamda = -1.0;
  int mfit = 0;
};

// One step; alamda < 0 starts, 0 closes. A rejected step leaves its sum in chisq: kept on purpose.
// Throws ArithmeticFault.
void MRQMINCT(LoadFit& fit, Host& host);

// Curvature, gradient and sum of squares of both loads at parameters a, each with weight 1.
void MRQCOFCT(const LoadFit& fit, const Array1<double>& a, Matrix1<double>& alpha,
              Matrix1<double>& beta, double& chisq);

// Clears the rows and columns of covar behind the mfit free parameters: none when all ma are free.
void SIMCOVSRT(Matrix1<double>& covar, int ma, int mfit);

// The free concentrations at the reference radius that give the loads; `count` passes. Ends when
// three passes, counted until the sum of squares rises, moved it by less than 0.0001 LA LB. There
// is no limit on the passes. Throws ArithmeticFault.
SimReference FitCloadCs(const SimProblem& problem, Host& host, int& count);
SimReference FitCloadCs2(const SimProblem& problem, Host& host, int& count);
SimReference FitCloadCs3(const SimProblem& problem, Host& host, int& count);
SimReference FitCloadCs4(const SimProblem& problem, Host& host, int& count);

}  // namespace quorvane
