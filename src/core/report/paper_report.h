// What a paper says of an analysis: methods, results, quality of the fit, files, plots. A plain
// record, made once a fit has finished; report_html and plot/report_pages give it a form.
#pragma once

#include <string>
#include <vector>

#include "base/chart.h"
#include "base/figure.h"
#include "core/program_state.h"
#include "core/report/report_section.h"

namespace quorvane {

struct PaperReport {
  std::string title;
  std::string origin;  // program, version, date and time
  std::vector<ReportSection> sections;
  Figure figure;  // all datasets of the fit
  std::string figureCaption;
  // Data and curve above, residuals below, one a dataset, unless the figure shows each by itself;
  // then those of the error analysis.
  std::vector<Chart> charts;
};

// The report of module.LastFit, which must be there. Reads the scan files
// for their digests; one that cannot be read, or no longer holds its data, is named as such. A
// value that cannot be (the error of a parameter that the data do not determine) is "n/a".
PaperReport MakePaperReport(const QuorvaneModule& module);

}  // namespace quorvane
