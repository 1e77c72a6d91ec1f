// The finished fits of a session, to be listed, compared and gone back to.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/kept_fit.h"
#include "core/packed_fit.h"

namespace quorvane {

struct HistoryEntry {
  std::string name;  // "Fit 3", until it is renamed
  std::chrono::system_clock::time_point time;
  std::shared_ptr<const KeptFit> kept;      // never null
  std::shared_ptr<const PackedFit> packed;  // null: only `kept` is known, as from an archive
  bool compared = false;                    // it had a part in the last comparison
  std::uint64_t id = 0;                     // its own in this list; times may be equal
};

inline constexpr std::size_t kLongestFitName = 200;  // bytes

enum class HistoryKey { kTime, kName, kModel, kFitted, kPoints, kSum, kRms, kAICc, kBIC, kRunsZ };

// The newest first; places count from 0. Copies share the fits.
class FitHistory {
 public:
  const std::vector<HistoryEntry>& Entries() const { return entries_; }

  // Enters a fit that has just finished.
  void Add(const std::shared_ptr<const FinishedFit>& fit,
           std::chrono::system_clock::time_point time = std::chrono::system_clock::now());

  // Enters, behind all others, a fit of which only that much is known.
  void AddKept(std::string name, std::chrono::system_clock::time_point time, KeptFit kept);

  // Puts `now`, the same fit of which more is known, in the place of `before`. Nothing happens if
  // `before` was deleted.
  void Replace(const std::shared_ptr<const FinishedFit>& before,
               const std::shared_ptr<const FinishedFit>& now);

  // The fit of an entry that is packed: the one that somebody still holds, or a new one.
  std::shared_ptr<const FinishedFit> Fit(std::size_t place);

  // Whether somebody has the fit of that entry, and it is `fit`.
  bool Holds(std::size_t place, const std::shared_ptr<const FinishedFit>& fit) const {
    return fit != nullptr && held_[place].lock() == fit;
  }

  // Takes a name without the blanks around it. False for one that is empty then, or too long.
  bool Rename(std::size_t place, std::string_view name);
  void Delete(std::size_t place);
  void Clear();

  // The fits at `places` have been put side by side; no others are known as compared from now on.
  void MarkCompared(const std::vector<std::size_t>& places);

  // Places in rising order of `key`, equal ones as they stand, of equal times the oldest first;
  // what is not known comes last.
  std::vector<std::size_t> Sorted(HistoryKey key) const;

 private:
  std::vector<HistoryEntry> entries_;
  std::vector<std::weak_ptr<const FinishedFit>> held_;  // one an entry: the fit while it lives
  int numbered_ = 0;                                    // the last number in a name
  std::uint64_t identified_ = 0;                        // the last id
};

}  // namespace quorvane
