// What two finished fits are compared by: a small value that stands without the arrays of its fit,
// made from a fit, or from what a file says of one.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "fit/fit_state.h"
#include "stats/fit_rest.h"

namespace quorvane {

struct SharedParameter;

// Data points of one dataset, mass conservation points left out, in the order of the fit. The three
// are of one length.
struct FittedCurve {
  std::vector<double> r;           // radius, cm
  std::vector<double> y;           // signal
  std::vector<double> calculated;  // model value
};

// One a dataset, in the order of the fit. Needs FitYCalc.
std::vector<FittedCurve> FittedCurves(const FitState& fit);

// SHA-256 over radius and signal of every point in turn, each as the 8 bytes of its double, the
// lowest first: 64 lower-case hexadecimal digits. Fits of one digest are fits of the same points.
std::string PointsDigest(std::span<const FittedCurve> curves);

// Runs of residuals of all datasets together: (sum of runs - sum of expected) / sqrt(sum of
// variances), each dataset by itself along its radius, see CountRuns. A dataset with residuals of
// one sign only has no variance and adds nothing. Absent if no dataset has one.
std::optional<double> PooledRunsZ(std::span<const FittedCurve> curves);

// A parameter of a fit, in the order of FitA.
struct SummaryParameter {
  std::string name;  // trimmed FitParamNames
  double value = 0.0;
  std::optional<double> error;  // standard error; absent where the fit has none
  bool fitted = false;
};

// What a fit takes as known of a dataset.
struct SetConditions {
  double speed = 0.0;      // rpm
  double refRadius = 0.0;  // cm
  double extCoeff = 0.0;
  double extCoeffB = 0.0;
  double meniscus = 0.0;  // cm; 0 where the model does not need it
  double base = 0.0;
  double loadA = 0.0;
  double loadB = 0.0;
};

struct FitConditions {
  double kelvin = 0.0;
  double vbar = 0.0;
  double density = 0.0;
  double tolerance = 0.0;           // of soft mass conservation
  std::vector<SetConditions> sets;  // by position in the fit
};

struct FitSummary {
  const Model* model = nullptr;
  std::vector<SummaryParameter> parameters;
  std::vector<int> links;  // by position in the fit: the position, from 0, whose reference
                           // concentrations are shared, its own if none; of as many positions as
                           // there are datasets
  bool massConservation = false;
  bool constrainedRatios = false;           // LnK2 and LnK3 are then ratios to K1
  std::optional<FitConditions> conditions;  // absent: not known
  int points = 0;                           // n, mass conservation points included
  double sum = 0.0;                         // S, of squares at the fitted values
  std::optional<double> runsZ;
  std::optional<bool> atRest;  // absent: not known
  std::string digest;          // PointsDigest

  int Sets() const { return static_cast<int>(links.size()); }
  int Fitted() const;                         // parameters, baselines and concentrations included
  int Freedom() const;                        // n - Fitted()
  std::optional<double> Rms() const;          // sqrt(S / Freedom()); absent without freedom
  const SummaryParameter& Shared(int) const;  // of the model, from 0
  const SummaryParameter* Shared(const SharedParameter& shared) const;  // null: not of the model

  // The criteria below with k = Fitted() + 1: the variance of the noise is estimated too. Absent
  // for a sum of 0 and where their divisor is not above 0.

  // n ln(S/n) + 2 k + 2 k (k + 1) / (n - k - 1): Akaike's criterion, corrected for few points.
  // Source: C. M. Hurvich & C.-L. Tsai, Biometrika 76 (1989) 297.
  std::optional<double> AICc() const;

  // n ln(S/n) + k ln n. Source: G. Schwarz, Ann. Statist. 6 (1978) 461.
  std::optional<double> BIC() const;
};

// As text, for tables.
inline constexpr const char* kAICcFormula = "AICc = n ln(S/n) + 2 k + 2 k (k + 1) / (n - k - 1)";
inline constexpr const char* kBICFormula = "BIC = n ln(S/n) + k ln n";

// Of the finished fit `fit`. Needs FitYCalc; standard errors need FitCovar. `digest` is that of its
// points where somebody knows it already: working it out takes 10 ms for 150,000 points.
FitSummary Summarise(const FitState& fit, const std::optional<RestVerdict>& rest,
                     std::string digest = {});

}  // namespace quorvane
