// A last fit made for a test.
#pragma once

#include <memory>
#include <utility>

#include "core/program_state.h"

namespace quorvane {

// Puts in the place of the last fit one that `change` was applied to; without one, a new one.
template <class Change>
void ChangeLastFit(QuorvaneModule& module, Change&& change) {
  FinishedFit changed = module.LastFit ? *module.LastFit : FinishedFit{};
  change(changed);
  module.LastFit = std::make_shared<const FinishedFit>(std::move(changed));
}

}  // namespace quorvane
