// The tables of a plan in its window.
#pragma once

#include <optional>

#include "sim/plan_check.h"

class QTableWidget;

namespace quorvane {

// A parameter a row: expected error, correlations, and what a check has found.
void ShowErrors(QTableWidget& grid, const PlanResult& result,
                const std::optional<PlanCheck>& check);

// A scan a row.
void ShowScans(QTableWidget& grid, const ExperimentPlan& plan, const PlanResult& result);

// A choice of speeds a row, the best first.
void ShowRanking(QTableWidget& grid, const PlanResult& result);

}  // namespace quorvane
