#include "core/page/row_choices.h"

#include <algorithm>

namespace quorvane {

bool IsLinkTarget(const FitSetup& setup, int row) {
  for (int other = 0; other < setup.NumFitSets; ++other) {
    if (other != row && setup.RefLink[static_cast<std::size_t>(other)] == row) return true;
  }
  return false;
}

bool IsLinked(const FitSetup& setup, int row) {
  return setup.RefLink[static_cast<std::size_t>(row)] != row;
}

bool MayLinkTo(const FitSetup& setup, int row, int target) {
  if (target < 0 || target >= setup.NumFitSets) return false;
  return target == row || !IsLinked(setup, target);
}

std::string LinkText(const FitSetup& setup, int row) {
  return std::to_string(setup.RefLink[static_cast<std::size_t>(row)] + 1);
}

Refusal EnterLink(FitSetup& setup, int row, std::string_view text) {
  const double number = ParseNumeric(text).value_or(0.0);
  for (int target = 0; target < setup.NumFitSets; ++target) {
    if (number != target + 1 || !MayLinkTo(setup, row, target)) continue;
    if (target != row && IsLinkTarget(setup, row)) return kUsedAsLink;
    setup.RefLink[static_cast<std::size_t>(row)] = static_cast<std::int16_t>(target);
    return {};
  }
  return kIllegalValue;
}

std::vector<std::string> CellGeometryNames(const QuorvaneModule& module) {
  if (module.CellGeometries.empty()) return {"default"};
  std::vector<std::string> names;
  for (const CellGeometry& geometry : module.CellGeometries) {
    names.emplace_back(Trim(geometry.name));
  }
  return names;
}

void ChooseCellGeometry(FitSetup& setup, int row, int geometry, bool below) {
  const auto first = setup.SetCellChannel.begin() + row;
  std::fill(first, below ? setup.SetCellChannel.end() : first + 1,
            static_cast<std::int16_t>(geometry));
}

}  // namespace quorvane
