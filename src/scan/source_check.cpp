#include "scan/source_check.h"

#include <cmath>
#include <sstream>
#include <string>

#include "base/arithmetic.h"
#include "scan/fields.h"

namespace quorvane {

namespace {

// Whether a row is point k of the dataset, in either form of the first column.
bool IsPoint(const LineBuffer& row, const Dataset& dataset, std::size_t k) {
  const double x = FieldVal(row.Columns(1, 11));
  const bool sameRadius = x == dataset.R[k] || (x > 0.0 && std::sqrt(x + x) == dataset.R[k]);
  return sameRadius && (IsBlanked(dataset) || FieldVal(row.Columns(12, 26)) == dataset.C[k]);
}

}  // namespace

bool HoldsPoints(std::string_view file, const Dataset& dataset) {
  std::istringstream in{std::string(file)};
  const auto points = static_cast<std::size_t>(dataset.NumPoints);
  std::size_t found = 0;
  int line = 0;
  try {
    for (std::string text; found < points && ReadLine(in, text);) {
      if (++line > 2) found += IsPoint(LineBuffer(text), dataset, found) ? 1 : 0;
    }
  } catch (const ArithmeticFault&) {  // a number that no load would have taken
    return false;
  }
  return found == points;
}

}  // namespace quorvane
