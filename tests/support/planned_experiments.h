// Plans of all models, for tests and the tables of docs/evidence.md.
#pragma once

#include <vector>

#include "sim/plan.h"

namespace quorvane {

// What differs from model to model.
struct PlannedModel {
  int modelIndex;
  std::vector<double> truth;  // shared parameters, in the order of the model
  std::vector<int> known;     // of these, from 1: not fitted
};

inline const std::vector<PlannedModel> kPlannedModels = {
    {0, {8100}, {}},
    {1, {8100, 0.05}, {}},
    {2, {8100, 2, 11.5}, {2}},
    {3, {8100, 2, 11.5, 4, 35}, {2, 4}},
    {4, {8100, 4, 36, 0.2}, {2}},
    {5, {8100, 4, 36, 0.2}, {2}},
    {6, {8100, 5400, 13}, {}},
    {7, {8100, 5400, 13, 12.5}, {1, 2}},
    {8, {8100, 5400, 13, 12.5, 12}, {1, 2}},
    {9, {8100, 11.5}, {}},
    {10, {8100, 5400, 2, 12, 13}, {1, 2, 3}},
};

// Three speeds, three loads in columns of 2 mm, a detector up to 1.5; with two components two
// wavelengths. A nonideal sample is more concentrated, since it shows only there.
inline ExperimentPlan PlanOf(const PlannedModel& planned, double noise = 0.004) {
  ExperimentPlan plan;
  plan.model = FindModel(planned.modelIndex);
  for (std::size_t k = 0; k < plan.model->parameters.size(); ++k) {
    plan.truth.*plan.model->parameters[k].shared->field = planned.truth[k];
  }
  for (const int k : planned.known) {
    plan.fitted[PlaceOf(*plan.model->parameters[static_cast<std::size_t>(k - 1)].shared)] = false;
  }
  const bool nonideal = planned.modelIndex == 1;
  plan.speeds = {14000, 20000, 26000};
  plan.loads = {2e-6, 5e-6, 1.5e-5};
  plan.extCoeff = {40000};
  if (nonideal) {
    plan.loads = {2e-5, 5e-5, 1.2e-4};
    plan.extCoeff = {5000};
  }
  if (plan.TwoComponents()) {
    plan.loadsB = {4e-6, 5e-6, 1e-5};
    plan.extCoeff = {40000, 5000};
    plan.extCoeffB = {5000, 30000};
  }
  plan.noise = noise;
  plan.mostSignal = 1.5;
  plan.meniscus = 5.85;
  plan.base = 6.05;
  return plan;
}

}  // namespace quorvane
