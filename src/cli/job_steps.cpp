#include "cli/job_steps.h"

#include <algorithm>

#include "base/files.h"
#include "base/host.h"
#include "core/page/cell_files.h"
#include "core/page/constants.h"
#include "fit/models.h"
#include "scan/blank.h"
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

bool EditsPoints(const JobDataset& job) {
  return job.deleteOutside || !job.deleteRanges.empty() || !job.restoreRanges.empty() ||
         job.meniscus || job.base;
}

void EditPoints(const JobDataset& job, Dataset& dataset) {
  if (!EditsPoints(job)) return;
  if (IsBlank(dataset)) job.table.Fail("number", "a blank cannot be edited");
  dataset.Edited = 1.0;
  if (job.deleteOutside) DeleteOutside(dataset, BetweenRadii(*job.deleteOutside));
  for (const RadiusRange& range : job.deleteRanges) DeleteInside(dataset, BetweenRadii(range));
  for (const RadiusRange& range : job.restoreRanges) RestoreInside(dataset, BetweenRadii(range));
  if (job.meniscus || job.base) {
    SetMeniscusAndBase(dataset, job.meniscus.value_or(dataset.Rmen),
                       job.base.value_or(dataset.Rbase));
  }
}

void Blank(const JobDataset& job, std::size_t place, DatasetStore& store, Host& host) {
  if (!job.subtractBlank) return;
  const std::size_t blank = PlaceOf(job.table, "subtract_blank", *job.subtractBlank, store);
  const char* const key = "subtract_blank";
  if (!IsBlank(store.Datasets[blank])) job.table.Fail(key, "that dataset is no blank");
  if (IsBlank(store.Datasets[place])) job.table.Fail(key, "a blank cannot be blanked");
  if (IsBlanked(store.Datasets[place])) job.table.Fail(key, "a blank was subtracted already");
  BlankDataset(store, static_cast<int>(place), static_cast<int>(blank), host);
}

void SetValues(const JobDataset& job, Dataset& dataset) {
  if (job.speed) dataset.Speed = *job.speed;
  const auto set = [](double& field, const std::optional<double>& value) {
    if (value) field = *value;
  };
  set(dataset.ExtCoeff, job.extCoeff);
  set(dataset.ExtCoeff2, job.extCoeffB);
  set(dataset.Offset, job.baseline);
  set(dataset.RefConc, job.refConc);
  set(dataset.RefConc2, job.refConcB);
  set(dataset.ALoad, job.loadA);
  set(dataset.BLoad, job.loadB);
}

void Rename(const JobDataset& job, Dataset& dataset, Host& host) {
  if (!job.name) return;
  const bool wasBlank = IsBlank(dataset);
  if (!RenameDataset(dataset, *job.name, host)) job.table.Fail("name", "the name was refused");
  if (IsBlank(dataset) != wasBlank) {
    job.table.Fail("name", "only a dataset loaded as a blank has a name that begins with BL_");
  }
}

CheckState StateOf(bool checked) {
  return checked ? CheckState::kChecked : CheckState::kUnchecked;
}

// Position in the fit of a dataset (from 0), -1 if it is not in it.
int PositionInFit(const FitSetup& setup, std::size_t place) {
  const auto found =
      std::find(setup.FitSetList.begin(), setup.FitSetList.end(), static_cast<std::int16_t>(place));
  return found == setup.FitSetList.end() ? -1 : static_cast<int>(found - setup.FitSetList.begin());
}

void Link(const JobDataset& job, std::size_t position, const DatasetStore& store, FitSetup& setup) {
  if (!job.linkTo) return;
  const int target = PositionInFit(setup, PlaceOf(job.table, "link_to", *job.linkTo, store));
  if (target < 0) job.table.Fail("link_to", "that dataset is not in the fit");
  setup.RefLink[position] = static_cast<std::int16_t>(target);
}

// A dataset that others are linked to cannot itself be linked.
void CheckLinks(const Job& job, const FitSetup& setup) {
  for (const JobDataset& dataset : job.datasets) {
    const int position = PositionInFit(setup, static_cast<std::size_t>(dataset.number - 1));
    if (position < 0 || !dataset.linkTo) continue;
    const std::int16_t target = setup.RefLink[static_cast<std::size_t>(position)];
    if (setup.RefLink[static_cast<std::size_t>(target)] != target) {
      dataset.table.Fail("link_to", "This set is currently being used as a link");
    }
  }
}

