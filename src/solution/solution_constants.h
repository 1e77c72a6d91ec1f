// The constants that a weight stands on, from sequence, buffer and temperature.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "solution/buffer_recipe.h"
#include "solution/protein_constants.h"

namespace quorvane {

struct SolutionRequest {
  std::optional<std::string> letters;  // of a ProteinSequence
  std::optional<int> disulphides;      // none said: none counted, and a remark
  std::optional<BufferRecipe> buffer;
  double degC = 20.0;
};

struct SolutionConstants {
  std::optional<ProteinConstants> protein;
  std::optional<double> density;      // g/ml, of the buffer
  std::optional<double> buoyancy;     // 1 - vbar density, of protein and buffer
  std::optional<double> buoyantMass;  // Da, mass times buoyancy
  std::vector<std::string> remarks;   // what the sums do not know, a sentence each
};

// What the request asks for. Throws SolutionFault for a temperature outside 0 to 100 deg C, and as
// ConstantsOfProtein.
SolutionConstants CalcSolution(const SolutionRequest& request);

}  // namespace quorvane
