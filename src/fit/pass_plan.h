// The plan of a pass over one dataset: what the kernel works out for its points, and how the
// derivatives follow from that. Symbols and formulas stand in pass_kernel.h; pass_planner.h makes
// the plan.
#pragma once

#include <array>
#include <optional>

#include "fit/pass_kernel.h"
#include "fit/step_rule.h"

namespace quorvane {

// How one species answers to one parameter that grows by its least step h.
struct SpeciesChange {
  double exponent = 0.0;  // d: of the exponent of c, at x = 0
  double rate = 0.0;      // m, 1/cm^2
  double countA = 0.0;    // of how many A (B) it holds
  double countB = 0.0;
  double signal = 0.0;  // g: of its signal factor
  double sinh = 0.0;    // of d
  double cosh = 1.0;
};

// One fitted parameter that touches the dataset.
struct ParameterPlan {
  double step = 0.0;      // h; 0 for the baseline, whose derivative is 1 with any step
  double constant = 0.0;  // what its derivative has at every point
  std::array<SpeciesChange, kMaxSpecies> changes = {};
  ColumnTerms signal = {};                 // derivative of the signal
  std::array<ColumnTerms, 2> totals = {};  // of the mean concentrations of A and of B
  std::optional<std::size_t> column = {};  // of the kernel, for the terms of `signal` with a move
};

struct PassPlan {
  SetPlan set;
  StepRule rule;
  std::size_t parameters = 0;
  std::array<ParameterPlan, kMostColumns> parameter = {};
  std::array<std::array<double, kMaxSpecies>, 2> count = {};  // of A and of B in each species

  // The species after the first step of the rule in parameter l.
  FirstStepPlan FirstStepOf(std::size_t l) const;

  // The derivatives at point j of an evaluated chunk, by the least step.
  std::array<double, kMostColumns> DerivativesAt(const Chunk& chunk, std::size_t j) const;

  // The derivative at that point with respect to parameter l, by the rule as it is written.
  double ByTheRule(const Chunk& chunk, std::size_t j, std::size_t l) const;

  // The row of the basis with column `column` of the kernel.
  std::size_t RowOfColumn(std::size_t column) const { return 1 + set.species + column; }
};

}  // namespace quorvane
