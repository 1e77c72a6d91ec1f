// The kinds of files among which the scans of a match are chosen.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

// Captions with their patterns in parentheses, such as "XL-A Files (*.RA1)": absorbance,
// interference, fluorescence, electrophoresis if it is offered, and all files. `cell` ends the
// extension: a digit from 1 to 8, or "*" for any; an empty one counts as "*".
std::vector<std::string> MatchFilters(std::string_view cell, bool electrophoresis);

}  // namespace quorvane
