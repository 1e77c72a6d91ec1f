// Flat fit problems for tests, made straight from numbers: no scan files, no page.
#pragma once

#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "fit/fit_state.h"
#include "fit/model_pass.h"
#include "fit/models.h"

namespace quorvane {

// Of a calculation that nobody stops.
inline const StopFlag kNoStop;

// Normal deviates, the same on every platform (the library's distributions are not).
class NormalNoise {
 public:
  NormalNoise(std::uint64_t seed, double sd) : generator_(seed), sd_(sd) {}
  double operator()() {
    const double radius = std::sqrt(-2.0 * std::log(1.0 - Uniform()));
    return sd_ * radius * std::cos(2.0 * std::acos(-1.0) * Uniform());
  }
  // Uniform in [0, 1).
  double Uniform() { return static_cast<double>(generator_() >> 11) * 0x1p-53; }

 private:
  std::mt19937_64 generator_;
  double sd_;
};

// The model indices with routines, and for each the shared parameters of a plausible sample.
inline const std::vector<int>& AllModels() {
  static const std::vector<int> indices = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 14};
  return indices;
}
inline std::vector<double> TypicalShared(int modelIndex) {
  switch (modelIndex) {
    case 0:
      return {7500.0};
    case 1:
      return {7500.0, 8e-6};
    case 2:
      return {7500.0, 2.0, 1.0};
    case 3:
      return {7500.0, 2.0, 1.0, 4.0, 3.0};
    case 4:
    case 5:
      return {7500.0, 2.0, 1.0, 0.15};
    case 6:
      return {7500.0, 5200.0, 1.0};
    case 7:
      return {7500.0, 5200.0, 1.0, 0.6};
    case 8:
      return {7500.0, 5200.0, 1.0, 0.6, 0.4};
    case 9:
      return {7500.0, 0.3};
    case 10:
      return {7500.0, 5200.0, 2.0, 1.0, 0.6};
    default:
      return {7500.0, 2.0, 1.0, 1e-3};
  }
}

struct ProblemSize {
  int modelIndex = 0;
  int sets = 2;
  int points = 20;  // of each dataset
  bool massConservation = false;
  bool constrainKRatios = false;
};

// Parts of MakeProblem: the arrays of a problem with `perSet` points a dataset, and dataset d.
inline void SizeArrays(FitState& fit, const ProblemSize& size, int perSet) {
  fit.FitNumPoints = size.sets * perSet;
  for (Array1<double>* column : {&fit.FitR, &fit.FitY, &fit.FitYCalc, &fit.FitX, &fit.FitF}) {
    *column = Array1<double>(fit.FitNumPoints);
  }
  fit.FitSet = Array1<std::int16_t>(fit.FitNumPoints);
  fit.PointKind = Array1<std::int16_t>(fit.FitNumPoints);
  fit.SetPointCount = Array1<std::int16_t>(size.sets, static_cast<std::int16_t>(perSet));
  fit.SetFirstPoint = Array1<std::int32_t>(size.sets);
  for (Array1<double>* column :
       {&fit.SetRefRadius, &fit.SetSpeed, &fit.SetEpsA, &fit.SetEpsB, &fit.SetOmegaTerm,
        &fit.SetCellBottomR, &fit.SetCellTopR, &fit.SetALoad, &fit.SetBLoad, &fit.SetCalcLoad}) {
    *column = Array1<double>(size.sets);
  }
}
inline void FillSet(FitState& fit, const ProblemSize& size, int perSet, int d) {
  const double speed = 10000.0 + 4000.0 * ((d - 1) % 3);
  fit.FitSetList.push_back(static_cast<std::int16_t>(d - 1));
  fit.RefLink.push_back(static_cast<std::int16_t>(d - 1));
  fit.SetFirstPoint(d) = (d - 1) * perSet + 1;
  fit.SetRefRadius(d) = 6.40 + 0.2 * 2.0 / 3.0;
  fit.SetSpeed(d) = speed;
  fit.SetEpsA(d) = 1.0;
  fit.SetEpsB(d) = 0.7;
  fit.SetOmegaTerm(d) = speed * 1.319007e-10 * speed / fit.TempK;
  fit.SetCellTopR(d) = 6.39;
  fit.SetCellBottomR(d) = 6.61;
  fit.SetALoad(d) = 0.25;
  fit.SetBLoad(d) = 0.3;
  fit.FitA(d) = 0.01;
  fit.FitA(size.sets + d) = std::log(0.2 + 0.01 * d);
  if (fit.TwoComponentModel) fit.FitA(2 * size.sets + d) = std::log(0.15 + 0.02 * d);
  for (int p = 0; p < perSet; ++p) {
    const int i = fit.SetFirstPoint(d) + p;
    const int last = size.points - 1;
    const int place = p < size.points ? p : last;
    fit.FitR(i) = 6.40 + 0.2 * place / last;
    fit.FitX(i) = (fit.FitR(i) * fit.FitR(i) - fit.SetRefRadius(d) * fit.SetRefRadius(d)) / 2.0;
    fit.FitF(i) = p < size.points ? 1.0 + 0.5 * (fit.FitR(i) - 6.4) : 0.0;
    fit.FitSet(i) = static_cast<std::int16_t>(d);
    fit.PointKind(i) = static_cast<std::int16_t>(p < size.points ? 0 : p - last);
  }
}

