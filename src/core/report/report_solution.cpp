#include "core/report/report_solution.h"

#include <cmath>

#include "base/number_format.h"
#include "base/text.h"
#include "core/report/report_view.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

bool Same(double taken, double computed) {
  constexpr double kSame = 1e-6;  // of the number, as it is kept in an archive
  return std::fabs(taken - computed) <= kSame * std::fabs(computed);
}

// "20 mM sodium chloride, 5 mM HEPES".
std::string BufferProse(const BufferRecipe& buffer) {
  if (buffer.empty()) return "water";
  std::string text;
  for (const BufferPart& part : buffer) {
    std::string name = part.component->name;
    const bool isWord = name[1] >= 'a' && name[1] <= 'z' && !part.component->detergent;
    if (isWord) name.front() = ToLower(name).front();
    text += (text.empty() ? "" : ", ") + AmountText(part) + " " + name;
  }
  return text;
}

std::string ProteinText(const SolutionEntry& entry, const ProteinConstants& protein) {
  return (entry.name.empty() ? "a protein" : entry.name) + " (" + std::to_string(protein.residues) +
         " residues, " + ReportNumber(protein.mass, "#,##0.0") + " Da)";
}

void AddProtein(const ReportView& view, const ProteinConstants& protein, const std::string& degC,
                std::vector<std::string>& paragraphs) {
  const SolutionEntry& entry = view.module.Solution;
  const bool ofA = Same(view.record.page.Vbar, protein.vbar);
  if (ofA || (view.Two() && Same(view.record.page.VbarB, protein.vbar))) {
    paragraphs.push_back(
        "The partial specific volume" +
        std::string(!view.Two() ? ""
                    : ofA       ? " of A"
                                : " of B") +
        ", " + ReportNumber(protein.vbar, "0.0000") + " ml/g at " + degC +
        ", is the mean of the residues of " + ProteinText(entry, protein) +
        ", weighted by mass (Cohn & Edsall 1943), with the change with temperature of "
        "Durchschlag (1986).");
  }
  const double coefficient = protein.extinction280 * entry.path;
  bool taken = false;
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    const Dataset& set = view.DatasetOf(d);
    taken = taken || Same(set.ExtCoeff, coefficient) ||
            (view.Two() && Same(set.ExtCoeff2, coefficient));
  }
  if (!taken || !(coefficient > 0.0)) return;
  paragraphs.push_back("The extinction coefficient of " + ProteinText(entry, protein) +
                       " at 280 nm, " + ReportNumber(protein.extinction280, "#,##0") +
                       " 1/(M cm) in a path of " + ReportNumber(entry.path, "0.0##") +
                       " cm, is the sum over tryptophan, tyrosine and cystine (Pace et al. 1995; " +
                       std::to_string(protein.disulphides) + " disulphides).");
}

}  // namespace

std::optional<ReportSection> SolutionSection(const ReportView& view) {
  const SolutionEntry& entry = view.module.Solution;
  if (entry == SolutionEntry()) return std::nullopt;
  const double degC = entry.degC.value_or(view.record.setup.DegC);
  const std::string at = ReportNumber(degC, "#0.0 \u00b0C");
  SolutionConstants constants;
  try {
    constants = CalcSolution(RequestOf(entry, degC));
  } catch (const SolutionFault&) {  // such as a temperature beyond those known
    return std::nullopt;
  }
  ReportSection section{.title = "Constants of the solution", .paragraphs = {}, .tables = {}};
  if (constants.protein) AddProtein(view, *constants.protein, at, section.paragraphs);
  if (Same(view.record.page.Density, *constants.density)) {
    section.paragraphs.push_back(
        "The density, " + ReportNumber(*constants.density, "0.00000") + " g/ml at " + at +
        ", is that of " + BufferProse(entry.buffer) +
        (entry.buffer.empty()
             ? " (Kell 1975)."
             : ", from increments at 20 \u00b0C (Laue et al. 1992) and the density "
               "of water (Kell 1975)."));
  }
  if (section.paragraphs.empty()) return std::nullopt;
  return section;
}

}  // namespace quorvane
