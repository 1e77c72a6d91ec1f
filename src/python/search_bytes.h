// The bytes of what searches around a fit have found.
#pragma once

#include "base/byte_stream.h"
#include "core/finished_fit.h"

namespace quorvane {

// Appends fit.intervals and fit.errors.
void WriteSearches(const FinishedFit& fit, ByteWriter& out);

// Takes them into `fit`, whose state is there. Throws ByteFault for bytes that are none, or of
// another fit.
void ReadSearches(FinishedFit& fit, ByteReader& in);

}  // namespace quorvane