// A problem of the given size at three speeds with every parameter fitted: radii 6.40 to 6.60 cm,
// R0 two thirds down, extinction coefficients 1 (A) and 0.7 (B), FitA from `shared` behind baseline
// 0.01, ln reference concentrations of 0.2 (A) and 0.15 (B) that vary a little from set to set.
// FitY is 0; `FillSignal` makes it. Vbar 0.73, density 1, 20 deg C.
inline FitState MakeProblem(const ProblemSize& size, const std::vector<double>& shared) {
  FitState fit;
  fit.FitModel = FindModel(size.modelIndex);
  fit.TwoComponentModel = fit.FitModel->secondComponent;
  fit.UseMassConservation = size.massConservation;
  fit.ConstrainKRatios = size.constrainKRatios;
  fit.NumFitSets = static_cast<std::int16_t>(size.sets);
  fit.ParamsPerSet = fit.TwoComponentModel ? 3 : 2;
  const bool extra = fit.TwoComponentModel && size.massConservation;
  const int perSet = size.points + (extra ? 2 : 0);
  SizeArrays(fit, size, perSet);
  fit.FitA = Array1<double>(fit.SharedBase() + static_cast<int>(shared.size()));
  for (int d = 1; d <= size.sets; ++d) FillSet(fit, size, perSet, d);
  for (std::size_t k = 0; k < shared.size(); ++k) {
    fit.FitA(fit.SharedBase() + static_cast<int>(k) + 1) = shared[k];
  }
  fit.FitMA = static_cast<std::int16_t>(fit.FitA.size());
  fit.FitIA = Array1<std::int16_t>(fit.FitMA, 1);
  for (int l = 1; l <= fit.FitMA; ++l) fit.FitParamNames.Append("p" + std::to_string(l));
  return fit;
}

// A curve y(x) through one dataset, for a test-only model that reads x from FitX.
inline FitState MakeCurveProblem(const Model& model, const std::vector<double>& x,
                                 const std::vector<double>& y, const std::vector<double>& start) {
  FitState fit;
  fit.FitModel = &model;
  fit.NumFitSets = 1;
  fit.FitSetList = fit.RefLink = {0};
  for (const double value : x) fit.FitX.Append(value);
  for (const double value : y) fit.FitY.Append(value);
  for (const double value : start) fit.FitA.Append(value);
  fit.FitNumPoints = fit.FitX.size();
  fit.FitR = fit.FitF = fit.FitYCalc = fit.FitX;
  fit.FitSet = Array1<std::int16_t>(fit.FitNumPoints, 1);
  fit.PointKind = Array1<std::int16_t>(fit.FitNumPoints, 0);
  fit.SetPointCount = Array1<std::int16_t>(1, static_cast<std::int16_t>(fit.FitNumPoints));
  fit.SetFirstPoint = Array1<std::int32_t>(1, 1);
  fit.SetALoad = fit.SetBLoad = Array1<double>(1, 1.0);
  fit.FitMA = static_cast<std::int16_t>(fit.FitA.size());
  fit.FitIA = Array1<std::int16_t>(fit.FitMA, 1);
  return fit;
}

// FitY of the data points from the model at FitA plus noise(i); then the targets of the mass
// conservation points, with a tolerance of 0.25. A model that reads FitY is brought to agree with
// itself by iteration.
template <class Noise>
void FillSignal(FitState& fit, Noise&& noise) {
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    if (fit.PointKind(i) != 0) continue;
    for (int round = 0; round < 200; ++round) {
      fit.FitModel->funcs(fit, i, fit.FitA, fit.FitY(i));
    }
  }
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    const int first = fit.SetFirstPoint(d);
    const int end = first + fit.SetPointCount(d);
    for (int i = first; i < end; ++i) {
      if (fit.PointKind(i) == 0) fit.FitY(i) += noise(i);
    }
    for (int i = first; i < end; ++i) {
      if (fit.PointKind(i) == 0) continue;
      const int last = end - 3;
      fit.FitY(i) = (fit.FitY(last) - fit.FitY(first)) / 0.25;
    }
  }
}

// Loading concentrations that agree with the true parameters: at a mass conservation point the
// model value is the target times mean over load.
inline void TakeTrueLoads(FitState& fit) {
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    if (fit.PointKind(i) == 0) continue;
    double& load = (fit.PointKind(i) == 1 ? fit.SetALoad : fit.SetBLoad)(fit.FitSet(i));
    double value = 0.0;
    fit.FitModel->funcs(fit, i, fit.FitA, value);
    load *= value / fit.FitY(i);
  }
}

}  // namespace quorvane
