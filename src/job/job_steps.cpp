#include "job/job_steps.h"

#include <algorithm>

#include "base/files.h"
#include "base/host.h"
#include "base/paths.h"
#include "core/page/cell_files.h"
#include "core/page/confidence_level.h"
#include "core/page/constants.h"
#include "core/page/dataset_rules.h"
#include "core/page/row_choices.h"
#include "core/page/shared_values.h"
#include "fit/models.h"
#include "job/require.h"
#include "scan/point_edits.h"

namespace quorvane {

namespace {

EditRectangle BetweenRadii(const RadiusRange& range) {
  EditRectangle rectangle;
  rectangle.x1 = range.first;
  rectangle.x2 = range.second;
  return rectangle;
}

// The last table that says something under a key; null if none does.
template <class Value>
const JobDataset* LastWith(const ChosenDataset& chosen, std::optional<Value> JobDataset::*key) {
  const auto found = std::find_if(chosen.tables.rbegin(), chosen.tables.rend(),
                                  [key](const JobDataset* table) { return table->*key; });
  return found == chosen.tables.rend() ? nullptr : *found;
}

template <class Key, class Value>
const JobDataset* LastWith(const ChosenDataset& chosen,
                           std::map<const Key*, Value> JobDataset::*values, const Key& key) {
  const auto found =
      std::find_if(chosen.tables.rbegin(), chosen.tables.rend(),
                   [&](const JobDataset* table) { return (table->*values).contains(&key); });
  return found == chosen.tables.rend() ? nullptr : *found;
}

bool SetsEnds(const JobDataset& job) {
  return job.values.contains(&row::kRmen) || job.values.contains(&row::kRbase);
}

bool EditsPoints(const JobDataset& job) {
  return job.deleteOutside || !job.deleteRanges.empty() || !job.restoreRanges.empty() ||
         SetsEnds(job);
}

// What the job gives for one end of the column; the dataset's own if it gives nothing.
double EndOf(const ChosenDataset& chosen, const RowValue& end, const Dataset& dataset) {
  const JobDataset* job = LastWith(chosen, &JobDataset::values, end);
  return job != nullptr ? job->values.at(&end) : dataset.*end.field;
}

// The ranges of a table act as they stand; one to keep gives way to that of a later table.
void EditPoints(const ChosenDataset& chosen, Dataset& dataset) {
  const JobDataset* keeper = LastWith(chosen, &JobDataset::deleteOutside);
  bool ends = false;
  for (const JobDataset* job : chosen.tables) {
    if (!EditsPoints(*job)) continue;
    Require(job->table, "number", OpenForEditing(dataset));
    if (job == keeper) DeleteOutside(dataset, BetweenRadii(*job->deleteOutside));
    for (const RadiusRange& range : job->deleteRanges) DeleteInside(dataset, BetweenRadii(range));
    for (const RadiusRange& range : job->restoreRanges) RestoreInside(dataset, BetweenRadii(range));
    ends = ends || SetsEnds(*job);
  }
  if (ends) {
    SetMeniscusAndBase(dataset, EndOf(chosen, row::kRmen, dataset),
                       EndOf(chosen, row::kRbase, dataset));
  }
}

void Blank(const ChosenDataset& chosen, DatasetStore& store, Host& host) {
  const char* const key = "subtract_blank";
  const JobDataset* job = LastWith(chosen, &JobDataset::subtractBlank);
  if (job == nullptr) return;
  const int blank = PositionOf(job->table, key, *job->subtractBlank, store);
  Require(job->table, key, TakeOffBlank(store, chosen.position, blank, host));
}

void SetValues(const ChosenDataset& chosen, Dataset& dataset) {
  if (const JobDataset* job = LastWith(chosen, &JobDataset::speed)) {
    Require(job->table, "speed", SetSpeed(dataset, *job->speed));
  }
  for (const RowValue& value : RowValues) {
    if (&value == &row::kRmen || &value == &row::kRbase)
      continue;  // an edit of the points set them
    const JobDataset* job = LastWith(chosen, &JobDataset::values, value);
    if (job == nullptr) continue;
    Require(job->table, value.name, SetValue(value, dataset, job->values.at(&value)));
  }
}

void Rename(const ChosenDataset& chosen, Dataset& dataset, Host& host) {
  const JobDataset* job = LastWith(chosen, &JobDataset::name);
  if (job == nullptr) return;
  const bool wasBlank = IsBlank(dataset);
  if (!RenameDataset(dataset, *job->name, host)) job->table.Fail("name", "the name was refused");
  if (IsBlank(dataset) != wasBlank) {
    job->table.Fail("name", "only a dataset loaded as a blank has a name that begins with BL_");
  }
}

// The link of a dataset that stands in row `row` of the page.
RowLink LinkOf(const JobDataset& job, int row, const QuorvaneModule& module) {
  const int position = PositionOf(job.table, "link_to", *job.linkTo, module.Store);
  const std::optional<int> target = RowOfDataset(module.Setup, position);
  if (!target) job.table.Fail("link_to", "that dataset is not in the fit");
  return {row, *target};
}

// Whether the job says to what the dataset of `row` is linked.
bool NamesLink(const std::vector<ChosenDataset>& datasets, const FitSetup& setup, int row) {
  const int position = setup.FitSetList[static_cast<std::size_t>(row)];
  return std::any_of(datasets.begin(), datasets.end(), [&](const ChosenDataset& dataset) {
    return dataset.position == position && LastWith(dataset, &JobDataset::linkTo) != nullptr;
  });
}

// Checks and cell geometry of a row.
void SetRow(const ChosenDataset& chosen, int row, QuorvaneModule& module) {
  for (const RowCheck& check : RowChecks) {
    const JobDataset* job = LastWith(chosen, &JobDataset::checks, check);
    if (job != nullptr) SetCheck(check, module.Setup, row, job->checks.at(&check));
  }
  if (const JobDataset* job = LastWith(chosen, &JobDataset::cellGeometry)) {
    Require(job->table, "cell_geometry", SetCellGeometry(module, row, *job->cellGeometry));
  }
}

// The rows of the page; what is said of datasets outside the fit does not count.
void SetRows(const Job& job, const std::vector<ChosenDataset>& datasets, QuorvaneModule& module) {
  FitSetup& setup = module.Setup;
  std::vector<RowLink> links;
  std::vector<const JobDataset*> linked;  // null for a link that the page had
  for (int row = 0; row < setup.NumFitSets; ++row) {
    if (!IsLinked(setup, row) || NamesLink(datasets, setup, row)) continue;
    links.push_back({row, setup.RefLink[static_cast<std::size_t>(row)]});
    linked.push_back(nullptr);
  }
  for (const ChosenDataset& dataset : datasets) {
    const std::optional<int> row = RowOfDataset(setup, dataset.position);
    if (!row) continue;
    SetRow(dataset, *row, module);
    if (const JobDataset* linker = LastWith(dataset, &JobDataset::linkTo)) {
      links.push_back(LinkOf(*linker, *row, module));
      linked.push_back(linker);
    }
  }
  const std::optional<LinkRefusal> refused = LinkRows(setup, links);
  if (!refused) return;
  const JobDataset* teller = linked[refused->place];
  if (teller != nullptr) Require(teller->table, "link_to", refused->refusal);
  Require(job.fit->table, "model",
          Refusal{"the links that the archive keeps do not go with those of the job"});
}

// What stands on the page that the archive brought, for the rows that this page has too.
void KeepRows(const FitSetup& before, FitSetup& setup) {
  for (int row = 0; row < setup.NumFitSets; ++row) {
    const auto place = static_cast<std::size_t>(row);
    const std::optional<int> old = RowOfDataset(before, setup.FitSetList[place]);
    if (!old) continue;
    const auto oldPlace = static_cast<std::size_t>(*old);
    for (const RowCheck& check : RowChecks) {
      (setup.*check.states)[place] = (before.*check.states)[oldPlace];
    }
    setup.SetCellChannel[place] = before.SetCellChannel[oldPlace];
    const auto target = static_cast<std::size_t>(before.RefLink[oldPlace]);
    const std::optional<int> link = RowOfDataset(setup, before.FitSetList[target]);
    if (link) setup.RefLink[place] = static_cast<std::int16_t>(*link);
  }
}

// The same for the switches; `values` are those of that page.
void KeepSwitches(const FitSetup& before, const FitPage& values, QuorvaneModule& module) {
  FitSetup& setup = module.Setup;
  setup.DegC = before.DegC;
  setup.UseMassConservation = before.UseMassConservation;
  setup.CalcLoadingConcs = before.CalcLoadingConcs;
  if (before.FitModel != setup.FitModel) return;
  for (const SharedParameter& parameter : SharedParameters) {
    const CheckState check = before.*parameter.check;
    if (check != CheckState::kGrey) setup.*parameter.check = check;
    if (before.ConstrainKRatios && MayBeRatio(parameter)) {
      module.FitPage.*parameter.field = values.*parameter.field;
    }
  }
}

void SetSharedValues(const JobFit& job, bool constrain, QuorvaneModule& module) {
  for (const auto& [parameter, entry] : job.parameters) {
    if (entry.start) Require(job.table, "parameters", SetShared(*parameter, module, *entry.start));
    if (entry.fit) {
      Require(job.table, "parameters", SetCheck(*parameter, module.Setup, *entry.fit));
    }
  }
  if (constrain) {
    Require(job.table, "constrain_k_ratios", ConstrainStoredRatios(module));
  }
}

}  // namespace

void LoadGeometries(const Job& job, const std::filesystem::path& programFolder,
                    QuorvaneModule& module) {
  if (job.channelsFile && !FileExists(*job.channelsFile)) {
    throw FileFault(PathText(*job.channelsFile) + ": there is no such file");
  }
  LoadChannelFile(module, job.channelsFile.value_or(FindChannelFile(programFolder)));
}

void ApplyConstants(const Job& job, QuorvaneModule& module) {
  const auto set = [&](Constant constant, const std::optional<double>& value) {
    if (value) Require(SetConstant(module, constant, *value));
  };
  set(Constant::kVbar, job.vbar);
  set(Constant::kVbarB, job.vbarB);
  set(Constant::kDensity, job.density);
  set(Constant::kMCTolerance, job.mcTolerance);
  set(Constant::kCriticalCCC, job.criticalCoefficient);
}

LoadResult LoadOne(const JobLoad& load, DatasetStore& store, Host& host) {
  const std::filesystem::path path = WholePath(load.file);
  if (load.channelsNamed && !IsCut(load.settings)) {
    host.ReportFailure(PathText(load.file) +
                       ": the choice of channels does not count; only \"IP,RA\" files of a cell "
                       "with 6 or 8 channels are cut.");
  }
  GetCommentLines(store, path, host);
  if (load.blank) return LoadBlankFile(store, load.settings.kind, path, host);
  return LoadSelectedFile(store, load.settings, path, host);
}

LoadOutcome ApplyLoads(const Job& job, QuorvaneModule& module, Host& host) {
  for (const JobLoad& load : job.loads) {
    const LoadResult result = LoadOne(load, module.Store, host);
    if (result.outcome == LoadOutcome::kUnreadable || result.datasets == 0) return result.outcome;
  }
  return LoadOutcome::kLoaded;
}

std::vector<ChosenDataset> ApplyDatasets(const Job& job, QuorvaneModule& module, Host& host) {
  DatasetStore& store = module.Store;
  std::vector<ChosenDataset> datasets = ChooseDatasets(job.datasets, store);
  for (const ChosenDataset& chosen : datasets) {
    Dataset& dataset = store.Datasets[static_cast<std::size_t>(chosen.position)];
    Rename(chosen, dataset, host);
    if (const JobDataset* user = LastWith(chosen, &JobDataset::use)) {
      Require(user->table, "use", ChooseForFit(store, chosen.position, *user->use));
    }
    Blank(chosen, store, host);
    EditPoints(chosen, dataset);
    SetValues(chosen, dataset);
    if (const JobDataset* linker = LastWith(chosen, &JobDataset::linkTo)) {
      PositionOf(linker->table, "link_to", *linker->linkTo, store);
    }
  }
  return datasets;
}

bool ApplyFit(const Job& job, const std::vector<ChosenDataset>& datasets, QuorvaneModule& module,
              Host& host) {
  const JobFit& fit = *job.fit;
  FitSetup& setup = module.Setup;
  const FitSetup before = setup;
  const FitPage values = module.FitPage;
  if (!SetupFit(setup, module.FitPage, module.Store, *fit.model, host)) return false;
  module.ChosenModel = fit.model;
  const bool constrained = before.ConstrainKRatios && before.FitModel == fit.model;
  const bool constrain = fit.constrainKRatios.value_or(constrained);
  if (before.NumFitSets > 0) {
    KeepRows(before, setup);
    KeepSwitches(before, constrain ? values : module.FitPage, module);
  }
  if (job.temperature) Require(SetTemperature(setup, *job.temperature));
  setup.UseMassConservation = fit.useMassConservation.value_or(setup.UseMassConservation);
  setup.CalcLoadingConcs = fit.calcLoadingConcs.value_or(setup.CalcLoadingConcs);
  SetRows(job, datasets, module);
  SetSharedValues(fit, constrain, module);
  return true;
}

ConfidenceRequest ConfidenceOf(const Job& job, const FitSetup& setup) {
  const JobConfidence& confidence = *job.confidence;
  const std::size_t count = setup.FitModel->parameters.size();
  ConfidenceRequest request{confidence.percent, confidence.method,
                            std::vector<bool>(count, !confidence.parameters)};
  if (!confidence.parameters) return request;
  for (const std::string& name : *confidence.parameters) {
    Require(confidence.table, "parameters", ChooseForSearch(request, setup, name));
  }
  return request;
}

}  // namespace quorvane
