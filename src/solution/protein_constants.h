// Mass, partial specific volume and extinction of a protein, from its sequence.
#pragma once

#include <string>
#include <string_view>

namespace quorvane {

// A row of data/residues.csv, which names the sources.
struct Residue {
  char letter;
  std::string name;   // "Ala"
  double mass;        // Da, of the residue
  double vbar;        // ml/g at 25 deg C
  double extinction;  // 1/(M cm) at 280 nm
};

// The residue of a letter in upper case, null if there is none.
const Residue* FindResidue(char letter);

// The residue of a name such as "Ala", null if there is none.
const Residue* FindResidueByCode(std::string_view name);

struct ProteinConstants {
  int residues = 0;
  int disulphides = 0;
  double mass = 0.0;           // Da: residues, the ends' water, 2 H less for each disulphide
  double vbar = 0.0;           // ml/g at the temperature
  double extinction280 = 0.0;  // 1/(M cm): Trp, Tyr and cystine, Pace et al. 1995
  double a280 = 0.0;           // absorption at 280 nm of 1 mg/ml in 1 cm
};

// Increment of vbar with temperature, ml/(g K). Source: Durchschlag, in Hinz (ed.), Thermodynamic
// Data for Biochemistry and Biotechnology, 1986.
inline constexpr double kVbarPerKelvin = 4.25e-4;

// Constants of `letters` (of ProteinSequence) with so many disulphides, at `degC`.
//     vbar = sum(n m v) / sum(n m) + kVbarPerKelvin (degC - 25)
// Source: Cohn & Edsall, Proteins, Amino Acids and Peptides, 1943, chapter 16.
// Throws SolutionFault for less than 0 disulphides and for more than the cysteines make.
ProteinConstants ConstantsOfProtein(std::string_view letters, int disulphides, double degC);

}  // namespace quorvane
