// How well the curves meet the data: the whole fit, each dataset, remarks. Says so where the
// arithmetic of the datasets fails.
#pragma once

#include "core/report_section.h"

struct ReportView;

ReportSection QualitySection(const ReportView& view);
