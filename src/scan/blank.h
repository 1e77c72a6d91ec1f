// Blank subtraction: the signal of a solvent scan taken off a sample scan, point by point.
#pragma once

#include <cstdint>

#include "scan/dataset_store.h"

namespace quorvane {

// Subtracts the blank's signal, interpolated linearly in radius, from every point of the sample,
// deleted ones too. Points outside the blank get its end value and are counted. A sample that lies
// wholly outside stays as it is and all its points are counted. Radii rise with the index. A blank
// of fewer than 2 points subtracts nothing.
void SubtractBlank(Dataset& sample, const Dataset& blank, std::int16_t& above, std::int16_t& below);

// Subtracts the blank at position `blank` from the dataset at `position` (both from 0), marks the
// dataset as blanked for good, and logs it.
void BlankDataset(DatasetStore& store, int position, int blank, Host& host);

}  // namespace quorvane
