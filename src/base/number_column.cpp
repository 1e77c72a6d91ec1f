#include "base/number_column.h"

#include <algorithm>
#include <cctype>

namespace quorvane {

std::optional<std::size_t> PlaceOfPoint(std::string_view cell) {
  const bool span = cell.starts_with('[');
  std::size_t at = span ? 1 : 0;
  if (at < cell.size() && cell[at] == '-') ++at;
  const std::size_t first = at;
  while (at < cell.size() && std::isdigit(static_cast<unsigned char>(cell[at])) != 0) ++at;
  if (at == first) return std::nullopt;
  const bool ended = at == cell.size() || cell[at] == '.' || cell[at] == ' ' || cell[at] == 'E' ||
                     (span && cell[at] == ',');
  return ended ? std::optional(at) : std::nullopt;
}

std::optional<std::size_t> PlaceOfPoints(const std::vector<std::string_view>& cells) {
  constexpr std::size_t kLongestWord = 10;
  std::optional<std::size_t> greatest;
  for (const std::string_view cell : cells) {
    const std::optional<std::size_t> place = PlaceOfPoint(cell);
    if (!place && cell.size() > kLongestWord) return std::nullopt;
    greatest = std::max(greatest, place);
  }
  return greatest;
}

}  // namespace quorvane
