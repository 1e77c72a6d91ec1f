// Charts of a plan: its scans, and its errors along one speed or load.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/chart.h"
#include "sim/plan_errors.h"

namespace quorvane {

// All planned scans, a colour a speed; what the detector loses is grey, its limit a line.
Chart ScansOfPlan(const ExperimentPlan& plan, const PlanResult& result);

// The speeds or loads of a plan that may be moved; none of candidates.
std::vector<PlanAxis> AxesOf(const ExperimentPlan& plan);

// "speed 2 (14,000 rpm)", "load 1 (2 micromolar)".
std::string NameOf(const ExperimentPlan& plan, const PlanAxis& axis);

// Where the errors are worked out: `count` values, even from a third to three times the planned
// one, within what a speed may be.
std::vector<double> ValuesAlong(const ExperimentPlan& plan, const PlanAxis& axis, int count);

// The errors (of ErrorsAlong) at `values`, a panel a parameter: percent of the value for weights,
// stoichiometries and virial coefficients. A mark stands at the plan.
Chart ErrorsOfPlan(const ExperimentPlan& plan, const PlanAxis& axis,
                   const std::vector<double>& values,
                   const std::vector<std::vector<std::optional<double>>>& errors);

}  // namespace quorvane
