// Fits the sets of tests/fit/nist_sets.txt and prints their table of docs/evidence.md.
// Usage: nist (run by scripts/evidence).
#include <cstdio>

#include "base/arithmetic.h"
#include "support/nist_sets.h"

using namespace quorvane;

namespace {

std::string Text(const NistValues& values) {
  std::ostringstream text;
  for (const long double value : values) text << (text.tellp() > 0 ? ", " : "") << value;
  return text.str();
}

void PrintLine(const NistSet& set, const NistValues& start) {
  std::printf("| %s | %s | %s |", set.name.c_str(), set.level.c_str(), Text(start).c_str());
  try {
    const NistAgreement scaled = FitNist(set, start, set.Scale());
    const NistAgreement plain = FitNist(set, start, 1.0);
    std::printf(" %d | %.1f | %.1f | %.1f | %d | %.1f |\n", scaled.iterations, scaled.parameters,
                scaled.deviations, scaled.sum, plain.iterations, plain.parameters);
  } catch (const ArithmeticFault& fault) {
    std::printf(" %s | - | - | - | - | - |\n", fault.what());
  }
}

}  // namespace

int main() {
  std::printf(
      "| Set | Level | Start | Iterations | Parameters | Standard deviations | Sum of squares | "
      "Iterations, unscaled | Parameters, unscaled |\n"
      "|---|---|---|---|---|---|---|---|---|\n");
  for (const NistSet& set : ReadNistSets(QUORVANE_SOURCE_DIR)) {
    for (const NistValues& start : set.starts) PrintLine(set, start);
    for (const NistValues& start : set.elsewhere) PrintLine(set, start);
  }
  return 0;
}
