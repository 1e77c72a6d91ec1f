// The errors of the parameters of a fit: profiles with limits that exist, replicates, surfaces of
// the sum of squares and derived quantities.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/array1.h"
#include "stats/confidence.h"
#include "stats/derived.h"
#include "stats/profile.h"
#include "stats/resampling.h"

namespace quorvane {

class Host;
class StopFlag;
struct FitState;

struct ErrorRequest {
  std::vector<int> parameters = {};             // indices in FitA; held ones are passed over
  std::vector<double> levels = {68.27, 95.45};  // percent, each above 0 and below 100
  bool profile = true;
  bool monteCarlo = false;
  bool bootstrap = false;
  int replicates = 1000;                           // of either kind
  std::uint64_t seed = 1;                          // of the replicates
  std::vector<std::pair<int, int>> surfaces = {};  // x and y, indices in FitA, fitted and different
  int surfacePoints = 41;                          // a side, at least 2
  int threads = 0;                                 // at once; 0: one a processor core
};

// All fitted shared parameters of `fit`, or all fitted ones, as ErrorRequest wants them.
std::vector<int> FittedShared(const FitState& fit);
std::vector<int> AllFitted(const FitState& fit);

// The limits of one level; `ratio` is 1 + F(1, NDF; level) / NDF.
struct ProfileLimits {
  double level = 0.0;  // percent
  double ratio = 0.0;
  SideLimit lower;
  SideLimit upper;
};

struct ParameterProfile {
  std::vector<ProfileLimits> limits;  // by level
  std::vector<ProfilePoint> curve;    // rising values, the fit's own among them
};

// What replicates say of one parameter. Mean, deviation and limits need two of them.
struct ParameterReplicates {
  int done = 0;    // came to rest
  int failed = 0;  // did not
  double mean = 0.0;
  double deviation = 0.0;                // standard deviation
  std::vector<PercentileLimits> limits;  // by level
  std::vector<double> values;            // of those done, in their order
};

struct ParameterErrors {
  int parameter = 0;   // index in FitA
  std::string name;    // trimmed FitParamNames
  double value = 0.0;  // at rest
  double error = 0.0;  // standard error; 0 if the covariance gives none
  std::optional<ParameterProfile> profile = {};
  std::optional<ParameterReplicates> monteCarlo = {};
  std::optional<ParameterReplicates> bootstrap = {};
};

struct RatioLevel {
  double level = 0.0;  // percent
  double ratio = 0.0;  // of sums of squares
};

// The sum of squares over two parameters; its region of a level lies below the fit's sum times the
// ratio 1 + 2 F(2, NDF; level) / NDF.
struct ErrorSurface {
  int x = 0;  // index in FitA
  int y = 0;
  std::string xName;  // trimmed FitParamNames
  std::string yName;
  std::vector<double> xs;                      // rising
  std::vector<double> ys;                      // rising
  std::vector<std::vector<double>> sums = {};  // [iy][ix]; NaN where none was found
  std::vector<RatioLevel> ratios = {};
  double xError = 0.0;  // standard errors; 0 if the covariance gives none
  double yError = 0.0;
  double covariance = 0.0;  // of x and y
};

struct ErrorAnalysis {
  bool stopped = false;  // by the user; what was done until then is here
  std::string error;     // why there is nothing; empty if there is
  ErrorRequest request;
  double sum = 0.0;  // of squares of the fit at rest
  int freedom = 0;   // NDF
  double seconds = 0.0;
  Array1<double> values;                    // FitA at rest
  std::vector<ParameterErrors> parameters;  // in the order of FitA
  std::vector<DerivedQuantity> derived;     // see DerivedQuantities; AnalyseErrors leaves it empty
  std::string scaleRemark;                  // see ScaleRemark; likewise
  std::vector<ErrorSurface> surfaces;

  // The lowest sum that was met, at rest, if it lies below the fit's by a relative 1e-6 or more:
  // the limits are those of the fit all the same, around a minimum that is not the best.
  std::optional<BetterFit> better;
};

// Brings a copy of the finished `fit` to rest and analyses its errors on all cores; progress goes
// to `host`. `stop`, raised by the host's events, ends it within the time of a step of a fit.
// Everything but `seconds` is the same on any number of threads. Nothing is logged, and nothing
// thrown for what a fit ran into.
ErrorAnalysis AnalyseErrors(const FitState& fit, const ErrorRequest& request, const StopFlag& stop,
                            Host& host);

// "A lower sum of squares was met ...", for a window or a terminal.
std::string BetterSumText(const ErrorAnalysis& analysis);

}  // namespace quorvane
