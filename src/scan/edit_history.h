// Undoing and redoing the edits of points and of meniscus and base, for each dataset by itself.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "scan/dataset.h"

namespace quorvane {

// What an edit changes in a Dataset.
struct EditState {
  std::vector<bool> good;      // of each point
  std::vector<bool> negative;  // the sign of its Err
  double RefRadius = 0.0;      // cm, like the others
  double Rmen = 0.0;
  double Rbase = 0.0;
};

// The edits of a session by position in the store. It goes with the store: what unloads or replaces
// datasets there says so here.
class EditHistory {
 public:
  // Runs `edit` on the dataset at `position` and keeps what it changed; what was undone before can
  // then no longer be redone. An edit that changes nothing is not kept.
  void Apply(Dataset& dataset, int position, const std::function<void(Dataset&)>& edit);

  // Runs `edit` on each of the datasets at `positions` as one command, and hands back the positions
  // where it changed something. Each can be undone by itself, or all at once by UndoCommand.
  std::vector<int> ApplyToMany(std::vector<Dataset>& datasets, std::span<const int> positions,
                               const std::function<void(Dataset&)>& edit);

  bool CanUndo(const Dataset& dataset, int position) const;
  bool CanRedo(const Dataset& dataset, int position) const;

  // Takes the last edit of the dataset at `position` back, or does again what was undone last;
  // nothing if there is none. An edit whose values were since changed elsewhere, such as a meniscus
  // that was typed, no longer fits: it is passed over and forgotten.
  void Undo(Dataset& dataset, int position);
  void Redo(Dataset& dataset, int position);

  // Takes the last command of ApplyToMany back wherever it is still the last edit of a dataset, and
  // hands back the positions.
  bool CanUndoCommand(const std::vector<Dataset>& datasets) const;
  std::vector<int> UndoCommand(std::vector<Dataset>& datasets);

  // The dataset at `position` was unloaded; later ones have moved up.
  void Forget(int position);
  void Clear() { logs_.clear(); }

 private:
  // From the state that an undo or a redo finds to the one that it makes.
  struct Step {
    EditState from;
    EditState to;
    int command = 0;  // of ApplyToMany; 0: an edit of one dataset
  };
  using Steps = std::vector<Step>;  // the next one is at the end
  struct Log {
    Steps back;
    Steps forth;
  };

  // False if nothing changed.
  bool Keep(Dataset& dataset, int position, const std::function<void(Dataset&)>& edit, int command);
  bool EndsWithCommand(std::size_t place, const Dataset& dataset) const;
  static bool AnyFits(const Steps& steps, const Dataset& dataset);
  static void Take(Steps& steps, Steps& opposite, Dataset& dataset);

  int command_ = 0;        // the last of ApplyToMany; 0 if there was none
  std::vector<Log> logs_;  // by position; positions without edits may be missing at the end
};

}  // namespace quorvane
