// The tables [[dataset]] of a job: what it says of single datasets.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/page/row_values.h"
#include "job/toml_reader.h"

namespace quorvane {

using RadiusRange = std::pair<double, double>;  // cm, rising

struct JobDataset {
  explicit JobDataset(TableReader reader) : table(std::move(reader)) {}

  TableReader table;  // for messages
  int number = 0;     // from 1
  std::optional<std::string> name;
  std::optional<bool> use;
  std::optional<int> subtractBlank;
  std::optional<RadiusRange> deleteOutside;
  std::vector<RadiusRange> deleteRanges;
  std::vector<RadiusRange> restoreRanges;
  std::optional<int> speed;
  std::map<const RowValue*, double> values;
  std::map<const RowCheck*, bool> checks;
  std::optional<int> linkTo;
  std::optional<int> cellGeometry;
};

// Throws JobFault for a bad table.
std::vector<JobDataset> ReadDatasets(TableReader& root);

}  // namespace quorvane
