// Which columns of a table hold numbers, and where their decimal points stand, so that whoever
// shows the table can put them below each other.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {

// Bytes before the decimal point, or the end of the whole part, of the number that `cell` begins
// with: 2 of "-8.9E-04 +- 9.3E-04", 5 of "[7994, 8226]". Nothing where there is none, as in the
// name "1_8A16280.dat".
std::optional<std::size_t> PlaceOfPoint(std::string_view cell);

// The greatest PlaceOfPoint of the cells of a column: of numbers, and of no more than short words
// such as "held" beside them. Nothing of any other column.
std::optional<std::size_t> PlaceOfPoints(const std::vector<std::string_view>& cells);

}  // namespace quorvane
