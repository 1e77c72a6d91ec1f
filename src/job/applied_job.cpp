#include "job/applied_job.h"

#include <algorithm>
#include <optional>
#include <set>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "base/quiet_host.h"
#include "core/page/constants.h"
#include "core/page/row_choices.h"
#include "fit/models.h"
#include "job/job_steps.h"
#include "job/require.h"
#include "scan/dataset_channel.h"

namespace quorvane {

namespace {

// What a dataset is known by when others stand in its place.
struct Likeness {
  CellChannel channel;
  int speed = 0;  // rpm
};

Likeness LikenessOf(const Dataset& dataset) {
  return {ChannelOf(dataset), dataset.Speed};
}

std::string TextOf(const Likeness& likeness) {
  const std::string speed = std::to_string(likeness.speed) + " rpm";
  return likeness.channel.letter
             ? "channel " + std::string(1, *likeness.channel.letter) + ", " + speed
             : speed;
}

// The loaded samples of that channel and speed; those of the same cell alone, if there are any.
std::vector<int> PlacesOf(const Likeness& wanted, const std::vector<Dataset>& loaded) {
  std::vector<int> places;
  std::vector<int> ofCell;
  for (int k = 0; k < static_cast<int>(loaded.size()); ++k) {
    const Dataset& dataset = loaded[static_cast<std::size_t>(k)];
    const Likeness likeness = LikenessOf(dataset);
    if (IsBlank(dataset) || likeness.speed != wanted.speed) continue;
    if (likeness.channel.letter != wanted.channel.letter) continue;
    places.push_back(k);
    if (likeness.channel.cell == wanted.channel.cell) ofCell.push_back(k);
  }
  return ofCell.empty() ? places : ofCell;
}

// A job's numbers of datasets as places among the loaded ones.
class Places {
 public:
  Places(const std::vector<Dataset>& own, const std::vector<Dataset>& loaded)
      : own_(own), loaded_(loaded) {}

  // All that stand for the dataset `number` of the job; none if there are none.
  std::vector<int> Of(int number) const {
    if (own_.empty()) {
      return number <= static_cast<int>(loaded_.size()) ? std::vector<int>{number - 1}
                                                        : std::vector<int>{};
    }
    if (number > static_cast<int>(own_.size())) return {};
    return PlacesOf(LikenessOf(own_[static_cast<std::size_t>(number - 1)]), loaded_);
  }

  // "dataset 3 of the job (channel C, 10000 rpm)"
  std::string Name(int number) const {
    std::string name = "dataset " + std::to_string(number) + " of the job";
    if (number > static_cast<int>(own_.size())) return name;
    return name + " (" + TextOf(LikenessOf(own_[static_cast<std::size_t>(number - 1)])) + ")";
  }

 private:
  const std::vector<Dataset>& own_;
  const std::vector<Dataset>& loaded_;
};

// The one of `targets` that the dataset at `place` may be linked to: of its own cell, if several.
std::optional<int> TargetFor(int place, const std::vector<int>& targets,
                             const std::vector<Dataset>& loaded) {
  const auto cell = [&](int k) { return ChannelOf(loaded[static_cast<std::size_t>(k)]).cell; };
  const auto own = std::find_if(targets.begin(), targets.end(),
                                [&](int target) { return cell(target) == cell(place); });
  if (own != targets.end()) return *own;
  return targets.size() == 1 ? std::optional(targets.front()) : std::nullopt;
}

// The loaded samples that a choice of the job, not one by number, is for: if none has the cell,
// those of other cells.
std::vector<int> PlacesOf(JobChoice choice, const std::vector<Dataset>& loaded) {
  const std::vector<int> places = SamplesOf(choice, loaded);
  if (!places.empty() || !choice.cell) return places;
  choice.cell.reset();
  return SamplesOf(choice, loaded);
}

// "channel A, cell 2, 20000 rpm"
std::string TextOf(const JobChoice& choice) {
  std::string text;
  const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (choice.channel) add("channel " + std::string(1, *choice.channel));
  if (choice.cell) add("cell " + std::to_string(*choice.cell));
  if (choice.speed) add(std::to_string(*choice.speed) + " rpm");
  return text.empty() ? "any sample" : text;
}

// `table` for the loaded dataset at `place`: without what belongs to one scan alone.
JobDataset TableFor(const JobDataset& table, int place) {
  JobDataset mapped = table;
  mapped.choice = {};
  mapped.choice.numbers = {place + 1};
  mapped.name.reset();
  mapped.subtractBlank.reset();
  mapped.speed.reset();
  mapped.linkTo.reset();
  return mapped;
}

// The session in which a job is tried; it takes its place when all is done.
struct Trial {
  QuorvaneModule module;
  Job job;  // for the loaded datasets
  std::set<int> named;
  AppliedJob result;

