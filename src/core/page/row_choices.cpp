#include "core/page/row_choices.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace quorvane {

namespace {

bool IsRow(const FitSetup& setup, int row) {
  return row >= 0 && row < setup.NumFitSets;
}

// Whether another row shares the reference concentrations of `row`.
bool IsLinkTarget(const FitSetup& setup, int row) {
  for (int other = 0; other < setup.NumFitSets; ++other) {
    if (other != row && setup.RefLink[static_cast<std::size_t>(other)] == row) return true;
  }
  return false;
}

Refusal UsedAsLink() {
  return Refusal{"This set is currently being used as a link"};
}

}  // namespace

bool IsLinked(const FitSetup& setup, int row) {
  return setup.RefLink[static_cast<std::size_t>(row)] != row;
}

bool MayLinkTo(const FitSetup& setup, int row, int target) {
  return IsRow(setup, target) && (target == row || !IsLinked(setup, target));
}

Refusal RefusalOfLinking(const FitSetup& setup, int row) {
  return IsLinkTarget(setup, row) ? UsedAsLink() : Refusal{};
}

Refusal LinkRow(FitSetup& setup, int row, int target) {
  if (!IsRow(setup, row) || !MayLinkTo(setup, row, target)) return {kIllegalValue};
  if (target != row && IsLinkTarget(setup, row)) return UsedAsLink();
  setup.RefLink[static_cast<std::size_t>(row)] = static_cast<std::int16_t>(target);
  return {};
}

std::optional<LinkRefusal> LinkRows(FitSetup& setup, std::span<const RowLink> links) {
  std::vector<std::int16_t> before = setup.RefLink;
  std::iota(setup.RefLink.begin(), setup.RefLink.end(), std::int16_t{0});
  std::optional<LinkRefusal> refused;
  for (std::size_t k = 0; k < links.size() && !refused; ++k) {
    const auto& [row, target] = links[k];
    if (!IsRow(setup, row) || !IsRow(setup, target)) {
      refused = {k, {kIllegalValue}};
    } else {
      setup.RefLink[static_cast<std::size_t>(row)] = static_cast<std::int16_t>(target);
    }
  }
  for (std::size_t k = 0; k < links.size() && !refused; ++k) {
    if (IsLinked(setup, links[k].target)) refused = {k, UsedAsLink()};
  }
  if (refused) setup.RefLink = std::move(before);
  return refused;
}

OwnRefConcs OwnRefConcsOf(const FitSetup& setup, int row) {
  const bool free = !IsLinked(setup, row);
  return {free, free && setup.TwoComponentModel};
}

std::string LinkText(const FitSetup& setup, int row) {
  return std::to_string(setup.RefLink[static_cast<std::size_t>(row)] + 1);
}

Refusal EnterLink(FitSetup& setup, int row, std::string_view text) {
  const double number = ParseNumeric(text).value_or(0.0);
  for (int target = 0; target < setup.NumFitSets; ++target) {
    if (number == target + 1) return LinkRow(setup, row, target);
  }
  return {kIllegalValue};
}

std::vector<std::string> CellGeometryNames(const QuorvaneModule& module) {
  if (module.CellGeometries.empty()) return {"default"};
  std::vector<std::string> names;
  for (const CellGeometry& geometry : module.CellGeometries) {
    names.emplace_back(Trim(geometry.name));
  }
  return names;
}

Refusal SetCellGeometry(QuorvaneModule& module, int row, int geometry, bool below) {
  FitSetup& setup = module.Setup;
  if (!IsRow(setup, row)) return {kIllegalValue};
  if (geometry < 0 || geometry >= static_cast<int>(CellGeometryNames(module).size())) {
    return Refusal{"there is no such cell geometry"};
  }
  const auto first = setup.SetCellChannel.begin() + row;
  std::fill(first, below ? setup.SetCellChannel.end() : first + 1,
            static_cast<std::int16_t>(geometry));
  return {};
}

}  // namespace quorvane
