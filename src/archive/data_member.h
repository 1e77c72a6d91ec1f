// datafile.bin of an archive: header, parameter page and dataset records, little-endian.
#pragma once

#include <span>

#include "archive/experiment.h"

namespace quorvane {

// The member in the current layout, whatever layout `experiment` came from.
// Throws ArchiveFault for numbers that the reader would refuse.
Bytes WriteDataMember(const Experiment& experiment);

// Takes layout, directory, page and datasets into `experiment`. What the old layout lacks: LnK3
// 14.0, vbar, density and model 0 (the reader of the session puts its defaults there), loading
// concentrations 1e-6, Edited 0.
// Throws UnknownLayout for another number at the head, ByteFault or ArchiveFault for a count that
// does not fit the length, a dataset of more than 2048 points and numbers that are not finite.
void ReadDataMember(std::span<const std::byte> bytes, Experiment& experiment);

// Not one of the layouts.
class UnknownLayout : public ArchiveFault {
  using ArchiveFault::ArchiveFault;
};

}  // namespace quorvane
