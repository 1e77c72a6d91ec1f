// How good a finished fit is: whether the residuals of each dataset look like noise, and whether
// the parameters can be believed.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "fit/fit_page.h"
#include "stats/fit_rest.h"

namespace quorvane {

struct FitState;

// Beyond these a row is pointed out.
inline constexpr double kRunsLimit = 1.96;    // |Z|: 5 % of random sequences lie beyond
inline constexpr double kLowestDurbin = 1.5;  // rule of thumb; 2 without serial correlation
inline constexpr double kHighestDurbin = 2.5;

// Runs of residuals of one sign.
struct RunsTest {
  int positive = 0;  // residuals above 0, and below; those of 0 are left out
  int negative = 0;
  int runs = 0;
  double expected = 0.0;    // mean of random sequences of as many signs
  double variance = 0.0;    // of such sequences
  std::optional<double> z;  // deviation from it in standard deviations; absent for one sign only
};

// Number of runs against its distribution in random order, without correction for continuity:
//   expected = 2 p n / (p + n) + 1
//   variance = 2 p n (2 p n - p - n) / ((p + n)^2 (p + n - 1))
// The normal approximation is good from about 10 residuals of each sign.
// Source: Wald & Wolfowitz, Ann. Math. Statist. 11 (1940) 147; Siegel, Nonparametric Statistics for
// the Behavioral Sciences (1956), chapter 4.
RunsTest CountRuns(std::span<const double> residuals);

// Sum of (e[k] - e[k-1])^2 over the sum of e[k]^2: 0 to 4, near 2 for independent residuals, lower
// where neighbours are alike. Absent for fewer than two residuals and for all 0.
// Source: Durbin & Watson, Biometrika 37 (1950) 409.
std::optional<double> DurbinWatson(std::span<const double> residuals);

// Residuals (signal less model) of one dataset, in rising order of radius. Mass conservation
// points have no part in it.
struct SetQuality {
  int dataset = 0;     // number, from 1
  int points = 0;      // N
  double rms = 0.0;    // square root of the sum of squares over N, signal units
  double share = 0.0;  // of the sum of squares of all datasets, 0 to 1
  RunsTest runs;
  std::optional<double> durbinWatson;

  bool OutOfRandomRuns() const;    // |Z| above kRunsLimit, or all residuals of one sign
  bool OutOfRandomDurbin() const;  // outside kLowestDurbin to kHighestDurbin
};

struct StrongCorrelation {
  std::string first;  // trimmed FitParamNames
  std::string second;
  double coefficient = 0.0;
};

struct ImplausibleValue {
  std::string name;
  double value = 0.0;
  std::string reason;  // "is not positive"
};

struct FitQuality {
  std::vector<SetQuality> sets;
  std::vector<StrongCorrelation> correlations;  // by falling magnitude
  bool correlationsKnown = true;                // false: the covariance gives none
  std::vector<ImplausibleValue> implausible;
  std::vector<std::string> atDefault;  // "vbar", "vbar(B)", "density" nobody has set
};

// The quality of the finished fit `fit`, whose shared values and constants stand in `page`; `set`
// says which of the constants somebody has set.
// Correlations count as strong above `critical` in magnitude. Needs FitYCalc and FitCovar.
// A buoyant weight must have the sign of 1 - vbar density, alpha lie in 0 to 1, N be at least 1.
// Throws ArithmeticFault.
FitQuality CalcFitQuality(const FitState& fit, const FitPage& page, const ConstantsSet& set,
                          double critical);

// What to look at, in plain sentences, those about single datasets last; none if nothing was found.
// A known `rest` that is not all well comes first.
std::vector<std::string> QualityRemarks(const FitQuality& quality,
                                        const std::optional<RestVerdict>& rest = std::nullopt);

}  // namespace quorvane
