// The residuals of a dataset under several fits.
#pragma once

#include <string>
#include <vector>

#include "base/chart.h"
#include "stats/fit_summary.h"

namespace quorvane {

struct NamedCurve {
  std::string name;  // of the fit
  FittedCurve curve;
};

// A panel a fit, all on one scale: data minus model against the radius, with the line of zero.
Chart PlotComparedResiduals(const std::string& dataset, const std::vector<NamedCurve>& fits);

}  // namespace quorvane
