// What the constants of a solution cannot be computed from.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quorvane {

// A bad sequence, buffer or temperature; what() names what is wrong, in one line.
class SolutionFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Bytes of an entry that a message repeats.
inline constexpr std::size_t kMostQuoted = 80;

inline std::string Quoted(std::string_view entry) {
  return "\"" + std::string(entry.substr(0, kMostQuoted)) + "\"";
}

}  // namespace quorvane
