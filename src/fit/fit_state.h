// FitState: the flat arrays of one fit. The assembly fills it, the minimiser works on it and on
// nothing else, so that fits can run side by side on copies.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/array1.h"
#include "base/stop_flag.h"
#include "base/text.h"
#include "fit/arrow_solve.h"
#include "fit/point_facts.h"

namespace quorvane {

struct Model;

// More parameters than this, held ones included, do not fit.
inline constexpr int kMaxParameters = 256;

// (2 pi / 60)^2 over a gas constant of 8.314e7 erg/(mol K); a literal of the domain.
inline constexpr double kOmegaFactor = 1.319007e-10;

// What one Levenberg-Marquardt step leaves for the next.
struct StepMemory {
  int mfit = 0;                                            // fitted parameters
  double bestChiSq = 0.0;                                  // lowest sum of squares accepted so far
  Array1<double> trialA = Array1<double>(kMaxParameters);  // trial parameter vector
  // The step; also the right-hand side of its solve and the gradient at the trial point.
  Matrix1<double> trialStep = Matrix1<double>(kMaxParameters, 1);
  Matrix1<double> beta = Matrix1<double>(kMaxParameters, 1);  // gradient at the accepted point
  ArrowSolver solver;
};

// Work space of a pass over the points, sized once for each fit.
struct PassWorkspace {
  std::size_t stride = 0;          // points of the largest dataset, its two extra ones included
  std::vector<double> baseExp;     // [species][point]
  std::vector<double> stepExp;     // [species][point]
  std::vector<double> value;       // [point], F0
  std::vector<double> firstValue;  // [point], F1 at the first step
  std::vector<double> upValue;     // [point], at the least step up
  std::vector<double> downValue;   // [point], at the least step down
  std::vector<double> step;        // [point]
  std::vector<double> derivative;  // [point][touching parameter]
  std::vector<double> residual;    // [point]
  std::vector<PointFacts> facts;   // [dataset from 0], of the vector kernel
  std::vector<double> weights;     // [flat point from 0], of a mean concentration
  std::vector<int> ordinal;        // [parameter from 1] place among the fitted ones, 0 if held
  std::vector<int> touching;       // the fitted parameters that touch the dataset at hand
  Array1<double> work;             // a copy of the parameters with one of them moved
  std::vector<double> ownSteps;    // [parameter from 1], if not empty instead of the model's rule

  // Place among the fitted parameters, from 1, of a column of the dataset at hand.
  int Place(std::size_t column) const {
    return ordinal[static_cast<std::size_t>(touching[column])];
  }
};

struct FitState {
  // Which datasets, and how they are linked.
  std::int16_t NumFitSets = 0;           // N
  std::vector<std::int16_t> FitSetList;  // position in the fit, from 0 -> dataset, from 0
  std::vector<std::int16_t> RefLink;     // position whose reference concentrations are shared
  const Model* FitModel = nullptr;       // null before the first fit
  bool TwoComponentModel = false;
  bool UseMassConservation = false;
  bool CalcLoadingConcs = false;
  bool ConstrainKRatios = false;
  double MCTolerance = 0.25;  // of soft mass conservation
  double Vbar = 0.73;         // ml/g
  double Density = 1.0;       // g/ml
  double TempK = 293.15;      // kelvin

  // Flat points, from 1; the points of a dataset are contiguous.
  std::int32_t FitNumPoints = 0;
  Array1<double> FitR;                 // radius, cm
  Array1<double> FitY;                 // signal; at a mass conservation point its target
  Array1<double> FitYCalc;             // model value, filled after the fit
  Array1<std::int16_t> FitSet;         // position of the dataset in the fit, from 1
  Array1<double> FitX;                 // (r^2 - R0^2) / 2, cm^2
  Array1<double> FitF;                 // sector width, 1 where it is not needed
  Array1<std::int16_t> PointKind;      // 0 data, 1 and 2 mass conservation of A and of B
  Array1<std::int16_t> SetPointCount;  // [1..N] flat points, mass conservation points included
  Array1<std::int32_t> SetFirstPoint;  // [1..N] index of the first flat point

  // Parameters, from 1: N baselines, N ln reference concentrations (N more of B with a second
  // component), then those of the Model.
  std::int16_t ParamsPerSet = 2;  // M: 3 with a second component, else 2
  std::int16_t FitMA = 0;         // MA
  Array1<double> FitA;
  Array1<std::int16_t> FitIA;         // 1 fitted, 0 held
  Array1<std::string> FitParamNames;  // at most 12 characters

  // Constants of each dataset, [1..N].
  Array1<double> SetRefRadius;  // cm
  Array1<double> SetSpeed;      // rpm
  Array1<double> SetEpsA;       // extinction coefficients, signal units/mole
  Array1<double> SetEpsB;
  Array1<double> SetOmegaTerm;    // omega^2 / (R T), mol/(g cm^2)
  Array1<double> SetCellBottomR;  // base, cm
  Array1<double> SetCellTopR;     // meniscus, cm
  Array1<double> SetALoad;        // loading concentrations
  Array1<double> SetBLoad;
  Array1<double> SetCalcLoad;  // calculated loading concentration

  // Results.
  Matrix1<double> FitCovar;  // after the closing step the covariance matrix, parameter order
  double FitChiSq = 0.0;     // sum of squared residuals last evaluated

  std::string CurrentProc;         // the routine last entered; failures name it
  const StopFlag* Stop = nullptr;  // read by every loop; null: nothing stops it. Outlives the run.

  StepMemory Memory;
  PassWorkspace Workspace;

  // Whether a running calculation goes on: nobody has asked it to stop.
  bool FitKeepGoing() const { return Stop == nullptr || !Stop->Raised(); }

  // The end of the per-dataset block of FitA, N times M.
  int SharedBase() const { return NumFitSets * ParamsPerSet; }

  // Parameters that are fitted, baselines and reference concentrations included.
  int NumFitted() const {
    int count = 0;
    for (int l = 1; l <= FitMA; ++l) count += FitIA(l) != 0;
    return count;
  }
};

// The name of parameter l, from 1, without the blanks that fill it.
inline std::string ParameterName(const FitState& fit, int l) {
  return std::string(Trim(fit.FitParamNames(l)));
}

}  // namespace quorvane
