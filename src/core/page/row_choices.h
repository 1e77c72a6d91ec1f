// What a row of the parameter page chooses rather than types: the dataset whose reference
// concentrations it shares, and its cell geometry. Rows count from 0.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/page/page_entry.h"
#include "core/program_state.h"

namespace quorvane {

inline constexpr const char* kUsedAsLink = "This set is currently being used as a link";

// Whether another row shares the reference concentrations of `row`. Such a row cannot be linked.
bool IsLinkTarget(const FitSetup& setup, int row);

bool IsLinked(const FitSetup& setup, int row);

// Whether `row` may be linked to `target`: to itself, which undoes a link, or to one not linked.
bool MayLinkTo(const FitSetup& setup, int row, int target);

// The number of the row, from 1, that `row` is linked to; its own if it is not.
std::string LinkText(const FitSetup& setup, int row);

// Links `row` to the row whose number is typed. Refused unless the rules above allow it.
Refusal EnterLink(FitSetup& setup, int row, std::string_view text);

// Names of the cell geometries as menus show them; "default" alone without a table.
std::vector<std::string> CellGeometryNames(const QuorvaneModule& module);

// Sets the geometry of `row`, and of all rows below it if `below`.
void ChooseCellGeometry(FitSetup& setup, int row, int geometry, bool below);

}  // namespace quorvane
