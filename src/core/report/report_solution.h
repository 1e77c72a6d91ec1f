// Where vbar, density and extinction of a fit come from, if from sequence and buffer.
#pragma once

#include <optional>

#include "core/report/report_section.h"

namespace quorvane {

struct ReportView;

// Nothing if none of the constants that the fit was made with is one that the session's entry
// (module.Solution) gives.
std::optional<ReportSection> SolutionSection(const ReportView& view);

}  // namespace quorvane
