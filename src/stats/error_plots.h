// Pictures of an error analysis.
#pragma once

#include "base/chart.h"
#include "stats/error_analysis.h"

namespace quorvane {

// The profile of a parameter that has one: the sum of squares over its value, the parabola that its
// standard error stands for, a line at the sum of each level and a mark at each limit. An open side
// is shown as far as 6 standard errors.
Chart PlotProfile(const ErrorAnalysis& analysis, const ParameterErrors& errors);

// Histogram of the replicates of a parameter, with a mark at the value of the fit and at each
// limit. Without replicates an empty chart. `title` names the method.
Chart PlotReplicates(const ParameterErrors& errors, const ParameterReplicates& replicates,
                     const std::string& title);

// The surface as filled regions of its levels, with the fit and, as lines, the ellipses that the
// covariance stands for.
Chart PlotSurface(const ErrorAnalysis& analysis, const ErrorSurface& surface);

}  // namespace quorvane
