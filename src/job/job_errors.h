// The table [errors] of a job: what is asked of the error analysis.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "job/toml_reader.h"
#include "stats/error_analysis.h"

namespace quorvane {

struct FitSetup;

struct JobErrors {
  explicit JobErrors(TableReader reader) : table(std::move(reader)) {}

  TableReader table;                                   // for messages
  bool all = false;                                    // baselines and reference concentrations too
  std::optional<std::vector<std::string>> parameters;  // by their names on the page
  std::vector<std::pair<std::string, std::string>> surfaces;  // x and y, likewise
  ErrorRequest request;  // the rest; without parameters, surfaces
};

// Throws JobFault for a bad table.
std::optional<JobErrors> ReadErrors(TableReader& root);

// Throws JobFault for a name that the model does not have or that is held.
void CheckNames(const JobErrors& errors, const FitSetup& setup);

// The request around the finished `fit`, which `setup` set up.
ErrorRequest RequestOf(const JobErrors& errors, const FitSetup& setup, const FitState& fit);

}  // namespace quorvane
