// How well the curves meet the data: the whole fit, each dataset, remarks. Says so where the
// arithmetic of the datasets fails.
#pragma once

#include "core/report/report_section.h"

namespace quorvane {

struct ReportView;

ReportSection QualitySection(const ReportView& view);

}  // namespace quorvane
