#include "sim/plan_scans.h"

#include <array>
#include <cmath>

#include "base/quiet_host.h"
#include "fit/assembly.h"
#include "sim/plan_loads.h"

namespace quorvane {

namespace {

constexpr double kDeleted = -1.0;  // standard deviation of a deleted point

Dataset EmptyScan(const ExperimentPlan& plan, const PlannedCell& cell, std::size_t wavelength) {
  Dataset scan = EmptyDataset();
  const SolutionColumn ends = ColumnOf(plan, cell.column);
  scan.Speed = static_cast<std::int32_t>(cell.speed);
  scan.Temperature = static_cast<float>(plan.temperature);
  scan.Rmen = ends.meniscus;
  scan.Rbase = ends.base;
  scan.ExtCoeff = plan.extCoeff[wavelength];
  scan.ALoad = plan.loads[cell.column];
  if (plan.TwoComponents()) {
    scan.ExtCoeff2 = plan.extCoeffB[wavelength];
    scan.BLoad = plan.LoadB(cell.column);
  }
  scan.NumPoints = static_cast<std::int16_t>(plan.points);
  const double step = (ends.base - ends.meniscus) / (plan.points - 1);
  for (int k = 0; k < plan.points; ++k) {
    const auto place = static_cast<std::size_t>(k);
    scan.R[place] = ends.meniscus + k * step;
    scan.Err[place] = plan.noise;
    scan.Good[place] = kTrue;
  }
  scan.RefRadius = CalcRefRadius(scan);
  return scan;
}

CheckState Checked(bool checked) {
  return checked ? CheckState::kChecked : CheckState::kUnchecked;
}

// Adds the scans of a cell that have points. With a second component they are linked to the first
// of them.
void AddScans(const ExperimentPlan& plan, const PlannedCell& cell, std::vector<Dataset>& datasets,
              std::vector<std::int16_t>& links) {
  const auto first = static_cast<std::int16_t>(datasets.size());
  for (const Dataset& scan : cell.scans) {
    if (CountGoodPoints(scan) == 0) continue;
    const auto own = static_cast<std::int16_t>(datasets.size());
    links.push_back(plan.TwoComponents() ? first : own);
    datasets.push_back(scan);
  }
}

FitState Assembled(const ExperimentPlan& plan, std::vector<Dataset> datasets,
                   const std::vector<std::int16_t>& links) {
  FitState fit;
  if (datasets.empty()) return fit;
  DatasetStore store;
  std::vector<std::int16_t> chosen;
  for (std::size_t k = 0; k < datasets.size(); ++k) chosen.push_back(static_cast<std::int16_t>(k));
  store.Datasets = std::move(datasets);
  FitSetup setup = FreshSetup(std::move(chosen), store, *plan.model);
  setup.RefLink = links;
  setup.DegC = plan.temperature;
  for (const SharedParameter& shared : SharedParameters) {
    setup.*shared.check = Checked(plan.Fits(shared));
  }
  QuietHost host;
  const std::vector<CellGeometry> geometries;
  SetupDataArrays(fit, {.setup = setup, .datasets = store.Datasets, .geometries = geometries},
                  host);
  bool anyFitted = false;
  SetupParameterArray(fit, setup, plan.truth, store.Datasets, anyFitted);
  for (int d = 1; d <= fit.NumFitSets; ++d) {  // the balance needs them in every model
    const Dataset& scan = store.Datasets[static_cast<std::size_t>(d - 1)];
    fit.SetCellTopR(d) = scan.Rmen;
    fit.SetCellBottomR(d) = scan.Rbase;
  }
  return fit;
}

// The signals of a scan whose reference concentrations the balance has found.
void TakeSignals(const FitState& fit, int d, Dataset& scan) {
  for (int i = fit.SetFirstPoint(d); i < fit.SetFirstPoint(d) + fit.SetPointCount(d); ++i) {
    scan.C[static_cast<std::size_t>(i - fit.SetFirstPoint(d))] = fit.FitY(i);
  }
}

void DeleteAbove(Dataset& scan, double most) {
  for (std::size_t k = 0; k < static_cast<std::size_t>(scan.NumPoints); ++k) {
    if (scan.C[k] <= most) continue;
    scan.Good[k] = kFalse;
    scan.Err[k] = kDeleted;
  }
  scan.RefRadius = CalcRefRadius(scan);
}

// Brings RefConc and RefConc2 of all scans to the balance of their loads at their own RefRadius,
// and the signals of whole scans with them.
void Balance(const ExperimentPlan& plan, PlannedCell& cell, bool signals) {
  for (Dataset& scan : cell.scans) {
    if (CountGoodPoints(scan) == 0) continue;
    FitState fit = Assembled(plan, {scan}, {0});
    BalanceLoads(fit, 1);
    scan.RefConc = std::exp(fit.FitA(2));
    if (plan.TwoComponents()) scan.RefConc2 = std::exp(fit.FitA(3));
    if (!signals) continue;
    FillCurves(fit);
    TakeSignals(fit, 1, scan);
  }
}

}  // namespace

PlannedCell PlanCell(const ExperimentPlan& plan, double speed, std::size_t column) {
  PlannedCell cell{speed, column, {}};
  for (std::size_t k = 0; k < plan.extCoeff.size(); ++k) {
    cell.scans.push_back(EmptyScan(plan, cell, k));
  }
  Balance(plan, cell, true);
  bool lost = false;
  for (Dataset& scan : cell.scans) {
    DeleteAbove(scan, plan.mostSignal);
    lost = lost || CountGoodPoints(scan) < scan.NumPoints;
  }
  if (lost) Balance(plan, cell, false);
  return cell;
}

FitState StateOf(const ExperimentPlan& plan, const std::vector<const PlannedCell*>& cells) {
  std::vector<Dataset> datasets;
  std::vector<std::int16_t> links;
  for (const PlannedCell* cell : cells) AddScans(plan, *cell, datasets, links);
  return Assembled(plan, std::move(datasets), links);
}

}  // namespace quorvane
