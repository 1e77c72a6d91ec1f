// chartfile.bin of an archive: the saved graphs as tagged byte arrays, little-endian.
#pragma once

#include <span>
#include <vector>

#include "archive/experiment.h"

namespace quorvane {

// Throws ArchiveFault for more graphs than the 16-bit count can say.
Bytes WriteChartMember(const std::vector<Bytes>& graphs);

// The bytes of each graph as they are, whoever wrote them. Throws ByteFault for a count, tag or
// length that is not so and for bytes left over.
std::vector<Bytes> ReadChartMember(std::span<const std::byte> bytes);

}  // namespace quorvane
