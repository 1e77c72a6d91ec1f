// KeptFit: what is known of a finished fit without its arrays. It can be listed and compared, and
// its values can be the start of another fit.
#pragma once

#include <string>
#include <vector>

#include "stats/fit_summary.h"

namespace quorvane {

struct FinishedFit;
struct Dataset;

// A scan by what it is found again with.
struct ScanName {
  std::string path;
  std::string name;
  int copy = 0;  // among the datasets with this path and name, from 0

  bool operator==(const ScanName&) const = default;
};

// The names of datasets, by their positions.
std::vector<ScanName> ScanNames(const std::vector<Dataset>& datasets);

struct KeptFit {
  FitSummary summary;
  std::vector<ScanName> scans;  // by position in the fit
  double degC = 20.0;           // temperature of the fit
  bool loadingConcs = false;    // whether loading concentrations were asked for
};

// `digest`: of its points, if it is known already.
KeptFit KeptOf(const FinishedFit& fit, std::string digest = {});

}  // namespace quorvane
