// The figure of datasets and their fit as a user has set it up, for its window and for the report.
#pragma once

#include <compare>
#include <set>
#include <string>

#include "fit/figure_choices.h"
#include "scan/dataset.h"

namespace quorvane {

// A dataset, whatever its name and number become.
struct FigureScan {
  explicit FigureScan(const Dataset& dataset) : path(PathOf(dataset)), firstRadius(dataset.R[0]) {}

  std::string path;
  double firstRadius = 0.0;  // cm
  auto operator<=>(const FigureScan&) const = default;
};

struct FigureSetup {
  FigureChoices choices;
  std::set<FigureScan> hidden = {};  // loaded, but not shown
};

}  // namespace quorvane
