// What a paper says of an analysis: methods, results, quality of the fit, files, plots. A plain
// record, made once a fit has finished; report_html and plot/report_pages give it a form.
#pragma once

#include <string>
#include <vector>

#include "base/chart.h"
#include "core/program_state.h"

// UTF-8. A formula is written as Reaction (fit/models.h) says.
struct ReportText {
  ReportText(std::string plain = {}, bool isFormula = false)
      : text(std::move(plain)), formula(isFormula) {}
  ReportText(const char* plain) : text(plain) {}

  std::string text;
  bool formula = false;
};

struct ReportTable {
  std::string title;
  std::vector<std::string> head;  // empty: a list of names, each with what there is to say
  std::vector<std::vector<ReportText>> rows;  // each with as many cells
};

struct ReportSection {
  std::string title;
  std::vector<std::string> paragraphs;
  std::vector<ReportTable> tables;
};

struct PaperReport {
  std::string title;
  std::string origin;  // program, version, date and time
  std::vector<ReportSection> sections;
  std::vector<Chart> charts;  // one a dataset: data and curve above, residuals below
};

// The report of the fit that module.LastFit records, which must have finished. Reads the scan files
// for their digests; one that cannot be read, or no longer holds its data, is named as such. A
// value that cannot be (the error of a parameter that the data do not determine) is "n/a".
PaperReport MakePaperReport(const QuorvaneModule& module);
