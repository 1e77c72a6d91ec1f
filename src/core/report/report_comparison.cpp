#include "core/report/report_comparison.h"

#include <algorithm>
#include <span>

#include "base/number_format.h"
#include "core/report/report_view.h"
#include "fit/models.h"
#include "stats/comparison_table.h"

namespace quorvane {

namespace {

struct ComparedFits {
  std::vector<NamedFit> fits;
  std::optional<std::size_t> own;  // place of the fit of the report
};

// The fits of the last comparison.
ComparedFits LastCompared(const QuorvaneModule& module) {
  ComparedFits compared;
  const std::vector<HistoryEntry>& entries = module.Fits.Entries();
  for (std::size_t place = 0; place < entries.size(); ++place) {
    if (!entries[place].compared) continue;
    if (module.Fits.Holds(place, module.LastFit)) compared.own = compared.fits.size();
    compared.fits.push_back({entries[place].name, &entries[place].kept->summary});
  }
  return compared;
}

// What the names stand for.
std::string Introduction(const ComparedFits& compared) {
  std::string text = "The fits are of the same points:";
  for (std::size_t k = 0; k < compared.fits.size(); ++k) {
    const NamedFit& fit = compared.fits[k];
    text += (k == 0 ? " " : ", ") + fit.name + " (" + std::string(fit.summary->model->name) +
            (k == compared.own ? ", the fit of this report)" : ")");
  }
  return text + ".";
}

// A page takes four fits beside each other.
void AddFits(const ComparedFits& compared, const FitComparison& comparison,
             std::vector<ReportTable>& tables) {
  constexpr std::size_t kAcross = 4;
  const std::vector<NamedFit>& fits = compared.fits;
  const std::vector<ComparisonRow> rows = ComparisonRows(fits, &comparison);
  for (std::size_t from = 0; from < fits.size(); from += kAcross) {
    const std::size_t end = std::min(fits.size(), from + kAcross);
    ReportTable table{.title = from == 0 ? "Fits side by side" : "Fits side by side, continued",
                      .head = {""},
                      .rows = {}};
    for (std::size_t k = from; k < end; ++k) {
      table.head.push_back(fits[k].name + (k == compared.own ? " (this report)" : ""));
    }
    for (const ComparisonRow& row : rows) {
      ReportRow cells = {row.name};
      for (std::size_t k = from; k < end; ++k) {
        cells.emplace_back(row.cells[k] == "-" ? kReportNone : row.cells[k]);
      }
      table.rows.push_back(std::move(cells));
    }
    tables.push_back(std::move(table));
  }
}

ReportTable TestsTable(const std::vector<NamedFit>& fits, const FitComparison& comparison) {
  ReportTable table{
      .title = "F tests",
      .head = {"Restricted", "Full", "Held in the restricted", "F", "Freedom", "Probability"},
      .rows = {}};
  for (const FitPair& pair : comparison.pairs) {
    if (!pair.test) continue;
    std::string held;
    for (const std::string& text : pair.restrictions) held += (held.empty() ? "" : ", ") + text;
    table.rows.push_back(
        {fits[pair.restricted].name, fits[pair.full].name, held, FormatParam(pair.test->f),
         std::to_string(pair.test->numerator) + " and " + std::to_string(pair.test->denominator),
         ShownProbability(pair.test->probability)});
  }
  return table;
}

ReportTable Formulas(bool tests) {
  ReportTable table{.title = "How the fits are compared", .head = {}, .rows = {}};
  table.rows = {{"Akaike\u2019s criterion, for few points", {kAICcFormula, true}},
                {"Bayesian criterion", {kBICFormula, true}}};
  if (tests) table.rows.push_back({"F test", {kFFormula, true}});
  table.rows.push_back(
      {"Symbols",
       "n points, S sum of squares, k fitted parameters and, in the criteria, one more "
       "for the noise"});
  return table;
}

}  // namespace

std::optional<ReportSection> ComparisonSection(const ReportView& view) {
  const ComparedFits compared = LastCompared(view.module);
  const std::vector<NamedFit>& fits = compared.fits;
  if (!compared.own || fits.size() < 2 || !RefusalOfComparison(fits).empty()) return std::nullopt;
  const FitComparison comparison = CompareFits(fits);
  ReportSection section{
      .title = "Comparison with other fits", .paragraphs = {Introduction(compared)}, .tables = {}};
  for (const FitPair& pair : comparison.pairs) section.list.push_back(pair.sentence);
  for (const std::string& remark : comparison.remarks) section.list.push_back(remark);
  AddFits(compared, comparison, section.tables);
  ReportTable tests = TestsTable(fits, comparison);
  const bool tested = !tests.rows.empty();
  if (tested) section.tables.push_back(std::move(tests));
  section.tables.push_back(Formulas(tested));
  return section;
}

}  // namespace quorvane
