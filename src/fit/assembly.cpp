#include "fit/assembly.h"

#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "base/arithmetic.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/units.h"
#include "fit/models.h"

namespace quorvane {

namespace {

const Dataset& DatasetAt(const FitSetup& setup, int position,
                         const std::vector<Dataset>& datasets) {
  const auto place = static_cast<std::size_t>(position);
  return datasets[static_cast<std::size_t>(setup.FitSetList[place])];
}

// The positions of the fit that an assembly takes: all, or one alone.
struct Positions {
  int first = 0;
  int count = 0;
};

void TakeFlags(FitState& fit, const FitSetup& setup) {
  fit.FitModel = setup.FitModel;
  fit.TwoComponentModel = setup.TwoComponentModel;
  fit.UseMassConservation = setup.UseMassConservation;
  fit.CalcLoadingConcs = setup.CalcLoadingConcs;
  fit.ConstrainKRatios = setup.ConstrainKRatios;
}

void SizePointArrays(FitState& fit, int points, int sets) {
  for (Array1<double>* column : {&fit.FitR, &fit.FitY, &fit.FitYCalc, &fit.FitX, &fit.FitF}) {
    *column = Array1<double>(points);
  }
  fit.FitSet = Array1<std::int16_t>(points);
  fit.PointKind = Array1<std::int16_t>(points);
  fit.SetPointCount = Array1<std::int16_t>(sets);
  fit.SetFirstPoint = Array1<std::int32_t>(sets);
}

// Points of one dataset that lie outside its cell geometry.
struct OutsideCounts {
  std::int32_t below = 0;
  std::int32_t above = 0;
};

void LogOutside(const OutsideCounts& counts, int d, Host& host) {
  if (counts.below == 0 && counts.above == 0) return;
  host.PrintIt("\r\nDataset #" + FormatNumber(d, "###") +
               "   WARNING :: Datapoints outside the range defined for the chosen cell geometry "
               "have been found.  This may result in an incorrect calculation of the median "
               "cell concentration.");
  const auto say = [&](std::int32_t count, const char* side) {
    if (count == 0) return;
    host.PrintIt("There were " + FormatNumber(count, "####") + " points at a " + side +
                 " radius than the cell dimensions defined in the channels.txt file.");
  };
  say(counts.below, "lower");
  say(counts.above, "higher");
}

bool NeedsWidth(const FitSetup& setup) {
  return setup.TwoComponentModel ? setup.UseMassConservation : setup.CalcLoadingConcs;
}

// The two points that pull the mean concentrations of A and B towards the loading concentrations.
// Their target is the rise of the signal across the dataset over the tolerance.
void AppendMassPoints(FitState& fit, int start) {
  const int n = fit.FitNumPoints;
  if (n == start) throw SubscriptFault();
  double target = 0.0;
  CheckArithmetic([&] { target = (fit.FitY(n) - fit.FitY(start + 1)) / fit.MCTolerance; });
  for (const std::int16_t kind : {std::int16_t{1}, std::int16_t{2}}) {
    const int i = ++fit.FitNumPoints;
    fit.FitR(i) = fit.FitR(n);
    fit.FitY(i) = target;
    fit.FitX(i) = fit.FitX(n);
    fit.FitSet(i) = fit.FitSet(n);
    fit.PointKind(i) = kind;
  }
}

// What the points of one dataset are made from.
struct PointSource {
  const Dataset& dataset;
  double referenceSquared;  // of the radius that FitX is measured from, cm^2
  bool needsWidth;
  int geometry;
  const std::vector<CellGeometry>& geometries;
};

// Appends point p of the dataset as the next flat point of dataset d.
void AppendPoint(FitState& fit, const PointSource& source, std::size_t p, int d,
                 OutsideCounts& outside) {
  const int n = ++fit.FitNumPoints;
  fit.FitR(n) = source.dataset.R[p];
  fit.FitF(n) = 1.0;
  if (source.needsWidth) {
    std::int32_t below = 0;
    std::int32_t above = 0;
    fit.FitF(n) = getFofR(fit.FitR(n), source.geometry, source.geometries, below, above);
    outside.below += below;
    outside.above += above;
  }
  fit.FitY(n) = source.dataset.C[p];
  fit.FitX(n) = (fit.FitR(n) * fit.FitR(n) - source.referenceSquared) / 2.0;
  fit.FitSet(n) = static_cast<std::int16_t>(d);
  fit.PointKind(n) = 0;
}

// Appends the good points of the dataset at `position` as number d of the flat arrays.
void AppendDataset(FitState& fit, const FitSource& from, int position, int d, Host& host) {
  const FitSetup& setup = from.setup;
  const auto place = static_cast<std::size_t>(position);
  const double reference = DatasetAt(setup, setup.RefLink[place], from.datasets).RefRadius;
  const PointSource source{DatasetAt(setup, position, from.datasets), reference * reference,
                           NeedsWidth(setup), setup.SetCellChannel[place], from.geometries};
  const int start = fit.FitNumPoints;
  OutsideCounts outside;
  CheckArithmetic([&] {
    for (std::size_t p = 0; p < static_cast<std::size_t>(source.dataset.NumPoints); ++p) {
      if (source.dataset.Good[p] != kFalse) AppendPoint(fit, source, p, d, outside);
    }
  });
  LogOutside(outside, d, host);
  if (setup.TwoComponentModel && setup.UseMassConservation) {
    AppendMassPoints(fit, start);
  }
  fit.SetFirstPoint(d) = start + 1;
  fit.SetPointCount(d) = static_cast<std::int16_t>(fit.FitNumPoints - start);
}

void FillPoints(FitState& fit, const FitSource& from, Positions positions, Host& host) {
  constexpr int kMassPoints = 2;
  fit.MCTolerance = from.mcTolerance;
  TakeFlags(fit, from.setup);
  int room = 0;
  for (int k = 0; k < positions.count; ++k) {
    room += DatasetAt(from.setup, positions.first + k, from.datasets).NumPoints + kMassPoints;
  }
  SizePointArrays(fit, room, positions.count);
  fit.FitNumPoints = 0;
  for (int k = 0; k < positions.count; ++k) {
    AppendDataset(fit, from, positions.first + k, k + 1, host);
  }
}

void SizeParameterArrays(FitState& fit, int sets) {
  const int block = sets * fit.ParamsPerSet;
  fit.FitA = Array1<double>(block);
  fit.FitIA = Array1<std::int16_t>(block);
  fit.FitParamNames = Array1<std::string>(block);
  for (Array1<double>* column :
       {&fit.SetRefRadius, &fit.SetSpeed, &fit.SetEpsA, &fit.SetEpsB, &fit.SetOmegaTerm,
        &fit.SetCellBottomR, &fit.SetCellTopR, &fit.SetALoad, &fit.SetBLoad, &fit.SetCalcLoad}) {
    *column = Array1<double>(sets);
  }
}

std::int16_t InUse(CheckState state) {
  return state == CheckState::kChecked ? 1 : 0;
}

// The per-dataset block and the constants of the dataset at `position`, number d of the fit.
void TakeDataset(FitState& fit, const FitSetup& setup, int position, int d,
                 const std::vector<Dataset>& datasets) {
  const auto place = static_cast<std::size_t>(position);
  const Dataset& dataset = DatasetAt(setup, position, datasets);
  const int n = fit.NumFitSets;
  const bool linked = setup.RefLink[place] != position;
  fit.FitA(d) = dataset.Offset;
  fit.FitIA(d) = InUse(setup.chkOffset[place]);
  fit.FitParamNames(d) = SetParameterName(0, d, fit.TwoComponentModel);
  fit.FitA(n + d) = CheckedLog(dataset.RefConc);
  fit.FitIA(n + d) = InUse(setup.chkRefC[place]);
  fit.FitParamNames(n + d) = SetParameterName(1, d, fit.TwoComponentModel);
  if (fit.TwoComponentModel) {
    fit.FitA(2 * n + d) = CheckedLog(dataset.RefConc2);
    fit.FitIA(2 * n + d) = InUse(setup.chkRefC2[place]);
    fit.FitParamNames(2 * n + d) = SetParameterName(2, d, true);
    if (linked) {
      fit.FitIA(n + d) = 0;
      fit.FitIA(2 * n + d) = 0;
    }
  }
  const double speed = dataset.Speed;
  fit.SetRefRadius(d) = dataset.RefRadius;
  fit.SetSpeed(d) = speed;
  fit.SetEpsA(d) = dataset.ExtCoeff;
  fit.SetEpsB(d) = dataset.ExtCoeff2;
  CheckArithmetic([&] { fit.SetOmegaTerm(d) = speed * kOmegaFactor * speed / fit.TempK; });
  fit.SetALoad(d) = dataset.ALoad;
  fit.SetBLoad(d) = dataset.BLoad;
  if (setup.FitModel->cellEnds) {
    fit.SetCellBottomR(d) = dataset.Rbase;
    fit.SetCellTopR(d) = dataset.Rmen;
  }
}

void AppendShared(FitState& fit, const FitSetup& setup, const FitPage& page) {
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    fit.FitA.Append(page.*parameter.shared->field);
    fit.FitIA.Append(InUse(setup.*parameter.shared->check));
    fit.FitParamNames.Append(std::string(parameter.name));
  }
}

void FillParameters(FitState& fit, const FitSetup& setup, const FitPage& page, Positions positions,
                    const std::vector<Dataset>& datasets) {
  TakeFlags(fit, setup);
  fit.NumFitSets = static_cast<std::int16_t>(positions.count);
  fit.ParamsPerSet = fit.TwoComponentModel ? 3 : 2;
  fit.TempK = setup.DegC + kZeroCelsius;
  fit.Vbar = page.Vbar;
  fit.Density = page.Density;
  SizeParameterArrays(fit, positions.count);
  for (int k = 0; k < positions.count; ++k) {
    TakeDataset(fit, setup, positions.first + k, k + 1, datasets);
  }
  AppendShared(fit, setup, page);
  fit.FitMA = static_cast<std::int16_t>(fit.FitA.size());
}

// New per-dataset values of one dataset.
struct NewValues {
  double offset = 0.0;
  double refConc = 0.0;
  double refConc2 = 0.0;
};

NewValues ValuesFromFit(const FitState& fit, int d) {
  const int n = fit.NumFitSets;
  NewValues values{.offset = fit.FitA(d)};
  CheckArithmetic([&] {
    values.refConc = std::exp(fit.FitA(n + d));
    if (fit.TwoComponentModel) values.refConc2 = std::exp(fit.FitA(2 * n + d));
  });
  return values;
}

}  // namespace

