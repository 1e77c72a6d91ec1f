// Which program and which files the fit was made with. Reads the scan files for their digests.
#pragma once

#include "core/report_section.h"

struct ReportView;

ReportSection FilesSection(const ReportView& view);
