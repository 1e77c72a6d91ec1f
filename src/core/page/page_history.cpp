#include "core/page/page_history.h"

#include <utility>

namespace quorvane {

namespace {

constexpr std::size_t kMostSteps = 500;

bool IsSetUp(const QuorvaneModule& module) {
  return module.Setup.NumFitSets > 0 && RowsAreCurrent(module);
}

const Dataset& DatasetOf(const QuorvaneModule& module, std::size_t row) {
  return module.Store.Datasets[static_cast<std::size_t>(module.Setup.FitSetList[row])];
}

// The constants of one page with the values of another.
FitPage WithConstantsOf(const FitPage& constants, FitPage page) {
  page.Vbar = constants.Vbar;
  page.VbarB = constants.VbarB;
  page.Density = constants.Density;
  page.ModelIndex = constants.ModelIndex;
  return page;
}

PageState StateOf(const QuorvaneModule& module) {
  PageState state{WithConstantsOf({}, module.FitPage), module.Setup, {}};
  for (std::size_t row = 0; row < static_cast<std::size_t>(module.Setup.NumFitSets); ++row) {
    const Dataset& dataset = DatasetOf(module, row);
    PageState::Row& values = state.rows.emplace_back();
    values.speed = dataset.Speed;
    for (std::size_t k = 0; k < RowValues.size(); ++k) {
      values.values[k] = dataset.*RowValues[k].field;
    }
  }
  return state;
}

void PutBack(const PageState& state, QuorvaneModule& module) {
  module.FitPage = WithConstantsOf(module.FitPage, state.page);
  module.Setup = state.setup;
  for (std::size_t row = 0; row < state.rows.size(); ++row) {
    Dataset& dataset = DatasetOfRow(module, static_cast<int>(row));
    dataset.Speed = state.rows[row].speed;
    for (std::size_t k = 0; k < RowValues.size(); ++k) {
      dataset.*RowValues[k].field = state.rows[row].values[k];
    }
  }
}

}  // namespace

void PageHistory::Begin(const QuorvaneModule& module) {
  back_.clear();
  forth_.clear();
  now_ = IsSetUp(module) ? StateOf(module) : PageState{};
}

void PageHistory::Note(const QuorvaneModule& module) {
  if (!IsSetUp(module)) return;
  PageState state = StateOf(module);
  if (state == now_) return;
  back_.push_back(std::exchange(now_, std::move(state)));
  if (back_.size() > kMostSteps) back_.erase(back_.begin());
  forth_.clear();
}

void PageHistory::Undo(QuorvaneModule& module) {
  Note(module);
  Step(back_, forth_, module);
}

void PageHistory::Redo(QuorvaneModule& module) {
  Note(module);
  Step(forth_, back_, module);
}

void PageHistory::Step(Steps& from, Steps& to, QuorvaneModule& module) {
  if (from.empty() || !IsSetUp(module)) return;
  to.push_back(std::exchange(now_, std::move(from.back())));
  from.pop_back();
  PutBack(now_, module);
}

}  // namespace quorvane
