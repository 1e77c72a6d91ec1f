// What the constants of a solution cannot be computed from.
#pragma once

#include <stdexcept>

namespace quorvane {

// A bad sequence, buffer or temperature; what() names what is wrong, in one line.
class SolutionFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace quorvane
