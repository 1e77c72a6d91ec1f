#include "solution/protein_constants.h"

#include <algorithm>
#include <vector>

#include "base/csv.h"
#include "base/text.h"
#include "solution/solution_fault.h"
#include "solution/tables.h"

namespace quorvane {

namespace {

constexpr double kWater = 18.0153;                 // Da
constexpr double kTwoHydrogens = 2.0159;           // Da
constexpr double kExtinctionOfDisulphide = 125.0;  // 1/(M cm)
constexpr double kVbarDegC = 25.0;                 // of the table

const std::vector<Residue>& Residues() {
  static const std::vector<Residue> residues = [] {
    std::vector<Residue> rows;
    for (const std::vector<std::string>& row : tables::RowsOf(tables::kResidues)) {
      rows.push_back({row[0][0], row[1], DoubleFromText(row[2]), DoubleFromText(row[3]),
                      DoubleFromText(row[4])});
    }
    return rows;
  }();
  return residues;
}

void CheckDisulphides(std::string_view letters, int disulphides) {
  const auto cysteines = std::count(letters.begin(), letters.end(), 'C');
  if (disulphides < 0) throw SolutionFault("a number of disulphides of 0 or more is wanted");
  if (disulphides <= cysteines / 2) return;
  throw SolutionFault(
      std::to_string(disulphides) +
      " disulphides are more than the sequence has cysteines for: " + std::to_string(cysteines));
}

}  // namespace

const Residue* FindResidue(char letter) {
  const std::vector<Residue>& residues = Residues();
  const auto found = std::find_if(residues.begin(), residues.end(),
                                  [&](const Residue& r) { return r.letter == letter; });
  return found == residues.end() ? nullptr : &*found;
}

const Residue* FindResidueByCode(std::string_view name) {
  const std::vector<Residue>& residues = Residues();
  const auto found = std::find_if(residues.begin(), residues.end(),
                                  [&](const Residue& r) { return r.name == name; });
  return found == residues.end() ? nullptr : &*found;
}

ProteinConstants ConstantsOfProtein(std::string_view letters, int disulphides, double degC) {
  CheckDisulphides(letters, disulphides);
  ProteinConstants protein;
  protein.residues = static_cast<int>(letters.size());
  protein.disulphides = disulphides;
  double mass = 0.0;
  double volume = 0.0;
  for (const char letter : letters) {
    const Residue& residue = *FindResidue(letter);
    mass += residue.mass;
    volume += residue.mass * residue.vbar;
    protein.extinction280 += residue.extinction;
  }
  protein.mass = mass + kWater - disulphides * kTwoHydrogens;
  protein.vbar = volume / mass + kVbarPerKelvin * (degC - kVbarDegC);
  protein.extinction280 += disulphides * kExtinctionOfDisulphide;
  protein.a280 = protein.extinction280 / protein.mass;
  return protein;
}

}  // namespace quorvane
