#include "solution/solution_entry.h"

namespace quorvane {

SolutionRequest RequestOf(const SolutionEntry& entry, double degC) {
  SolutionRequest request;
  if (!entry.letters.empty()) {
    request.letters = entry.letters;
    request.disulphides = entry.disulphides;
  }
  request.buffer = entry.buffer;
  request.degC = degC;
  return request;
}

}  // namespace quorvane
