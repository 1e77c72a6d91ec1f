// What a plan is expected to tell: the standard error of every parameter, and the best speeds.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/stop_flag.h"
#include "sim/plan.h"
#include "sim/plan_information.h"
#include "sim/plan_scans.h"

namespace quorvane {

// A scan of a plan as one looks at it.
struct PlannedScan {
  double speed = 0.0;  // rpm
  double load = 0.0;   // molar, of A
  std::optional<double> loadB = {};
  std::size_t column = 0;           // from 0
  std::size_t wavelength = 0;       // from 0
  std::vector<double> r = {};       // cm, all points of the column
  std::vector<double> signal = {};  // without noise
  std::vector<bool> good = {};      // not above the detector's limit
  int points = 0;                   // good ones
  double lowest = 0.0;              // signal of the good points; 0 without any
  double highest = 0.0;
  double sigma = 0.0;  // apparent, over the whole column: d ln signal / d (r^2/2), 1/cm^2
};

// What is expected of a parameter that the fit looks for.
struct ExpectedError {
  const ModelParameter* parameter = nullptr;
  double value = 0.0;              // the truth
  std::optional<double> sd;        // nothing if the plan cannot determine it
  std::optional<double> relative;  // sd over |value|; nothing for a value of 0
};

// Whether the error of a parameter is measured by its value: that of weights, stoichiometries and
// virial coefficients; not that of ln K and fractions, where the error says enough as it is.
bool ErrorIsRelative(const ModelParameter& parameter);

// The error in percent of the value where that has a meaning.
std::optional<double> PercentOf(const ExpectedError& error);

// A choice of speeds. `score`: sum over the parameters of (sd / value)^2 where the error is
// relative, of sd^2 elsewhere; the least is the best.
struct SpeedChoice {
  std::vector<double> speeds;             // in the order of the candidates
  std::vector<std::optional<double>> sd;  // in the order of the parameters
  std::optional<double> score;            // nothing if a parameter is not determined
};

// So many of the best choices are kept.
inline constexpr std::size_t kMostRanked = 100;

struct PlanResult {
  std::vector<double> speeds;      // of the plan, or the best choice
  std::vector<PlannedScan> scans;  // by speed, column and wavelength
  std::vector<ExpectedError> errors;
  // Of the parameters with each other; nothing where one is not determined.
  std::vector<std::vector<std::optional<double>>> correlations;
  std::vector<double> leftOut;       // candidates that lead beyond all numbers, rpm
  std::vector<SpeedChoice> ranking;  // of candidates: the best kMostRanked, best first
  std::size_t choices = 0;           // all that were ranked
  std::vector<std::string> remarks;  // plain sentences on what stands in the way, see plan_traps.h
};

// Works a plan out that keeps all rules. The standard errors are those of a fit of all scans:
// noise^2 times the inverse of J^T J at the truth, over all parameters that a fit would have,
// baselines and reference concentrations too.
// Throws ArithmeticFault, naming the scan, where the plan leads beyond all numbers; of candidates
// only if fewer than `choose` are left. `stop`, if there is one, ends it with a result without
// speeds.
PlanResult PlanExperiment(const ExperimentPlan& plan, const StopFlag* stop = nullptr);

// The fit of a plan's speeds at the truth, with signals without noise.
FitState FitOf(const ExperimentPlan& plan, const std::vector<double>& speeds);

// One speed or load of a plan, which is moved while all else stays.
struct PlanAxis {
  enum class Kind { kSpeed, kLoad, kLoadB } kind = Kind::kSpeed;
  std::size_t place = 0;  // in its list, from 0
};

// Standard errors, as PlanExperiment gives them, with the speed or load at each of `values`;
// nothing at a value that breaks a rule or leads beyond all numbers, and after a stop. Not for
// candidates.
std::vector<std::vector<std::optional<double>>> ErrorsAlong(const ExperimentPlan& plan,
                                                            const PlanAxis& axis,
                                                            const std::vector<double>& values,
                                                            const StopFlag* stop = nullptr);

}  // namespace quorvane
