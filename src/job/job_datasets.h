// The tables [[dataset]] of a job: what it says of which datasets.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/page/row_values.h"
#include "job/toml_reader.h"
#include "scan/dataset_store.h"

namespace quorvane {

using RadiusRange = std::pair<double, double>;  // cm, rising

// The datasets that a table chooses. By number any; by the rest, which must all fit, samples only.
struct JobChoice {
  std::vector<int> numbers;  // from 1
  bool all = false;          // number = "all"
  std::optional<char> channel;
  std::optional<int> cell;
  std::optional<int> speed;  // rpm, as loaded
};

struct JobDataset {
  explicit JobDataset(TableReader reader) : table(std::move(reader)) {}

  TableReader table;  // for messages
  JobChoice choice;
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

// The positions (from 0) of the samples that fit a choice which is not by number; there may be
// none.
std::vector<int> SamplesOf(const JobChoice& choice, const std::vector<Dataset>& datasets);

// A dataset and the tables that choose it, in their order. Of a key the last one counts.
struct ChosenDataset {
  int position;  // in the store, from 0
  std::vector<const JobDataset*> tables;
};

// The datasets that the tables choose, in the order in which they are met first. The store is taken
// as it is now, so this comes before any table acts. Throws JobFault for a number that is not
// loaded, a choice that meets no dataset, and one name for several.
std::vector<ChosenDataset> ChooseDatasets(const std::vector<JobDataset>& tables,
                                          const DatasetStore& store);

// The position (from 0) of dataset `number`; throws JobFault for `key` if it is not loaded.
int PositionOf(const TableReader& table, const char* key, int number, const DatasetStore& store);

}  // namespace quorvane
