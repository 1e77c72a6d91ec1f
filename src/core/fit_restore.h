// Going back to an earlier fit of the session.
#pragma once

#include <cstddef>

#include "core/page/refusal.h"
#include "core/program_state.h"

namespace quorvane {

// Puts page, model, checks, links and choice of datasets back as they were when the fit at `place`
// of module.Fits had finished, and the fit into module.LastFit. Each of its datasets becomes what
// it was then: values, points in use, signal; others are only no longer chosen. A dataset is found
// again by the path and name it had, wherever it stands now.
//
// An entry without arrays gives its values as start values for the next fit: module.LastFit and the
// points stay as they are.
//
// Refused, with nothing changed, if one of the datasets is not loaded any more or was renamed.
Refusal RestoreFit(QuorvaneModule& module, std::size_t place);

}  // namespace quorvane
