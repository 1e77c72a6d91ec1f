#include "core/page/kept_range.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/number_format.h"
#include "base/text.h"
#include "core/page/dataset_rules.h"
#include "core/page/page_entry.h"

namespace quorvane {

namespace {

// "cell 2, channel A", or "channel A" of all cells.
std::string NameOfChannel(const CellChannel& channel, ChannelReach reach) {
  std::string name = "channel " + std::string(1, *channel.letter);
  if (reach == ChannelReach::kAllCells || !channel.cell) return name;
  return "cell " + std::to_string(*channel.cell) + ", " + name;
}

}  // namespace

std::string BoundText(double radius) {
  return FormatNumber(radius, "0.00##");
}

Refusal ParseSpan(std::string_view low, std::string_view high, RadiusSpan& span) {
  const std::optional<double> first = ParseNumeric(low);
  const std::optional<double> last = ParseNumeric(high);
  if (!first || !last || !std::isfinite(*first) || !std::isfinite(*last)) {
    return {kIllegalValue, "two radii in cm are wanted"};
  }
  if (*first > *last) return {kIllegalValue, "the first radius must lie below the second"};
  span = {*first, *last};
  return {};
}

Refusal RefusalOfKeeping(const Dataset& dataset, const RadiusSpan& span) {
  if (Refusal refusal = RefusalOfEditing(dataset)) return refusal;
  if (CountKept(dataset, span) >= kMinPoints) return {};
  return {"fewer than " + std::to_string(kMinPoints) + " points would be kept"};
}

Refusal KeepRangeOf(DatasetStore& store, int position, const RadiusSpan& span) {
  Dataset& dataset = store.Datasets[static_cast<std::size_t>(position)];
  if (Refusal refusal = RefusalOfKeeping(dataset, span)) return refusal;
  static_cast<void>(OpenForEditing(dataset));
  store.Edits.Apply(dataset, position, [&](Dataset& edited) { KeepRange(edited, span); });
  return {};
}

Refusal RefusalOfSpreading(const DatasetStore& store, int position, ChannelReach reach) {
  const CellChannel channel = ChannelOf(store.Datasets[static_cast<std::size_t>(position)]);
  if (!channel.letter) {
    return {"the name of this dataset does not tell its channel, as 12_3B20280.dat does"};
  }
  if (!OthersOfChannel(store.Datasets, position, reach).empty()) return {};
  return {"no other dataset of " + NameOfChannel(channel, reach) + " is loaded"};
}

SpreadRange SpreadOverChannel(DatasetStore& store, int position, const RadiusSpan& span,
                              ChannelReach reach) {
  SpreadRange spread;
  for (const int other : OthersOfChannel(store.Datasets, position, reach)) {
    Dataset& dataset = store.Datasets[static_cast<std::size_t>(other)];
    if (const Refusal refusal = RefusalOfKeeping(dataset, span)) {
      spread.left.push_back({other, refusal.text});
    } else {
      static_cast<void>(OpenForEditing(dataset));
      spread.kept.push_back(other);
    }
  }
  store.Edits.ApplyToMany(store.Datasets, spread.kept,
                          [&](Dataset& dataset) { KeepRange(dataset, span); });
  return spread;
}

std::optional<int> NextUntrimmed(const DatasetStore& store, int position) {
  const int n = store.NumDatasets();
  for (int step = 1; step < n; ++step) {
    const int next = (position + step) % n;
    const Dataset& dataset = store.Datasets[static_cast<std::size_t>(next)];
    if (!RefusalOfEditing(dataset) && CountGoodPoints(dataset) == dataset.NumPoints) return next;
  }
  return std::nullopt;
}

std::string TextOf(const SpreadRange& spread, int position, const RadiusSpan& span) {
  std::vector<int> kept = spread.kept;
  kept.insert(std::lower_bound(kept.begin(), kept.end(), position), position);
  std::string text = "The range " + BoundText(span.low) + " to " + BoundText(span.high) +
                     " cm is kept in " + std::to_string(kept.size()) +
                     (kept.size() == 1 ? " dataset: " : " datasets: ") + NumbersOf(kept) + ".";
  if (!spread.left.empty()) text += " Left alone:";
  for (const LeftAlone& left : spread.left) {
    text += (&left == &spread.left.front() ? " " : "; ") + std::to_string(left.position + 1) +
            " (" + left.why + ")";
  }
  return spread.left.empty() ? text : text + ".";
}

std::string NumbersOf(const std::vector<int>& positions) {
  std::string text;
  for (const int position : positions) {
    text += (text.empty() ? "" : ", ") + std::to_string(position + 1);
  }
  return text;
}

}  // namespace quorvane
