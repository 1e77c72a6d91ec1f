// What a row of the parameter page chooses rather than types: the dataset whose reference
// concentrations it shares, and its cell geometry. Rows count from 0.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/page/page_entry.h"
#include "core/program_state.h"

namespace quorvane {

bool IsLinked(const FitSetup& setup, int row);

// Whether `row` may be linked to `target`: to itself, which undoes a link, or to one not linked.
bool MayLinkTo(const FitSetup& setup, int row, int target);

// Why `row` cannot be linked to any other: one shares its reference concentrations.
Refusal RefusalOfLinking(const FitSetup& setup, int row);

// Links `row` to `target`. Refused unless the rules above allow it.
Refusal LinkRow(FitSetup& setup, int row, int target);

struct RowLink {
  int row;
  int target;
};

// The first link, by its place (from 0), that cannot be, and why.
struct LinkRefusal {
  std::size_t place;
  Refusal refusal;
};

// Takes `links`, in any order, for all links of the page; a row that is not named shares nothing.
// Refused, with nothing changed, if one leads to a row that is linked itself when all are set.
std::optional<LinkRefusal> LinkRows(FitSetup& setup, std::span<const RowLink> links);

// Which reference concentrations of a row are its own to change: a linked row has its target's.
struct OwnRefConcs {
  bool a = false;
  bool b = false;
};

OwnRefConcs OwnRefConcsOf(const FitSetup& setup, int row);

// The number of the row, from 1, that `row` is linked to; its own if it is not.
std::string LinkText(const FitSetup& setup, int row);

// Links `row` to the row whose number is typed.
Refusal EnterLink(FitSetup& setup, int row, std::string_view text);

// Names of the cell geometries as menus show them; "default" alone without a table.
std::vector<std::string> CellGeometryNames(const QuorvaneModule& module);

// Sets the geometry (from 0) of `row`, and of all rows below it if `below`. Refused if there is
// none with that number.
Refusal SetCellGeometry(QuorvaneModule& module, int row, int geometry, bool below = false);

}  // namespace quorvane
