#include "core/fit_history.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "base/text.h"
#include "fit/models.h"

namespace quorvane {

namespace {

// Not known comes last.
using Rank = std::tuple<bool, double, std::string_view>;

Rank RankOf(const std::optional<double>& value) {
  return {!value, value.value_or(0.0), {}};
}

Rank RankOf(const HistoryEntry& entry, HistoryKey key) {
  const FitSummary& fit = entry.kept->summary;
  switch (key) {
    case HistoryKey::kTime:
      return RankOf(std::chrono::duration<double>(entry.time.time_since_epoch()).count());
    case HistoryKey::kName:
      return {false, 0.0, entry.name};
    case HistoryKey::kModel:
      return RankOf(fit.model->index);
    case HistoryKey::kFitted:
      return RankOf(fit.Fitted());
    case HistoryKey::kPoints:
      return RankOf(fit.points);
    case HistoryKey::kSum:
      return RankOf(fit.sum);
    case HistoryKey::kRms:
      return RankOf(fit.Rms());
    case HistoryKey::kAICc:
      return RankOf(fit.AICc());
    case HistoryKey::kBIC:
      return RankOf(fit.BIC());
    case HistoryKey::kRunsZ:
      break;
  }
  return RankOf(fit.runsZ);
}

const std::string kNumbered = "Fit ";

// The number in a name that was given by number; 0 in another.
int NumberIn(const std::string& name) {
  constexpr double kMost = 1e6;  // of a session
  if (!name.starts_with(kNumbered)) return 0;
  const double number = ParseNumeric(name.substr(kNumbered.size())).value_or(0.0);
  return number >= 1.0 && number <= kMost ? static_cast<int>(number) : 0;
}

// What an entry holds of its fit; `like` is one that may share points and scans with it.
void Fill(HistoryEntry& entry, const FinishedFit& fit, const HistoryEntry& like) {
  entry.packed = std::make_shared<const PackedFit>(fit, like.packed.get());
  const bool samePoints = like.packed != nullptr && entry.packed->SamePoints(*like.packed);
  entry.kept = std::make_shared<const KeptFit>(
      KeptOf(fit, samePoints ? like.kept->summary.digest : std::string()));
}

}  // namespace

void FitHistory::Add(const std::shared_ptr<const FinishedFit>& fit,
                     std::chrono::system_clock::time_point time) {
  HistoryEntry entry{kNumbered + std::to_string(++numbered_), time, nullptr, nullptr};
  entry.id = ++identified_;
  Fill(entry, *fit, entries_.empty() ? HistoryEntry{} : entries_.front());
  entries_.insert(entries_.begin(), std::move(entry));
  held_.insert(held_.begin(), fit);
}

void FitHistory::AddKept(std::string name, std::chrono::system_clock::time_point time,
                         KeptFit kept) {
  numbered_ = std::max(numbered_, NumberIn(name));
  entries_.push_back(
      {std::move(name), time, std::make_shared<const KeptFit>(std::move(kept)), nullptr});
  entries_.back().id = ++identified_;
  held_.emplace_back();
}

void FitHistory::Replace(const std::shared_ptr<const FinishedFit>& before,
                         const std::shared_ptr<const FinishedFit>& now) {
  if (before == nullptr) return;
  for (std::size_t place = 0; place < entries_.size(); ++place) {
    if (held_[place].lock() != before) continue;
    const HistoryEntry known = entries_[place];
    Fill(entries_[place], *now, known);
    held_[place] = now;
    return;
  }
}

std::shared_ptr<const FinishedFit> FitHistory::Fit(std::size_t place) {
  std::shared_ptr<const FinishedFit> fit = held_[place].lock();
  if (fit == nullptr) {
    fit = entries_[place].packed->Unpacked();
    held_[place] = fit;
  }
  return fit;
}

bool FitHistory::Rename(std::size_t place, std::string_view name) {
  const std::string_view trimmed = Trim(name);
  if (trimmed.empty() || trimmed.size() > kLongestFitName) return false;
  entries_[place].name = trimmed;
  return true;
}

void FitHistory::Delete(std::size_t place) {
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(place));
  held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(place));
}

// Ids go on, so that nobody takes a new entry for one that is gone.
void FitHistory::Clear() {
  entries_.clear();
  held_.clear();
  numbered_ = 0;
}

void FitHistory::MarkCompared(const std::vector<std::size_t>& places) {
  for (HistoryEntry& entry : entries_) entry.compared = false;
  for (const std::size_t place : places) entries_[place].compared = true;
}

std::vector<std::size_t> FitHistory::Sorted(HistoryKey key) const {
  std::vector<std::size_t> places(entries_.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  if (key == HistoryKey::kTime) std::reverse(places.begin(), places.end());
  std::stable_sort(places.begin(), places.end(), [&](std::size_t a, std::size_t b) {
    return RankOf(entries_[a], key) < RankOf(entries_[b], key);
  });
  return places;
}

}  // namespace quorvane
