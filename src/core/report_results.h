// What the fit found: shared values with errors and intervals, values of each dataset, loads.
#pragma once

#include "core/report_section.h"

struct ReportView;

ReportSection ResultsSection(const ReportView& view);
