// Molar masses from formulas.
#pragma once

#include <string_view>

namespace quorvane {

// g/mol of a formula of data/elements.csv's elements, such as "(NH4)2SO4".
// Throws std::invalid_argument for anything else.
double MolarMass(std::string_view formula);

}  // namespace quorvane