std::string SetParameterName(int block, int d, bool twoComponents) {
  constexpr std::array<const char*, 3> kOfTwo = {"Offset", "RefCA", "RefCB"};
  const char* name =
      !twoComponents && block == 1 ? "RefC" : kOfTwo[static_cast<std::size_t>(block)];
  return std::string(name) + "(" + std::to_string(d) + ")";
}

void SetupDataArrays(FitState& fit, const FitSource& from, Host& host) {
  fit.CurrentProc = "SetupDataArrays";
  fit.FitSetList = from.setup.FitSetList;
  fit.RefLink = from.setup.RefLink;
  FillPoints(fit, from, {0, from.setup.NumFitSets}, host);
}

void SetupParameterArray(FitState& fit, const FitSetup& setup, const FitPage& page,
                         const std::vector<Dataset>& datasets, bool& anyFitted) {
  fit.CurrentProc = "SetupParameterArray";
  FillParameters(fit, setup, page, {0, setup.NumFitSets}, datasets);
  anyFitted = fit.NumFitted() > 0;
}

void SetupSingleDatasetArray(FitState& fit, const FitSource& from, int k, Host& host) {
  fit.CurrentProc = "SetupSingleDatasetArray";
  fit.FitSetList = {from.setup.FitSetList[static_cast<std::size_t>(k)]};
  fit.RefLink = {0};
  FillPoints(fit, from, {k, 1}, host);
}

