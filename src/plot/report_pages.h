// Reports as PDF.
#pragma once

#include <string>
#include <vector>

#include "base/chart.h"
#include "plot/chart_export.h"

namespace quorvane {

// Of a chart in a report that is no PDF: the natural layout.
inline constexpr PictureSize kReportChart = {600, 540};

// The bytes of a PDF of A4 pages: `body`, elements of HTML with tables, then the charts as
// drawings, two beside each other where there are more than two. Each page bears `title` and its
// number at its foot; the head of a table stands on all pages that the table reaches, and a row on
// one. A QApplication must exist (offscreen.h).
// Throws std::runtime_error when there is none and when the PDF cannot be made.
std::string RenderReportPages(const std::string& title, const std::string& body,
                              const std::vector<Chart>& charts);

}  // namespace quorvane
