// The last comparison of fits in the report of one of them.
#pragma once

#include <optional>

#include "core/report/report_section.h"

namespace quorvane {

struct ReportView;

// Nothing where no comparison was made, where the fit had no part in it, where fewer than two of
// its fits are left, and where they are of different points.
std::optional<ReportSection> ComparisonSection(const ReportView& view);

}  // namespace quorvane