void SetRow(const JobDataset& job, const QuorvaneModule& module, FitSetup& setup) {
  const int position = PositionInFit(setup, static_cast<std::size_t>(job.number - 1));
  if (position < 0) return;
  const auto row = static_cast<std::size_t>(position);
  if (job.fitBaseline) setup.chkOffset[row] = StateOf(*job.fitBaseline);
  if (job.fitRefConc) setup.chkRefC[row] = StateOf(*job.fitRefConc);
  if (job.fitRefConcB) setup.chkRefC2[row] = StateOf(*job.fitRefConcB);
  Link(job, row, module.Store, setup);
  if (job.cellGeometry) {
    const int known = std::max(1, static_cast<int>(module.CellGeometries.size()));
    if (*job.cellGeometry < 0 || *job.cellGeometry >= known) {
      job.table.Fail("cell_geometry", "there is no such cell geometry");
    }
    setup.SetCellChannel[row] = static_cast<std::int16_t>(*job.cellGeometry);
  }
}

void SetShared(const JobFit& job, FitPage& page, FitSetup& setup) {
  for (const auto& [parameter, entry] : job.parameters) {
    if (entry.start) page.*parameter->field = *entry.start;
    if (entry.fit) setup.*parameter->check = StateOf(*entry.fit);
  }
}

}  // namespace

std::size_t FittedPlace(const TableReader& table, const char* key, const std::string& name,
                        const FitSetup& setup) {
  const std::span<const ModelParameter> parameters = setup.FitModel->parameters;
  const auto found =
      std::find_if(parameters.begin(), parameters.end(),
                   [&](const ModelParameter& parameter) { return parameter.shared->name == name; });
  if (found == parameters.end()) table.Fail(key, "this model has no \"" + name + "\"");
  if (setup.*found->shared->check != CheckState::kChecked) {
    table.Fail(key, name + " is held in this fit");
  }
  return static_cast<std::size_t>(found - parameters.begin());
}

void ApplyConstants(const Job& job, const std::filesystem::path& programFolder,
                    QuorvaneModule& module) {
  if (job.channelsFile && !FileExists(*job.channelsFile)) {
    throw FileFault(PathText(*job.channelsFile) + ": there is no such file");
  }
  LoadChannelFile(module, job.channelsFile.value_or(FindChannelFile(programFolder)));
  const auto set = [&](Constant constant, const std::optional<double>& value) {
    if (value) SetConstant(module, constant, *value);
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

ExitStatus ApplyLoads(const Job& job, QuorvaneModule& module, Host& host) {
  for (const JobLoad& load : job.loads) {
    const LoadResult result = LoadOne(load, module.Store, host);
    if (result.outcome == LoadOutcome::kUnreadable) return ExitStatus::kFileFault;
    if (result.datasets == 0) return ExitStatus::kNotDone;
  }
  return ExitStatus::kDone;
}

void ApplyDatasets(const Job& job, QuorvaneModule& module, Host& host) {
  DatasetStore& store = module.Store;
  for (const JobDataset& entry : job.datasets) {
    const std::size_t place = PlaceOf(entry.table, "number", entry.number, store);
    Rename(entry, store.Datasets[place], host);
    if (entry.use.value_or(false) && IsBlank(store.Datasets[place])) {
      entry.table.Fail("use", "a blank is never fitted");
    }
    if (entry.use) store.UseData[place] = *entry.use;
    Blank(entry, place, store, host);
    EditPoints(entry, store.Datasets[place]);
    SetValues(entry, store.Datasets[place]);
    if (entry.linkTo) PlaceOf(entry.table, "link_to", *entry.linkTo, store);
  }
}

bool ApplyFit(const Job& job, QuorvaneModule& module, Host& host) {
  const JobFit& fit = *job.fit;
  FitSetup& setup = module.Setup;
  if (!SetupFit(setup, module.FitPage, module.Store, *fit.model, host)) return false;
  module.ChosenModel = fit.model;
  if (job.temperature) setup.DegC = *job.temperature;
  setup.UseMassConservation = fit.useMassConservation;
  setup.CalcLoadingConcs = fit.calcLoadingConcs;
  for (const JobDataset& dataset : job.datasets) SetRow(dataset, module, setup);
  CheckLinks(job, setup);
  SetShared(fit, module.FitPage, setup);
  if (fit.constrainKRatios) {
    for (const double ratio : {module.FitPage.ModelLnK2, module.FitPage.ModelLnK3}) {
      if (!(ratio > 0.0)) fit.table.Fail("constrain_k_ratios", "the ratios must be greater than 0");
    }
    ConstrainRatios(setup);
  }
  return true;
}

ConfidenceRequest ConfidenceOf(const Job& job, const FitSetup& setup) {
  const JobConfidence& confidence = *job.confidence;
  const std::size_t count = setup.FitModel->parameters.size();
  ConfidenceRequest request{confidence.percent, confidence.method,
                            std::vector<bool>(count, !confidence.parameters)};
  if (!confidence.parameters) return request;
  for (const std::string& name : *confidence.parameters) {
    request.chosen[FittedPlace(confidence.table, "parameters", name, setup)] = true;
  }
  return request;
}

}  // namespace quorvane
