#include "core/report/report_file.h"

#include "base/files.h"
#include "base/text.h"
#include "core/report/paper_report.h"

namespace quorvane {

std::optional<ReportFormat> ReportFormatOf(const std::filesystem::path& path) {
  const std::string suffix = ToLower(PathText(path.extension()));
  if (suffix == ".html" || suffix == ".htm") return ReportFormat::kHtml;
  if (suffix == ".pdf") return ReportFormat::kPdf;
  return std::nullopt;
}

void WriteReport(const QuorvaneModule& module, const std::filesystem::path& path,
                 const ReportDrawing& drawing) {
  const std::optional<ReportFormat> format = ReportFormatOf(path);
  if (!format) throw FileFault(PathText(path) + ": a name ending in .html or .pdf is wanted");
  const PaperReport report = MakePaperReport(module);
  if (format == ReportFormat::kPdf) {
    WriteWholeFile(path, drawing.pages(report.title, ReportBody(report, kFigureImage),
                                       report.figure, report.charts));
  } else {
    WriteWholeFile(path, ReportHtml(report, drawing.pictures));
  }
}

}  // namespace quorvane
