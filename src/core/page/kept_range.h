// Keeping a range of radii in one dataset, and in all of its channel. Positions in the store count
// from 0.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/page/refusal.h"
#include "scan/dataset_channel.h"
#include "scan/dataset_store.h"
#include "scan/point_edits.h"

namespace quorvane {

// A bound as boxes show it: radius in cm, two to four decimals.
std::string BoundText(double radius);

// The two bounds that are typed. Refused unless they are radii in rising order.
Refusal ParseSpan(std::string_view low, std::string_view high, RadiusSpan& span);

// Why the range cannot be kept: the dataset is a blank, or fewer points would stay in use than a
// load takes.
Refusal RefusalOfKeeping(const Dataset& dataset, const RadiusSpan& span);

// KeepRange on the dataset at `position`, with undo.
Refusal KeepRangeOf(DatasetStore& store, int position, const RadiusSpan& span);

// A dataset that was left as it was, and why.
struct LeftAlone {
  int position;
  std::string why;
};

struct SpreadRange {
  std::vector<int> kept;        // the range stands in these now
  std::vector<LeftAlone> left;  // rising, as `kept` is
};

// Why there is nothing to spread a range to: the channel is not known, or has no other dataset.
Refusal RefusalOfSpreading(const DatasetStore& store, int position, ChannelReach reach);

// KeepRange on the other datasets of the channel of the one at `position`, as one command of undo.
// Those that RefusalOfKeeping refuses are left alone.
SpreadRange SpreadOverChannel(DatasetStore& store, int position, const RadiusSpan& span,
                              ChannelReach reach);

// The first dataset behind `position`, and then from the start, that can be edited and has all its
// points in use; none if there is none.
std::optional<int> NextUntrimmed(const DatasetStore& store, int position);

// What was done, in one sentence; with a second one if some were left alone.
std::string TextOf(const SpreadRange& spread, int position, const RadiusSpan& span);

// "1, 4, 7": the numbers of the datasets at `positions`.
std::string NumbersOf(const std::vector<int>& positions);

}  // namespace quorvane
