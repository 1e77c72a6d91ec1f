// Joint confidence intervals of the shared parameters of a fit, by a search on the variance ratio.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/array1.h"

namespace quorvane {

class Host;
class StopFlag;
struct FitState;

enum class RatioMethod {
  kEqualFreedom = 1,  // F(NDF, NDF, P)
  kParameters = 2,    // 1 + (Nparm / NDF) F(Nparm, NDF, P)
};

struct ConfidenceRequest {
  double percent = 95.46;  // above 50, below 100
  RatioMethod method = RatioMethod::kParameters;
  std::vector<bool> chosen;  // by shared parameter, from 0; held ones are passed over
};

struct ConfidenceInterval {
  std::string name;  // trimmed caption
  double value = 0.0;
  double lower = 0.0;
  double upper = 0.0;

  // A limit of 0 or at the value itself is none: the search did not find where the ratio is
  // reached.
  bool HasLower() const { return lower != 0.0 && lower != value; }
  bool HasUpper() const { return upper != 0.0 && upper != value; }
};

// Values with a lower sum of squares than the fit under search.
struct BetterFit {
  double sum = 0.0;
  Array1<double> parameters;  // in the order of FitA
};

struct ConfidenceOutcome {
  bool stopped = false;  // by the user
  std::string error;     // description of the fault that ended it; empty if none did
  double ratio = 0.0;    // the variance ratio sought
  double seconds = 0.0;  // of the whole search, steady clock
  std::vector<ConfidenceInterval> intervals;  // those found, in the order of FitA

  // The best that the searches met, if it lies below the fit by a relative 1e-3 or more: then the
  // fit did not stand at its best minimum, and its intervals are not to be trusted.
  std::optional<BetterFit> better;
};

// "A better minimum was met in the search: ...", for a window or a terminal.
std::string BetterFitText(const FitState& fit, const BetterFit& better);

// Names the limits that stand at the value itself, for which the log has no line; empty if none do.
std::string MissingLimitsText(const ConfidenceOutcome& outcome);

// Whether a side had no limit that the walk could reach, for which the search gives 0.
bool HasLimitOfZero(const ConfidenceOutcome& outcome);

// What a window shows of a shared parameter.
struct ConfidenceRow {
  std::string_view caption;
  std::string value;    // by FormatParam
  bool fitted = false;  // a held one has no interval
};

// The shared parameters of the finished fit `fit`, in the order of FitA.
std::vector<ConfidenceRow> ConfidenceRows(const FitState& fit);

// Searches the limits of the chosen parameters around the fit that `fit` holds and logs them. Each
// parameter is searched on its own copy of `fit` on its own thread, and the lines come in the order
// of the parameters, the same as one after the other would give. `stop`, raised by the host's
// events, ends all of them; intervals logged until then stand. A fault is logged and ends the
// search.
ConfidenceOutcome CalcConfidence(const FitState& fit, const ConfidenceRequest& request,
                                 const StopFlag& stop, Host& host);

}  // namespace quorvane
