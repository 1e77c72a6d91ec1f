// Stepping back and forth through the values, checks and links of the parameter page.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/page/row_values.h"
#include "core/program_state.h"

namespace quorvane {

// What a user can change on a page that is set up. vbar and density are none of it: they belong to
// the experiment.
struct PageState {
  struct Row {
    std::int32_t speed = 0;  // rpm
    std::array<double, RowValues.size()> values{};
    bool operator==(const Row&) const = default;
  };

  FitPage page;
  FitSetup setup;
  std::vector<Row> rows;
  bool operator==(const PageState&) const = default;
};

class PageHistory {
 public:
  // A page was set up: it is where the steps begin.
  void Begin(const QuorvaneModule& module);

  // The page may have changed since the last call: if so that is one step, and what was undone can
  // then no longer be redone. Nothing for a page whose datasets are gone.
  void Note(const QuorvaneModule& module);

  bool CanUndo() const { return !back_.empty(); }
  bool CanRedo() const { return !forth_.empty(); }

  // One step back or forth, nothing if there is none. What changed since the last Note is a step.
  void Undo(QuorvaneModule& module);
  void Redo(QuorvaneModule& module);

 private:
  using Steps = std::vector<PageState>;  // the next one is at the end
  void Step(Steps& from, Steps& to, QuorvaneModule& module);

  PageState now_;
  Steps back_;
  Steps forth_;
};

}  // namespace quorvane
