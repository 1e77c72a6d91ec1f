#include "job/job_datasets.h"

#include "job/require.h"

namespace quorvane {

namespace {

std::optional<int> Position(TableReader& table, const char* key) {
  const std::optional<int> number = table.Integer(key);
  if (number && *number < 1) table.Fail(key, "dataset numbers count from 1");
  return number;
}

// What stands in the row of a dataset on the page.
void ReadPageValues(TableReader& table, JobDataset& dataset) {
  dataset.speed = table.Integer("speed");
  for (const RowValue& value : RowValues) {
    const std::optional<double> number = table.Number(value.name);
    if (number) dataset.values[&value] = *number;
  }
  for (const RowCheck& check : RowChecks) {
    const std::optional<bool> checked = table.Flag(check.name);
    if (checked) dataset.checks[&check] = *checked;
  }
}

void CheckPageValues(const JobDataset& dataset) {
  if (dataset.speed) Require(dataset.table, "speed", RefusalOfSpeed(*dataset.speed));
  for (const auto& [value, number] : dataset.values) {
    Require(dataset.table, value->name, RefusalOfValue(*value, number));
  }
}

JobDataset ReadDataset(TableReader& table) {
  JobDataset dataset(table);
  const std::optional<int> number = Position(table, "number");
  if (!number) table.Fail("number", "the number of the dataset is wanted");
  dataset.number = *number;
  dataset.name = table.Text("name");
  dataset.use = table.Flag("use");
  dataset.subtractBlank = Position(table, "subtract_blank");
  dataset.deleteOutside = table.Range("delete_outside");
  dataset.deleteRanges = table.Ranges("delete");
  dataset.restoreRanges = table.Ranges("restore");
  ReadPageValues(table, dataset);
  dataset.linkTo = Position(table, "link_to");
  dataset.cellGeometry = table.Integer("cell_geometry");
  table.RefuseUnknownKeys();
  CheckPageValues(dataset);
  return dataset;
}

}  // namespace

std::vector<JobDataset> ReadDatasets(TableReader& root) {
  std::vector<JobDataset> datasets;
  for (TableReader& table : root.Tables("dataset")) {
    JobDataset dataset = ReadDataset(table);
    for (const JobDataset& earlier : datasets) {
      if (earlier.number == dataset.number)
        table.Fail("number", "this dataset has a table already");
    }
    datasets.push_back(std::move(dataset));
  }
  return datasets;
}

}  // namespace quorvane