  void Misfit(const std::string& text) { result.misfits.push_back(text); }
};

// Applies the tables for the dataset at `position`, or leaves that as it was.
void TryDataset(int position, Trial& trial) {
  const auto place = static_cast<std::size_t>(position);
  const Dataset before = trial.module.Store.Datasets[place];
  const bool use = trial.module.Store.UseData[place];
  const std::string name = "dataset " + std::to_string(position + 1);
  QuietHost host;
  try {
    Job one;
    for (const JobDataset& table : trial.job.datasets) {
      if (table.choice.numbers.front() == position + 1) one.datasets.push_back(table);
    }
    ApplyDatasets(one, trial.module, host);
    Dataset& dataset = trial.module.Store.Datasets[place];
    if (CountGoodPoints(dataset) >= kMinPoints || CountGoodPoints(before) < kMinPoints) return;
    dataset.Good = before.Good;
    dataset.Err = before.Err;
    dataset.RefRadius = before.RefRadius;
    trial.Misfit("The range for " + name + " would keep fewer than 10 points; it was left alone.");
  } catch (const JobFault& fault) {
    trial.module.Store.Datasets[place] = before;
    trial.module.Store.UseData[place] = use;
    trial.Misfit(name + ": " + fault.what());
  }
}

// A table for the loaded datasets at `targets`.
void MapTable(const JobDataset& table, const std::vector<int>& targets, const Places& places,
              Trial& trial) {
  for (const int place : targets) {
    JobDataset mapped = TableFor(table, place);
    trial.named.insert(place);
    if (table.linkTo) {
      const std::optional<int> target =
          TargetFor(place, places.Of(*table.linkTo), trial.module.Store.Datasets);
      if (target) {
        mapped.linkTo = *target + 1;
      } else {
        trial.Misfit("Dataset " + std::to_string(place + 1) +
                     " was not linked: " + places.Name(*table.linkTo) + " is not loaded.");
      }
    }
    trial.job.datasets.push_back(std::move(mapped));
  }
}

void MapTable(const JobDataset& table, const Places& places, Trial& trial) {
  const auto map = [&](const std::vector<int>& targets, const std::string& name) {
    if (targets.empty()) trial.Misfit("Nothing is loaded for " + name + ".");
    MapTable(table, targets, places, trial);
  };
  for (const int number : table.choice.numbers) map(places.Of(number), places.Name(number));
  if (!table.choice.numbers.empty()) return;
  map(PlacesOf(table.choice, trial.module.Store.Datasets), TextOf(table.choice));
}

// The loaded datasets of which the job says nothing, if it says something of others.
void TellUnnamed(Trial& trial) {
  if (trial.named.empty()) return;
  const std::vector<Dataset>& loaded = trial.module.Store.Datasets;
  for (int k = 0; k < static_cast<int>(loaded.size()); ++k) {
    const Dataset& dataset = loaded[static_cast<std::size_t>(k)];
    if (trial.named.contains(k) || IsBlank(dataset)) continue;
    trial.Misfit("The job says nothing of dataset " + std::to_string(k + 1) + " (" +
                 TextOf(LikenessOf(dataset)) + "); it stays as it was.");
  }
}

// The page of the job's fit on the trial. What its rows cannot take ends the whole.
void SetUpPage(const Job& job, Trial& trial) {
  if (!job.fit) return;
  trial.job.fit = job.fit;
  trial.job.temperature = job.temperature;
  QuietHost host;
  try {
    const auto datasets = ChooseDatasets(trial.job.datasets, trial.module.Store);
    if (!ApplyFit(trial.job, datasets, trial.module, host)) {
      throw JobFault("No datasets were chosen to be fitted!");
    }
  } catch (const SubscriptFault&) {
    throw JobFault("At most 101 datasets can be fitted at once.");
  }
}

// The job with the constants that its sequence and buffer stand for.
Job WithSolution(const Job& job, const QuorvaneModule& module, Trial& trial) {
  Job complete = job;
  if (!job.solution) return complete;
  const double degC = TemperatureOf(job, job.fit ? trial.module : module);
  const SolutionValues values = ValuesAt(*job.solution, degC);
  if (values.vbar) complete.vbar = values.vbar;
  if (values.density) complete.density = values.density;
  trial.result.remarks = values.remarks;
  return complete;
}

// The datasets through their history, so that each can take its change back.
void TakeOver(const Job& job, Trial& trial, QuorvaneModule& module) {
  DatasetStore& store = module.Store;
  for (std::size_t k = 0; k < store.Datasets.size(); ++k) {
    store.Edits.Apply(store.Datasets[k], static_cast<int>(k),
                      [&](Dataset& dataset) { dataset = trial.module.Store.Datasets[k]; });
  }
  store.UseData = trial.module.Store.UseData;
  if (job.fit) module.FitPage = trial.module.FitPage;
  ApplyConstants(job, module);
  if (job.solution) Remember(*job.solution, module);
  if (!job.fit) return;
  module.Setup = std::move(trial.module.Setup);
  module.ChosenModel = trial.module.ChosenModel;
}

std::string SummaryOf(const Job& job, const Trial& trial) {
  std::string text = "The job was applied";
  if (job.fit) text += ": " + std::string(job.fit->model->name);
  const std::size_t tables = trial.named.size();
  if (tables > 0) {
    text += ", values and ranges of " + std::to_string(tables) +
            (tables == 1 ? " dataset" : " datasets");
  }
  const auto constant = [&](const char* name, const std::optional<double>& value) {
    if (value) text += ", " + std::string(name) + " " + FormatParam(*value);
  };
  constant("vbar", job.vbar);
  constant("density", job.density);
  return text + ".";
}

}  // namespace

AppliedJob ApplyToLoaded(const Job& job, const std::vector<Dataset>& own, QuorvaneModule& module) {
  if (module.Store.Datasets.empty()) throw JobFault("No datasets are loaded.");
  Trial trial;
  trial.module.Store.Datasets = module.Store.Datasets;
  trial.module.Store.UseData = module.Store.UseData;
  trial.module.FitPage = module.FitPage;
  trial.module.CellGeometries = module.CellGeometries;
  trial.module.ChosenModel = module.ChosenModel;
  if (module.Setup.ConstrainKRatios) {
    FitSetup setup = module.Setup;
    ReleaseRatios(setup, trial.module.FitPage, module.FitPage.ModelLnK1);
  }
  const Places places(own, module.Store.Datasets);
  for (const JobDataset& table : job.datasets) MapTable(table, places, trial);
  for (const int position : trial.named) TryDataset(position, trial);
  TellUnnamed(trial);
  SetUpPage(job, trial);
  const Job complete = WithSolution(job, module, trial);
  TakeOver(complete, trial, module);
  trial.result.setUp = job.fit.has_value();
  trial.result.summary = SummaryOf(complete, trial);
  return trial.result;
}

}  // namespace quorvane
