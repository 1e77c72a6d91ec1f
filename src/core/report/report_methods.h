// What was measured and how it was analysed: summary, conditions, datasets, points, parameters.
#pragma once

#include "core/report/report_section.h"

namespace quorvane {

struct ReportView;

ReportSection MethodsSection(const ReportView& view);

}  // namespace quorvane
