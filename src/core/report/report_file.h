// The report of a fit as a file for a paper's supplement.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/figure.h"
#include "core/program_state.h"
#include "core/report/report_html.h"

namespace quorvane {

enum class ReportFormat { kHtml, kPdf };

// By the suffix: .html, .htm or .pdf in either case; nothing for any other.
std::optional<ReportFormat> ReportFormatOf(const std::filesystem::path& path);

// What the engine cannot do itself. Both may throw std::runtime_error.
struct ReportDrawing {
  ReportPictures pictures;
  // As the bytes of a PDF: `body`, elements of HTML in which an image of kFigureImage is
  // `figure`, then the charts.
  std::function<std::string(const std::string& title, const std::string& body, const Figure& figure,
                            const std::vector<Chart>& charts)>
      pages;
};

// Writes the report of module.LastFit, which must be there, in the format of the suffix. The
// file is written whole or not at all.
// Throws FileFault, for a suffix that says no format too, and what `drawing` throws.
void WriteReport(const QuorvaneModule& module, const std::filesystem::path& path,
                 const ReportDrawing& drawing);

}  // namespace quorvane
