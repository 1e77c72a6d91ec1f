// The constants of the session from what it was told of its sample.
#pragma once

#include <vector>

#include "core/page/refusal.h"
#include "core/program_state.h"

namespace quorvane {

// Temperature of the experiment, deg C: that of the page if it is set up, else that of the first
// dataset chosen for the fit, of the first one, or of a new page.
double ExperimentDegC(const QuorvaneModule& module);

// That at which module.Solution is taken: its own, or that of the experiment.
double SolutionDegC(const QuorvaneModule& module);

// Which constants are taken.
struct SolutionUse {
  bool vbar = true;
  bool ofB = false;  // vbar and extinction are those of the second component
  bool density = true;
  bool extinction = false;  // of the rows in RowsAt280
};

// Positions in the store of the datasets on the page that were scanned at 280 nm, within 2 nm.
std::vector<int> RowsAt280(const QuorvaneModule& module);

// Takes vbar and density, and extinction times path for the datasets at 280 nm: all that `use`
// wants, or nothing.
Refusal UseSolution(QuorvaneModule& module, const SolutionUse& use,
                    const SolutionConstants& constants);

// The page with these constants, for a look at its weights; nothing is taken.
FitPage PageWith(const FitPage& page, const SolutionUse& use, const SolutionConstants& constants);

}  // namespace quorvane
