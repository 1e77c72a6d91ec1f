#include "job/job_steps.h"

#include <algorithm>

#include "base/files.h"
#include "base/host.h"
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

std::size_t PlaceOf(const TableReader& table, const char* key, int number,
                    const DatasetStore& store) {
  if (number > store.NumDatasets()) {
    table.Fail(key, "there is no dataset " + std::to_string(number) + "; " +
                        std::to_string(store.NumDatasets()) + " are loaded");
  }
  return static_cast<std::size_t>(number - 1);
}

EditRectangle BetweenRadii(const RadiusRange& range) {
  EditRectangle rectangle;
  rectangle.x1 = range.first;
  rectangle.x2 = range.second;
  return rectangle;
}

bool SetsEnds(const JobDataset& job) {
  return job.values.contains(&row::kRmen) || job.values.contains(&row::kRbase);
}

bool EditsPoints(const JobDataset& job) {
  return job.deleteOutside || !job.deleteRanges.empty() || !job.restoreRanges.empty() ||
         SetsEnds(job);
}

// What the job gives for one end of the column; the dataset's own if it gives nothing.
double EndOf(const JobDataset& job, const RowValue& end, const Dataset& dataset) {
  const auto given = job.values.find(&end);
  return given != job.values.end() ? given->second : dataset.*end.field;
}

void EditPoints(const JobDataset& job, Dataset& dataset) {
  if (!EditsPoints(job)) return;
  Require(job.table, "number", OpenForEditing(dataset));
  if (job.deleteOutside) DeleteOutside(dataset, BetweenRadii(*job.deleteOutside));
  for (const RadiusRange& range : job.deleteRanges) DeleteInside(dataset, BetweenRadii(range));
  for (const RadiusRange& range : job.restoreRanges) RestoreInside(dataset, BetweenRadii(range));
  if (SetsEnds(job)) {
    SetMeniscusAndBase(dataset, EndOf(job, row::kRmen, dataset), EndOf(job, row::kRbase, dataset));
  }
}

void Blank(const JobDataset& job, std::size_t place, DatasetStore& store, Host& host) {
  if (!job.subtractBlank) return;
  const char* const key = "subtract_blank";
  const std::size_t blank = PlaceOf(job.table, key, *job.subtractBlank, store);
  Require(job.table, key,
          TakeOffBlank(store, static_cast<int>(place), static_cast<int>(blank), host));
}

void SetValues(const JobDataset& job, Dataset& dataset) {
  if (job.speed) Require(job.table, "speed", SetSpeed(dataset, *job.speed));
  for (const auto& [value, number] : job.values) {
    if (value == &row::kRmen || value == &row::kRbase) continue;  // an edit of the points set them
    Require(job.table, value->name, SetValue(*value, dataset, number));
  }
}

void Rename(const JobDataset& job, Dataset& dataset, Host& host) {
  if (!job.name) return;
  const bool wasBlank = IsBlank(dataset);
  if (!RenameDataset(dataset, *job.name, host)) job.table.Fail("name", "the name was refused");
  if (IsBlank(dataset) != wasBlank) {
    job.table.Fail("name", "only a dataset loaded as a blank has a name that begins with BL_");
  }
}

// The link of a dataset that stands in row `row` of the page.
RowLink LinkOf(const JobDataset& job, int row, const QuorvaneModule& module) {
  const std::size_t place = PlaceOf(job.table, "link_to", *job.linkTo, module.Store);
  const std::optional<int> target = RowOfDataset(module.Setup, static_cast<int>(place));
  if (!target) job.table.Fail("link_to", "that dataset is not in the fit");
  return {row, *target};
}

// Whether the job says to what the dataset of `row` is linked.
bool NamesLink(const Job& job, const FitSetup& setup, int row) {
  const int number = setup.FitSetList[static_cast<std::size_t>(row)] + 1;
  return std::any_of(job.datasets.begin(), job.datasets.end(), [&](const JobDataset& dataset) {
    return dataset.number == number && dataset.linkTo;
  });
}

// The rows of the page; what is said of datasets outside the fit does not count.
void SetRows(const Job& job, QuorvaneModule& module) {
  FitSetup& setup = module.Setup;
  std::vector<RowLink> links;
  std::vector<const JobDataset*> linked;  // null for a link that the page had
  for (int row = 0; row < setup.NumFitSets; ++row) {
    if (!IsLinked(setup, row) || NamesLink(job, setup, row)) continue;
    links.push_back({row, setup.RefLink[static_cast<std::size_t>(row)]});
    linked.push_back(nullptr);
  }
  for (const JobDataset& dataset : job.datasets) {
    const std::optional<int> row = RowOfDataset(setup, dataset.number - 1);
    if (!row) continue;
    for (const auto& [check, checked] : dataset.checks) SetCheck(*check, setup, *row, checked);
    if (dataset.linkTo) {
      links.push_back(LinkOf(dataset, *row, module));
      linked.push_back(&dataset);
    }
    if (dataset.cellGeometry) {
      Require(dataset.table, "cell_geometry", SetCellGeometry(module, *row, *dataset.cellGeometry));
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
  std::error_code error;
  std::filesystem::path path = std::filesystem::absolute(load.file, error).lexically_normal();
  if (error) path = load.file;
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

void ApplyDatasets(const Job& job, QuorvaneModule& module, Host& host) {
  DatasetStore& store = module.Store;
  for (const JobDataset& entry : job.datasets) {
    const std::size_t place = PlaceOf(entry.table, "number", entry.number, store);
    Rename(entry, store.Datasets[place], host);
    if (entry.use) {
      Require(entry.table, "use", ChooseForFit(store, static_cast<int>(place), *entry.use));
    }
    Blank(entry, place, store, host);
    EditPoints(entry, store.Datasets[place]);
    SetValues(entry, store.Datasets[place]);
    if (entry.linkTo) PlaceOf(entry.table, "link_to", *entry.linkTo, store);
  }
}

bool ApplyFit(const Job& job, QuorvaneModule& module, Host& host) {
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
  SetRows(job, module);
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
