// What the fit found: shared values with errors and intervals, values of each dataset, loads.
#pragma once

#include "core/report/report_section.h"

namespace quorvane {

struct ReportView;

ReportSection ResultsSection(const ReportView& view);

}  // namespace quorvane
