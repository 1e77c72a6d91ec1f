#include "job/job_datasets.h"

#include <algorithm>

#include "job/require.h"
#include "scan/dataset_channel.h"

namespace quorvane {

namespace {

std::optional<int> Position(TableReader& table, const char* key) {
  const std::optional<int> number = table.Integer(key);
  if (number && *number < 1) table.Fail(key, "dataset numbers count from 1");
  return number;
}

void ReadNumbers(TableReader& table, JobChoice& choice) {
  constexpr const char* kKey = "number";
  if (table.IsText(kKey)) {
    choice.all = *table.Text(kKey) == "all";
    if (!choice.all) table.Fail(kKey, "a number, a list of numbers or \"all\" is wanted");
    return;
  }
  choice.numbers = table.Integers(kKey);
  for (const int number : choice.numbers) {
    if (number < 1) table.Fail(kKey, "dataset numbers count from 1");
  }
}

JobChoice ReadChoice(TableReader& table) {
  JobChoice choice;
  ReadNumbers(table, choice);
  if (const std::optional<std::string> channel = table.Text("channel")) {
    if (channel->size() != 1 || channel->front() < 'A' || channel->front() > 'Z') {
      table.Fail("channel", "a capital letter, such as \"A\", is wanted");
    }
    choice.channel = channel->front();
  }
  choice.cell = table.Integer("cell");
  choice.speed = table.Integer("speed_is");
  const bool byNumber = choice.all || !choice.numbers.empty();
  const bool byChannel = choice.channel || choice.cell || choice.speed;
  if (byNumber && byChannel) {
    table.Fail("number", "it cannot stand beside channel, cell or speed_is");
  }
  if (!byNumber && !byChannel) {
    table.Fail("number", "the number of the dataset is wanted, or channel, cell or speed_is");
  }
  return choice;
}

bool Fits(const JobChoice& choice, const Dataset& dataset) {
  if (IsBlank(dataset)) return false;
  const CellChannel channel = ChannelOf(dataset);
  return (!choice.channel || channel.letter == choice.channel) &&
         (!choice.cell || channel.cell == choice.cell) &&
         (!choice.speed || dataset.Speed == *choice.speed);
}

// The positions that the table chooses, each once.
std::vector<int> PositionsOf(const JobDataset& table, const DatasetStore& store) {
  std::vector<int> positions;
  for (const int number : table.choice.numbers) {
    const int position = PositionOf(table.table, "number", number, store);
    if (std::count(positions.begin(), positions.end(), position) == 0) {
      positions.push_back(position);
    }
  }
  if (!table.choice.numbers.empty()) return positions;
  positions = SamplesOf(table.choice, store.Datasets);
  if (positions.empty()) {
    const char* const key = table.choice.all       ? "number"
                            : table.choice.channel ? "channel"
                            : table.choice.cell    ? "cell"
                                                   : "speed_is";
    table.table.Fail(key, "no sample that is loaded fits this choice");
  }
  return positions;
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
  dataset.choice = ReadChoice(table);
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
  for (TableReader& table : root.Tables("dataset")) datasets.push_back(ReadDataset(table));
  return datasets;
}

std::vector<int> SamplesOf(const JobChoice& choice, const std::vector<Dataset>& datasets) {
  std::vector<int> positions;
  for (int k = 0; k < static_cast<int>(datasets.size()); ++k) {
    if (Fits(choice, datasets[static_cast<std::size_t>(k)])) positions.push_back(k);
  }
  return positions;
}

std::vector<ChosenDataset> ChooseDatasets(const std::vector<JobDataset>& tables,
                                          const DatasetStore& store) {
  std::vector<ChosenDataset> chosen;
  for (const JobDataset& table : tables) {
    const std::vector<int> positions = PositionsOf(table, store);
    if (table.name && positions.size() > 1) {
      table.table.Fail("name", "one name cannot stand for several datasets");
    }
    for (const int position : positions) {
      auto met = std::find_if(chosen.begin(), chosen.end(), [&](const ChosenDataset& dataset) {
        return dataset.position == position;
      });
      if (met == chosen.end()) met = chosen.insert(met, {position, {}});
      met->tables.push_back(&table);
    }
  }
  return chosen;
}

int PositionOf(const TableReader& table, const char* key, int number, const DatasetStore& store) {
  if (number > store.NumDatasets()) {
    table.Fail(key, "there is no dataset " + std::to_string(number) + "; " +
                        std::to_string(store.NumDatasets()) + " are loaded");
  }
  return number - 1;
}

}  // namespace quorvane
