// What was measured and how it was analysed: summary, conditions, datasets, points, parameters.
#pragma once

#include "core/report_section.h"

struct ReportView;

ReportSection MethodsSection(const ReportView& view);
