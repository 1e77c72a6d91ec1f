// Damages input the way broken disks, editors and forgers do; the same number gives the same
// damage.
#pragma once

#include <cstdint>
#include <string>

namespace quorvane {

// `sample` with one to four injuries: bits flipped, bytes set to extremes, parts cut out, doubled
// or moved, the end cut off, digits replaced by extreme numbers.
std::string Mutated(const std::string& sample, std::uint64_t seed);

}  // namespace quorvane
