// A report as HTML.
#pragma once

#include <functional>
#include <string>

#include "core/report/paper_report.h"

namespace quorvane {

// What the engine cannot draw itself, as the bytes of SVG files.
struct ReportPictures {
  std::function<std::string(const Chart&)> chart;
  std::function<std::string(const Figure&)> figure;
};

// Title and sections of the report without its charts, as elements for the body of a document.
// Well-formed as XML too; texts are escaped, characters that XML does not know left out. The figure
// is an image of the source `figure`.
std::string ReportBody(const PaperReport& report, const std::string& figure);

// The report as one HTML 5 document that needs no other file.
std::string ReportHtml(const PaperReport& report, const ReportPictures& pictures);

}  // namespace quorvane
