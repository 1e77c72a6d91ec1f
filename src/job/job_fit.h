// The table [fit] of a job: the model, its switches and its parameters.
#pragma once

#include <map>
#include <optional>
#include <utility>

#include "fit/model_parameters.h"
#include "fit/models.h"
#include "job/toml_reader.h"
#include "stats/minimum_check.h"

namespace quorvane {

struct JobParameter {
  std::optional<double> start;
  std::optional<bool> fit;
};

struct JobFit {
  explicit JobFit(TableReader reader) : table(std::move(reader)) {}

  TableReader table;  // for messages
  const Model* model = nullptr;
  // Absent: as the page of the archive has them; without one they are off.
  std::optional<bool> constrainKRatios;
  std::optional<bool> useMassConservation;
  std::optional<bool> calcLoadingConcs;
  std::optional<double> timeLimit;  // seconds
  int repeat = 1;
  bool toRest = false;                   // instead of the repeats
  std::optional<MinimumRequest> minima;  // the check that follows
  std::map<const SharedParameter*, JobParameter> parameters;
};

// The key "model" of `table`: a name or an index. Throws JobFault for any other.
const Model& ReadModel(TableReader& table);

// The table "parameters" of `fit`, none if it is absent. Throws JobFault for a bad one.
std::map<const SharedParameter*, JobParameter> ReadParameters(TableReader& fit);

// Throws JobFault for a bad table.
std::optional<JobFit> ReadFit(TableReader& root);

}  // namespace quorvane
