// Which program and which files the fit was made with. Reads the scan files for their digests.
#pragma once

#include "core/report/report_section.h"

namespace quorvane {

struct ReportView;

ReportSection FilesSection(const ReportView& view);

}  // namespace quorvane
