#include "match/match_filters.h"

namespace quorvane {

std::vector<std::string> MatchFilters(std::string_view cell, bool electrophoresis) {
  const std::string end = (cell.empty() ? "*" : std::string(cell)) + ")";
  std::vector<std::string> filters = {"XL-A Files (*.RA" + end, "XL-I Files (*.IP" + end,
                                      "XL-F Files (*.FI" + end};
  if (electrophoresis) filters.push_back("Electrophoresis Files (*.EL" + end);
  filters.emplace_back("All Files (*.*)");
  return filters;
}

}  // namespace quorvane
