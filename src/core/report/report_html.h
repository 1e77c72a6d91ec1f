// A report as HTML.
#pragma once

#include <functional>
#include <string>

#include "core/report/paper_report.h"

namespace quorvane {

// Title and sections of the report without its charts, as elements for the body of a document.
// Well-formed as XML too; texts are escaped, characters that XML does not know left out.
std::string ReportBody(const PaperReport& report);

// The report as one HTML 5 document that needs no other file. `picture` gives a chart as the bytes
// of an SVG file.
std::string ReportHtml(const PaperReport& report,
                       const std::function<std::string(const Chart&)>& picture);

}  // namespace quorvane
