#include "solution/remarks.h"

#include <algorithm>
#include <cmath>

#include "base/number_format.h"
#include "base/text.h"
#include "solution/buffer_density.h"
#include "solution/solution_constants.h"

namespace quorvane {

namespace {

using Remarks = std::vector<std::string>;

void AddCysteines(const SolutionRequest& request, Remarks& remarks) {
  const std::string& letters = *request.letters;
  const auto cysteines = std::count(letters.begin(), letters.end(), 'C');
  if (request.disulphides || cysteines < 2) return;
  remarks.push_back(
      "The " + std::to_string(cysteines) +
      " cysteines are counted as reduced: a disulphide takes 2.0 Da off the mass and adds "
      "125 to the extinction.");
}

void AddProtein(const SolutionRequest& request, Remarks& remarks) {
  const std::string& letters = *request.letters;
  constexpr std::size_t kShortest = 20;
  if (letters.size() >= kShortest && letters.find_first_not_of("ACGTN") == std::string::npos) {
    remarks.push_back(
        "The sequence has no letters but those of nucleotides: it looks like DNA, which is no "
        "protein.");
  }
  remarks.push_back(
      "Only amino acids are counted: prosthetic groups such as haem, sugars, bound detergent or "
      "lipid, and modified residues change mass, vbar and extinction.");
  if (letters.size() < kShortest) {
    remarks.push_back(
        "The volume of the charged ends is not counted: vbar of so short a peptide may be off by "
        "0.01 or more.");
  }
  AddCysteines(request, remarks);
  if (letters.find('W') == std::string::npos) {
    remarks.push_back(
        letters.find('Y') == std::string::npos
            ? "Without tryptophan and tyrosine there is hardly any extinction at 280 nm to go by."
            : "Without tryptophan the extinction may be off by more than 10 %.");
  }
}

// What sets the pH of a buffer, such as hydrochloric acid that of Tris.
void AddPh(const BufferComponent& component, const BufferRecipe& recipe, Remarks& remarks) {
  const bool counted = std::any_of(recipe.begin(), recipe.end(), [&](const BufferPart& part) {
    return part.component->name == component.setsPh;
  });
  if (component.setsPh.empty() || counted) return;
  remarks.push_back(component.name + " is counted without what set its pH, such as " +
                    ToLower(component.setsPh) + ", which is a component of its own.");
}

void AddComponent(const BufferPart& part, Remarks& remarks) {
  const BufferComponent& component = *part.component;
  constexpr double kMuch = 50.0 * (1.0 + 1e-9);  // g/l
  if (component.hydration && part.molar * component.molarMass.value_or(0.0) > kMuch) {
    remarks.push_back("More than 5 % w/v of " + component.name +
                      ": preferential hydration or binding gives the protein another vbar than the "
                      "sum of its residues.");
  }
  if (component.detergent) {
    remarks.push_back(component.name +
                      " may bind to the protein, which then sediments with what it has bound.");
  }
  // A fit to higher concentrations may miss water itself; this much is then wrong at low ones.
  constexpr double kNoticed = 0.0003;
  const double miss = std::fabs(component.increments[0] - kWaterDensity20);
  if (miss > kNoticed) {
    remarks.push_back("The density of " + component.name +
                      " was fitted at higher concentrations and may be off by " +
                      FormatNumber(miss, "0.0000") + " g/ml at low ones.");
  }
}

}  // namespace

std::vector<std::string> RemarksOn(const SolutionRequest& request) {
  Remarks remarks;
  if (request.letters) AddProtein(request, remarks);
  if (!request.buffer || request.buffer->empty()) return remarks;
  for (const BufferPart& part : *request.buffer) {
    AddComponent(part, remarks);
    AddPh(*part.component, *request.buffer, remarks);
  }
  if (std::fabs(request.degC - 20.0) > 0.05) {
    remarks.push_back("Densities of components were measured at 20 deg C; at " +
                      ShortestText(request.degC) + " deg C the buffer is scaled as water.");
  }
  return remarks;
}

}  // namespace quorvane
