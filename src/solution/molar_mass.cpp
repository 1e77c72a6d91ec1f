#include "solution/molar_mass.h"

#include <map>
#include <stdexcept>
#include <string>

#include "base/text.h"
#include "solution/tables.h"

namespace quorvane {

namespace {

bool IsIn(char c, char first, char last) {
  return c >= first && c <= last;
}

double AtomicWeight(const std::string& element) {
  static const std::map<std::string, double> weights = [] {
    std::map<std::string, double> read;
    for (const std::vector<std::string>& row : tables::RowsOf(tables::kElements)) {
      read[row[0]] = DoubleFromText(row[1]);
    }
    return read;
  }();
  const auto found = weights.find(element);
  if (found == weights.end()) throw std::invalid_argument("no element " + element);
  return found->second;
}

// The number at the front of `rest`, 1 if there is none.
int TakeCount(std::string_view& rest) {
  int count = 0;
  for (; !rest.empty() && IsIn(rest.front(), '0', '9'); rest.remove_prefix(1)) {
    count = 10 * count + (rest.front() - '0');
  }
  return count == 0 ? 1 : count;
}

// Mass up to the end of `rest` or of the parenthesis in which it begins.
double TakeGroup(std::string_view& rest) {
  double mass = 0.0;
  while (!rest.empty() && rest.front() != ')') {
    double part = 0.0;
    if (rest.front() == '(') {
      rest.remove_prefix(1);
      part = TakeGroup(rest);
      if (rest.empty()) throw std::invalid_argument("a parenthesis is not closed");
      rest.remove_prefix(1);
    } else {
      const std::size_t letters = rest.size() > 1 && IsIn(rest[1], 'a', 'z') ? 2 : 1;
      part = AtomicWeight(std::string(rest.substr(0, letters)));
      rest.remove_prefix(letters);
    }
    mass += part * TakeCount(rest);
  }
  return mass;
}

}  // namespace

double MolarMass(std::string_view formula) {
  const double mass = TakeGroup(formula);
  if (!formula.empty()) throw std::invalid_argument("a parenthesis is not opened");
  return mass;
}

}  // namespace quorvane