void SetupSingleParameterArray(FitState& fit, const FitSetup& setup, const FitPage& page, int k,
                               const std::vector<Dataset>& datasets) {
  fit.CurrentProc = "SetupSingleParameterArray";
  FillParameters(fit, setup, page, {k, 1}, datasets);
  fit.FitParamNames = {};
}

void CopyLinked(const FitState& fit, Array1<double>& values) {
  if (!fit.TwoComponentModel) return;
  const int n = fit.NumFitSets;
  for (int d = 1; d <= n; ++d) {
    const int target = fit.RefLink[static_cast<std::size_t>(d - 1)] + 1;
    if (target == d) continue;
    values(n + d) = values(n + target);
    values(2 * n + d) = values(2 * n + target);
  }
}

void UpdateParameters(FitState& fit, FitPage& page, std::vector<Dataset>& datasets) {
  fit.CurrentProc = "UpdateParameters";
  CopyLinked(fit, fit.FitA);
  std::vector<NewValues> values;
  for (int d = 1; d <= fit.NumFitSets; ++d) values.push_back(ValuesFromFit(fit, d));
  for (std::size_t k = 0; k < values.size(); ++k) {
    Dataset& dataset = datasets[static_cast<std::size_t>(fit.FitSetList[k])];
    dataset.Offset = values[k].offset;
    dataset.RefConc = values[k].refConc;
    if (fit.TwoComponentModel) dataset.RefConc2 = values[k].refConc2;
  }
  int l = fit.SharedBase();
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    page.*parameter.shared->field = fit.FitA(++l);
  }
  fit.CurrentProc = "Unknown";
}

}  // namespace quorvane
