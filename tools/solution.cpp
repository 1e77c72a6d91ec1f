// Prints the tables of docs/evidence.md on constants of solutions: what the sums give beside values
// that others have measured. Usage: solution (run by scripts/evidence).
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "base/files.h"
#include "solution/buffer_density.h"
#include "solution/protein_constants.h"
#include "solution/sequence.h"

using namespace quorvane;

namespace {

// Density of a solution of so many percent by mass; g/mol.
struct MeasuredDensity {
  const char* name;
  double percent;
  double molarMass;
  double degC;
  double density;  // g/ml
  const char* source;
};

constexpr const char* kCrc = "CRC Handbook";
constexpr const char* kPerry = "Perry's Handbook";
constexpr const char* kKawahara = "Kawahara & Tanford 1966";

// The percentages of the last two are those of 6 and 8 mol/l by their formulae.
constexpr MeasuredDensity kDensities[] = {
    {"NaCl", 10, 58.443, 20, 1.0707, kCrc},
    {"KCl", 10, 74.551, 20, 1.0633, kCrc},
    {"KBr", 10, 119.002, 20, 1.0740, kCrc},
    {"NaNO3", 10, 84.995, 20, 1.0674, kPerry},
    {"CaCl2", 10, 110.98, 20, 1.0835, kPerry},
    {"MgCl2", 10, 95.211, 20, 1.0816, kPerry},
    {"(NH4)2SO4", 20, 132.14, 20, 1.1154, kPerry},
    {"Sucrose", 20, 342.30, 20, 1.0810, kCrc},
    {"Ethanol", 20, 46.068, 20, 0.9686, kCrc},
    {"Glycerol", 50, 92.094, 20, 1.1263, kPerry},
    {"GdnHCl", 50.231, 95.53, 25, 1.1411, kKawahara},
    {"Urea", 43.008, 60.056, 25, 1.1171, kKawahara},
};

void PrintDensities() {
  std::printf(
      "| Solution | Percent by mass | mol/l | deg C | Measured | Computed | Difference | Weight of "
      "a "
      "protein "
      "|\n|---|---|---|---|---|---|---|---|\n");
  for (const MeasuredDensity& row : kDensities) {
    const double molar = 10.0 * row.percent * row.density / row.molarMass;
    const BufferRecipe recipe = {{&FindComponent(row.name), molar}};
    const double density = BufferDensity(recipe, row.degC);
    const double difference = density - row.density;
    const double weight = 0.73 * difference / (1.0 - 0.73 * row.density);
    std::printf("| %s (%s) | %.4g | %.3f | %.0f | %.4f | %.4f | %+.4f | %+.2f %% |\n",
                recipe[0].component->name.c_str(), row.source, row.percent, molar, row.degC,
                row.density, density, difference, 100.0 * weight);
  }
}

// Ends of ranges are round percentages by mass of the tables that were fitted. Such a percentage
// and the molar concentration give the density that the table had there, without any other source.
void PrintEndsOfRanges() {
  constexpr double kRound = 0.06;  // percent
  constexpr const char* kShown[] = {"NaCl",    "KCl",  "(NH4)2SO4", "CaCl2",    "MgCl2",   "Na2SO4",
                                    "NaH2PO4", "Tris", "Sucrose",   "Glycerol", "Ethanol", "Urea"};
  std::vector<double> misses;
  std::printf(
      "| Solution | mol/l | Percent by mass | Density from both | Computed | Difference "
      "|\n|---|---|---|---|---|---|\n");
  for (const BufferComponent& component : BufferComponents()) {
    if (!component.molarMass || !component.unusable.empty()) continue;
    const double density = BufferDensity({{&component, component.greatest}}, 20.0);
    const double grams = component.greatest * *component.molarMass / 10.0;  // in 100 ml
    const double percent = std::round(grams / density);
    if (std::fabs(grams / density - percent) >= kRound) continue;
    const double difference = density - grams / percent;
    misses.push_back(std::fabs(difference));
    if (std::none_of(std::begin(kShown), std::end(kShown),
                     [&](const char* name) { return &FindComponent(name) == &component; })) {
      continue;
    }
    std::printf("| %s | %.3f | %.0f | %.4f | %.4f | %+.4f |\n", component.name.c_str(),
                component.greatest, percent, grams / percent, density, difference);
  }
  std::sort(misses.begin(), misses.end());
  std::printf("\nAll %zu: median %.4f, greatest %.4f\n", misses.size(), misses[misses.size() / 2],
              misses.back());
}

struct MeasuredVbar {
  const char* protein;  // accession number
  const char* second;   // of an oligomer of two chains, else null
  double low;           // ml/g, at 20 to 25 deg C
  double high;
  const char* source;
};

constexpr MeasuredVbar kVbars[] = {
    {"P00698", nullptr, 0.703, 0.703, "Sophianopoulos et al. 1962"},
    {"P61823", nullptr, 0.695, 0.703, "Durchschlag 1986"},
    {"P00766", nullptr, 0.721, 0.721, "Schwert 1951"},
    {"P02185", nullptr, 0.741, 0.745, "Durchschlag 1986"},
    {"P69905", "P68871", 0.749, 0.749, "Svedberg & Pedersen 1940"},
    {"P02769", nullptr, 0.733, 0.735, "Durchschlag 1986"},
    {"P02768", nullptr, 0.733, 0.733, "Oncley et al. 1947"},
    {"P02754", nullptr, 0.751, 0.751, "Pedersen 1936"},
};

struct MeasuredExtinction {
  const char* protein;
  int disulphides;
  double a;           // of 1 mg/ml
  double wavelength;  // nm, of the measurement
  const char* source;
};

constexpr MeasuredExtinction kExtinctions[] = {
    {"P00698", 4, 2.64, 281.5, "Sophianopoulos et al. 1962"},
    {"P61823", 4, 0.716, 278, "Sela & Anfinsen 1957: 9800 1/(M cm)"},
    {"P02769", 17, 0.667, 279, "Foster & Sterman 1956"},
    {"P02768", 17, 0.531, 279, "Clark et al. 1962"},
    {"P02754", 2, 0.96, 278, "Townend et al. 1960"},
    {"P00711", 4, 2.01, 280, "Kronman & Andreotti 1964"},
};

using Proteins = std::map<std::string, ProteinSequence>;  // by accession number

Proteins ReadProteins() {
  const std::string file = std::string(QUORVANE_SOURCE_DIR) + "/tests/solution/proteins.fasta";
  Proteins proteins;
  for (const ProteinSequence& sequence : ReadSequences(ReadWholeFile(file, 1U << 20U))) {
    proteins[sequence.name.substr(sequence.name.find(", P") + 2, 6)] = sequence;
  }
  return proteins;
}

void PrintVbars(const Proteins& proteins) {
  std::printf(
      "| Protein | Measured | Source | Computed, 20 deg C | 25 deg C | Beyond the measured | "
      "Weight "
      "|\n|---|---|---|---|---|---|---|\n");
  for (const MeasuredVbar& row : kVbars) {
    std::string letters = proteins.at(row.protein).letters;
    if (row.second != nullptr) letters += proteins.at(row.second).letters;
    const double at20 = ConstantsOfProtein(letters, 0, 20.0).vbar;
    const double at25 = ConstantsOfProtein(letters, 0, 25.0).vbar;
    const double nearest = at20 < row.low ? row.low : at20 > row.high ? row.high : at20;
    const double difference = at20 - nearest;
    std::printf("| %s%s | %.3f", proteins.at(row.protein).name.c_str(),
                row.second == nullptr ? "" : ", with the beta chain", row.low);
    if (row.high > row.low) std::printf(" to %.3f", row.high);
    std::printf(" | %s | %.3f | %.3f | %+.3f | %+.1f %% |\n", row.source, at20, at25, difference,
                100.0 * difference / (1.0 - at20));
  }
}

void PrintExtinctions(const Proteins& proteins) {
  std::printf(
      "| Protein | Disulphides | Measured, 1 mg/ml | nm | Source | Computed, 280 nm | 1/(M cm) | "
      "Difference |\n|---|---|---|---|---|---|---|---|\n");
  for (const MeasuredExtinction& row : kExtinctions) {
    const ProteinSequence& sequence = proteins.at(row.protein);
    const ProteinConstants protein = ConstantsOfProtein(sequence.letters, row.disulphides, 20.0);
    std::printf("| %s | %d | %.3f | %.4g | %s | %.3f | %.0f | %+.1f %% |\n", sequence.name.c_str(),
                row.disulphides, row.a, row.wavelength, row.source, protein.a280,
                protein.extinction280, 100.0 * (protein.a280 / row.a - 1.0));
  }
}

}  // namespace

int main() {
  const Proteins proteins = ReadProteins();
  PrintDensities();
  std::printf("\n");
  PrintEndsOfRanges();
  std::printf("\n");
  PrintVbars(proteins);
  std::printf("\n");
  PrintExtinctions(proteins);
  return 0;
}
