// The figure of a report, and the pictures that it does not make needless.
#pragma once

#include "core/report/paper_report.h"

namespace quorvane {

struct ReportView;

// Fills figure, its caption, and the charts of single datasets.
void AddFigure(const ReportView& view, PaperReport& report);

}  // namespace quorvane
