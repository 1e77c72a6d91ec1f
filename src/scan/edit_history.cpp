#include "scan/edit_history.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {

namespace {

EditState StateOf(const Dataset& dataset) {
  EditState state{{}, {}, dataset.RefRadius, dataset.Rmen, dataset.Rbase};
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    state.good.push_back(dataset.Good[k] != kFalse);
    state.negative.push_back(std::signbit(dataset.Err[k]));
  }
  return state;
}

bool SamePoints(const EditState& one, const EditState& other) {
  return one.good == other.good && one.negative == other.negative;
}

bool SameEnds(const EditState& one, const EditState& other) {
  return one.Rmen == other.Rmen && one.Rbase == other.Rbase;
}

// Whether what changed from one state to the other still stands in `now` as the first left it.
bool Fits(const EditState& now, const EditState& from, const EditState& to) {
  return (SamePoints(from, to) || SamePoints(now, from)) &&
         (SameEnds(from, to) || SameEnds(now, from));
}

void Change(Dataset& dataset, const EditState& from, const EditState& to) {
  if (!SamePoints(from, to)) {
    for (std::size_t k = 0; k < to.good.size(); ++k) {
      dataset.Good[k] = to.good[k] ? kTrue : kFalse;
      dataset.Err[k] = std::copysign(dataset.Err[k], to.negative[k] ? -1.0 : 1.0);
    }
    dataset.RefRadius = to.RefRadius;
  }
  if (!SameEnds(from, to)) {
    dataset.Rmen = to.Rmen;
    dataset.Rbase = to.Rbase;
  }
}

}  // namespace

void EditHistory::Apply(Dataset& dataset, int position, const std::function<void(Dataset&)>& edit) {
  Keep(dataset, position, edit, 0);
}

std::vector<int> EditHistory::ApplyToMany(std::vector<Dataset>& datasets,
                                          std::span<const int> positions,
                                          const std::function<void(Dataset&)>& edit) {
  ++command_;
  std::vector<int> changed;
  for (const int position : positions) {
    if (Keep(datasets[static_cast<std::size_t>(position)], position, edit, command_)) {
      changed.push_back(position);
    }
  }
  return changed;
}

bool EditHistory::Keep(Dataset& dataset, int position, const std::function<void(Dataset&)>& edit,
                       int command) {
  EditState before = StateOf(dataset);
  edit(dataset);
  EditState after = StateOf(dataset);
  if (SamePoints(before, after) && SameEnds(before, after)) return false;
  const auto place = static_cast<std::size_t>(position);
  if (logs_.size() <= place) logs_.resize(place + 1);
  logs_[place].back.push_back({std::move(after), std::move(before), command});
  logs_[place].forth.clear();
  return true;
}

bool EditHistory::CanUndo(const Dataset& dataset, int position) const {
  const auto place = static_cast<std::size_t>(position);
  return place < logs_.size() && AnyFits(logs_[place].back, dataset);
}

bool EditHistory::CanRedo(const Dataset& dataset, int position) const {
  const auto place = static_cast<std::size_t>(position);
  return place < logs_.size() && AnyFits(logs_[place].forth, dataset);
}

void EditHistory::Undo(Dataset& dataset, int position) {
  const auto place = static_cast<std::size_t>(position);
  if (place < logs_.size()) Take(logs_[place].back, logs_[place].forth, dataset);
}

void EditHistory::Redo(Dataset& dataset, int position) {
  const auto place = static_cast<std::size_t>(position);
  if (place < logs_.size()) Take(logs_[place].forth, logs_[place].back, dataset);
}

bool EditHistory::EndsWithCommand(std::size_t place, const Dataset& dataset) const {
  const Steps& steps = logs_[place].back;
  return !steps.empty() && command_ != 0 && steps.back().command == command_ &&
         Fits(StateOf(dataset), steps.back().from, steps.back().to);
}

bool EditHistory::CanUndoCommand(const std::vector<Dataset>& datasets) const {
  for (std::size_t place = 0; place < logs_.size() && place < datasets.size(); ++place) {
    if (EndsWithCommand(place, datasets[place])) return true;
  }
  return false;
}

std::vector<int> EditHistory::UndoCommand(std::vector<Dataset>& datasets) {
  std::vector<int> undone;
  for (std::size_t place = 0; place < logs_.size() && place < datasets.size(); ++place) {
    if (!EndsWithCommand(place, datasets[place])) continue;
    Undo(datasets[place], static_cast<int>(place));
    undone.push_back(static_cast<int>(place));
  }
  return undone;
}

void EditHistory::Forget(int position) {
  if (static_cast<std::size_t>(position) < logs_.size()) logs_.erase(logs_.begin() + position);
}

bool EditHistory::AnyFits(const Steps& steps, const Dataset& dataset) {
  const EditState now = StateOf(dataset);
  return std::any_of(steps.rbegin(), steps.rend(),
                     [&](const Step& step) { return Fits(now, step.from, step.to); });
}

void EditHistory::Take(Steps& steps, Steps& opposite, Dataset& dataset) {
  const EditState now = StateOf(dataset);
  while (!steps.empty() && !Fits(now, steps.back().from, steps.back().to)) steps.pop_back();
  if (steps.empty()) return;
  Step step = std::move(steps.back());
  steps.pop_back();
  Change(dataset, step.from, step.to);
  opposite.push_back({std::move(step.to), std::move(step.from), step.command});
}

}  // namespace quorvane
