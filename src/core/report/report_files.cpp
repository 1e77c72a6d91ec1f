#include "core/report/report_files.h"

#include "core/report/report_sources.h"
#include "core/report/report_view.h"

namespace quorvane {

ReportSection FilesSection(const ReportView& view) {
  ReportSection section{.title = "Program and files",
                        .paragraphs = {"Made with Quorvane " + std::string(ProgramVersion()) +
                                       ". SHA-256 is a digest of the bytes of a file: equal "
                                       "digests, equal files."},
                        .tables = {}};
  ReportTable table{.title = "Scan files", .head = {"Datasets", "File", "SHA-256"}, .rows = {}};
  for (const SourceFile& file : SourceFiles(view.record.datasets, view.fit.FitSetList)) {
    table.rows.push_back({file.numbers.empty() ? std::string("blank") : NumberList(file.numbers),
                          file.path.empty() ? std::string("not stated") : file.path, file.state});
  }
  if (view.NeedsWidth()) {
    const SourceFile cells = CellFile(view.module.ChannelFile);
    table.rows.push_back({"cells", cells.path, cells.state});
  }
  section.tables.push_back(std::move(table));
  return section;
}

}  // namespace quorvane
