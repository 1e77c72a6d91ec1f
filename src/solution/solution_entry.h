// What a session has been told of its sample.
#pragma once

#include <optional>
#include <string>

#include "solution/solution_constants.h"

namespace quorvane {

// Optical path of the usual centerpieces of 12 mm, cm.
inline constexpr double kUsualPath = 1.2;

struct SolutionEntry {
  std::string name;                // of the sequence; may be empty
  std::string letters;             // of a ProteinSequence; empty: none
  std::optional<int> disulphides;  // none said
  BufferRecipe buffer;             // empty: water
  std::optional<double> degC;      // none: that of the experiment
  double path = kUsualPath;        // cm, for extinction coefficients of scans
  bool operator==(const SolutionEntry&) const = default;
};

// Of the entry at `degC`: its sequence, if there is one, and its buffer.
SolutionRequest RequestOf(const SolutionEntry& entry, double degC);

}  // namespace quorvane
