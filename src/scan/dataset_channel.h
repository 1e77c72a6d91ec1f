// The cell and the channel that a loaded dataset was measured in.
#pragma once

#include <optional>
#include <vector>

#include "scan/dataset.h"

namespace quorvane {

// What is known of them; a capital letter, as loading puts it into names.
struct CellChannel {
  std::optional<int> cell;
  std::optional<char> letter;
};

// Both by the name, if it has the form that loading gives (dataset_names.h). A dataset that was
// renamed has its cell by its header line, if that is one of an instrument, and no letter.
CellChannel ChannelOf(const Dataset& dataset);

// How far "the same channel" reaches.
enum class ChannelReach {
  kCellAndChannel,  // the same letter in the same cell, at other speeds, times or wavelengths
  kAllCells,        // the same letter in any cell
};

// The positions (from 0, rising) of the other datasets of the channel of the one at `position`;
// blanks are none of them. Empty if its own channel, or the cell that counts, is not known.
std::vector<int> OthersOfChannel(const std::vector<Dataset>& datasets, int position,
                                 ChannelReach reach);

}  // namespace quorvane
