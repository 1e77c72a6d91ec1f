// The pictures of reports, and reports as PDF.
#pragma once

#include <string>
#include <vector>

#include "base/chart.h"
#include "base/figure.h"
#include "plot/chart_export.h"

namespace quorvane {

// Of a chart in a report that is no PDF: the natural layout.
inline constexpr PictureSize kReportChart = {600, 540};

// As the bytes of SVG files. A QApplication must exist (offscreen.h).
std::string RenderReportChart(const Chart& chart);
std::string RenderReportFigure(const Figure& figure);  // in its size on paper

// The bytes of a PDF of A4 pages: `body`, elements of HTML with tables, in which an image of
// kFigureImage stands for `figure`, then the charts, two beside each other where there are more
// than two; all of them as drawings. Each page bears `title` and its number at its foot. A short
// table stays on one page; the head of a long one stands on all pages that it reaches, and a row on
// one. A QApplication must exist (offscreen.h).
// Throws std::runtime_error when there is none and when the PDF cannot be made.
std::string RenderReportPages(const std::string& title, const std::string& body,
                              const Figure& figure, const std::vector<Chart>& charts);

}  // namespace quorvane
