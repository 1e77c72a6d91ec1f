#include "cli/compare_command.h"

#include <algorithm>
#include <ostream>

#include "base/files.h"
#include "base/number_format.h"
#include "cli/fit_file.h"
#include "fit/models.h"
#include "job/json_comparison.h"
#include "stats/comparison_table.h"

namespace quorvane {

namespace {

std::string Shown(const std::optional<double>& value, const char* pattern) {
  return value ? FormatNumber(*value, pattern) : "-";
}

using Row = std::vector<std::string>;

Row RowOf(const NamedFit& named, const AkaikeRank& rank) {
  const FitTexts fit = TextsOf(*named.summary);
  return {named.name,
          fit.model,
          fit.fitted,
          fit.sum,
          fit.rms,
          fit.freedom,
          fit.aicc,
          Shown(rank.difference, "0.00"),
          Shown(rank.weight, "0.000"),
          fit.bic,
          fit.runsZ,
          fit.rest};
}

// Columns as wide as their widest text, the first two flush left, two blanks apart.
void PrintTable(const std::vector<Row>& rows, std::ostream& out) {
  std::vector<std::size_t> widths(rows.front().size(), 0);
  for (const Row& row : rows) {
    for (std::size_t k = 0; k < row.size(); ++k) widths[k] = std::max(widths[k], row[k].size());
  }
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t k = 0; k < row.size(); ++k) {
      const std::string blanks(widths[k] - row[k].size(), ' ');
      line += (k == 0 ? "" : "  ") + (k < 2 ? row[k] + blanks : blanks + row[k]);
    }
    out << line << '\n';
  }
}

void Print(const std::vector<NamedFit>& fits, const FitComparison& comparison, std::ostream& out) {
  std::vector<Row> rows = {{"file", "model", "fitted", "sum of squares", "rms", "NDF", "AICc",
                            "difference", "weight", "BIC", "runs Z", "at rest"}};
  for (std::size_t k = 0; k < fits.size(); ++k) {
    rows.push_back(RowOf(fits[k], comparison.ranks[k]));
  }
  PrintTable(rows, out);
  out << "\nn = " << fits.front().summary->points
      << " points, S = sum of squares, k = fitted parameters + 1 in the criteria\n"
      << kAICcFormula << '\n'
      << kBICFormula << '\n'
      << kFFormula << ", k_r and k_f their fitted parameters\n";
  for (const FitPair& pair : comparison.pairs) {
    out << '\n';
    if (pair.test) {
      out << "F(" << pair.test->numerator << ", " << pair.test->denominator
          << ") = " << FormatParam(pair.test->f) << ", probability "
          << ShownProbability(pair.test->probability) << '\n';
    }
    out << pair.sentence << '\n';
  }
  for (const std::string& remark : comparison.remarks) out << '\n' << remark << '\n';
}

}  // namespace

ExitStatus RunCompare(const CompareArguments& arguments, const CommandStreams& streams) {
  std::vector<FitSummary> summaries;
  for (const std::string& file : arguments.files) {
    summaries.push_back(ReadFitFile(PathFromText(file)));
  }
  std::vector<NamedFit> fits;
  for (std::size_t k = 0; k < summaries.size(); ++k) {
    fits.push_back({arguments.files[k], &summaries[k]});
  }
  if (const std::string refusal = RefusalOfComparison(fits); !refusal.empty()) {
    streams.err << refusal << '\n';
    return ExitStatus::kNotDone;
  }
  const FitComparison comparison = CompareFits(fits);
  Print(fits, comparison, streams.out);
  if (!arguments.json.empty()) {
    WriteWholeFile(PathFromText(arguments.json), JsonText(ComparisonJson(fits, comparison)));
  }
  return ExitStatus::kDone;
}

}  // namespace quorvane
