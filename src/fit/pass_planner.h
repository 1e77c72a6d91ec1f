// Makes the plan of a pass over one dataset from the species of its model, and tells which datasets
// the kernel cannot do. Symbols as in pass_kernel.h.
#pragma once

namespace quorvane {

struct FitState;
struct PassPlan;
struct SetPoints;

// Plans dataset d (from 1, with the points `points`) for the parameters fit.Workspace.touching at
// the values fit.Workspace.work. `plan` is fresh. False, with the plan half made, if the sums have
// to be made on the plain road:
//   - a parameter other than the baseline is 0: the rule then has a step of another size;
//   - a fitted parameter is a ratio of two K: ln K is not linear in it;
//   - an exponent e + s x may exceed 600 somewhere;
//   - a weight or stoichiometry has a step that moves an exponent by more than kMostMove at some
//     point, or there are more than kMostMoves different ones;
//   - a factor of a species is 0 and its step changes it: no bound on the relative change;
//   - the rule's first step is so long that a ratio of kSafeRatio may not lead to the least step;
//   - more parameters than kMostColumns touch the dataset.
// Throws ArithmeticFault for a constrained ratio of 0 or below. Other faults stay in the flags.
bool PlanPass(const FitState& fit, const SetPoints& points, int d, PassPlan& plan);

}  // namespace quorvane
