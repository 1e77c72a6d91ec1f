#include "job/job_text.h"

#include <algorithm>
#include <optional>
#include <tuple>
#include <vector>

#include "base/files.h"
#include "base/quiet_host.h"
#include "core/page/row_choices.h"
#include "core/page/row_values.h"
#include "fit/models.h"
#include "job/job_steps.h"
#include "job/load_words.h"
#include "job/page_setup.h"
#include "job/scan_source.h"
#include "job/toml_writer.h"
#include "scan/blank.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

void WriteConstants(const QuorvaneModule& module, bool setUp, TomlWriter& out) {
  out.Table("constants");
  out.Key("vbar", module.FitPage.Vbar);
  out.Key("vbar_b", module.FitPage.VbarB);
  out.Key("density", module.FitPage.Density);
  out.Key("mc_tolerance", module.Preferences.MCTolerance);
  if (setUp) out.Key("temperature", module.Setup.DegC);
}

void WriteLoads(const std::vector<JobLoad>& loads, const fs::path& folder, TomlWriter& out) {
  for (const JobLoad& load : loads) {
    out.Entry("load");
    out.Key("file", PathInJob(load.file, folder));
    WriteLoadWords(load.settings, out);
    if (load.blank) out.Key("blank", true);
  }
}

// The keys of one [[dataset]]; its head comes with the first.
class DatasetKeys {
 public:
  DatasetKeys(int number, TomlWriter& out) : number_(number), out_(out) {}
  template <class Value>
  void Key(std::string_view name, const Value& value) {
    Open();
    out_.Key(name, value);
  }
  void Ranges(std::string_view name, const std::vector<RadiusRange>& ranges) {
    Open();
    toml::array list;
    for (const auto& [low, high] : ranges) list.push_back(toml::array{low, high});
    out_.Write(name, list);
  }

 private:
  void Open() {
    if (open_) return;
    open_ = true;
    out_.Entry("dataset");
    out_.Key("number", number_);
  }

  int number_;
  TomlWriter& out_;
  bool open_ = false;
};

// The deleted points as the range that is kept and the ranges that are deleted inside it.
void WritePoints(const Dataset& dataset, DatasetKeys& out) {
  const auto n = static_cast<std::size_t>(dataset.NumPoints);
  const auto good = [&](std::size_t k) { return dataset.Good[k] != kFalse; };
  std::size_t first = 0;
  while (first < n && !good(first)) ++first;
  std::size_t last = n;
  while (last > first && !good(last - 1)) --last;
  std::vector<RadiusRange> deleted;
  if (first == n) {
    deleted.emplace_back(FirstRadius(dataset), LastRadius(dataset));
  } else if (first > 0 || last < n) {
    out.Key("delete_outside", std::vector<double>{dataset.R[first], dataset.R[last - 1]});
  }
  for (std::size_t k = first; k < last; ++k) {
    if (good(k)) continue;
    std::size_t end = k;
    while (!good(end + 1)) ++end;
    deleted.emplace_back(dataset.R[k], dataset.R[end]);
    k = end;
  }
  if (!deleted.empty()) out.Ranges("delete", deleted);
}

// The blank whose subtraction makes `dataset` of `fresh`, by its number.
std::optional<int> BlankOf(const Dataset& dataset, const Dataset& fresh,
                           const DatasetStore& store) {
  for (int k = 0; k < store.NumDatasets(); ++k) {
    const Dataset& blank = store.Datasets[static_cast<std::size_t>(k)];
    if (!IsBlank(blank)) continue;
    Dataset trial = fresh;
    std::int16_t above = 0;
    std::int16_t below = 0;
    SubtractBlank(trial, blank, above, below);
    if (trial.C == dataset.C) return k + 1;
  }
  return std::nullopt;
}

// A row of the page, where it differs from one that was just set up.
void WriteRow(const FitSetup& setup, std::size_t row, DatasetKeys& out) {
  for (const RowCheck& check : RowChecks) {
    if ((setup.*check.states)[row] != CheckState::kChecked) out.Key(check.name, false);
  }
  if (IsLinked(setup, static_cast<int>(row))) {
    out.Key("link_to", setup.FitSetList[static_cast<std::size_t>(setup.RefLink[row])] + 1);
  }
  if (setup.SetCellChannel[row] != 0) out.Key("cell_geometry", int{setup.SetCellChannel[row]});
}

// Where `dataset` differs from `fresh`, the one that the job has just loaded.
void WriteDataset(const QuorvaneModule& module, int position, const Dataset& fresh,
                  TomlWriter& text) {
  const auto place = static_cast<std::size_t>(position);
  const DatasetStore& store = module.Store;
  const Dataset& dataset = store.Datasets[place];
  DatasetKeys out(position + 1, text);
  if (NameOf(dataset) != NameOf(fresh)) out.Key("name", NameOf(dataset));
  if (store.UseData[place] == IsBlank(dataset)) out.Key("use", !IsBlank(dataset) ? false : true);
  if (IsBlanked(dataset) && !IsBlanked(fresh)) {
    if (const auto blank = BlankOf(dataset, fresh, store)) out.Key("subtract_blank", *blank);
  }
  if (dataset.Good != fresh.Good) WritePoints(dataset, out);
  if (dataset.Speed != fresh.Speed) out.Key("speed", int{dataset.Speed});
  for (const RowValue& value : RowValues) {
    if (dataset.*value.field != fresh.*value.field) out.Key(value.name, dataset.*value.field);
  }
  const std::optional<int> row = RowOfDataset(module.Setup, position);
  if (row) WriteRow(module.Setup, static_cast<std::size_t>(*row), out);
}

void WriteFit(const QuorvaneModule& module, TomlWriter& out) {
  const FitSetup& setup = module.Setup;
  out.Table("fit");
  out.Key("model", std::string(setup.FitModel->name));
  if (setup.ConstrainKRatios) out.Key("constrain_k_ratios", true);
  if (setup.UseMassConservation) out.Key("use_mass_conservation", true);
  if (setup.CalcLoadingConcs) out.Key("calc_loading_concs", true);
  if (module.Preferences.AlwaysFitToRest) out.Key("repeat", "rest");
  out.Table("fit.parameters");
  for (const ModelParameter& parameter : setup.FitModel->parameters) {
    const SharedParameter& shared = *parameter.shared;
    toml::table entry;
    entry.is_inline(true);
    entry.insert("start", module.FitPage.*shared.field);
    entry.insert("fit", setup.*shared.check == CheckState::kChecked);
    out.Write(shared.name, entry);
  }
}

bool IsSetUp(const QuorvaneModule& module) {
  return module.Setup.NumFitSets > 0 && RowsAreCurrent(module);
}

bool UsesGeometries(const FitSetup& setup) {
  return std::any_of(setup.SetCellChannel.begin(), setup.SetCellChannel.end(),
                     [](std::int16_t geometry) { return geometry != 0; });
}

void WriteHead(TomlWriter& out) {
  out.Comment("An analysis of Quorvane " + std::string(ProgramVersion()) +
              ". To run it: quorvane-cli analyze, then the name of this file.");
}

// All that a fit or a report reads of a dataset.
bool SameDataset(const Dataset& one, const Dataset& other) {
  const auto same = [n = one.NumPoints](const auto& a, const auto& b) {
    return std::equal(a.begin(), a.begin() + n, b.begin());
  };
  const auto header = [](const Dataset& d) {
    return std::tie(d.FileName, d.Comment1, d.Comment2, d.NumPoints, d.Speed, d.Wavelength,
                    d.Temperature, d.RefRadius);
  };
  const bool values = std::all_of(RowValues.begin(), RowValues.end(), [&](const RowValue& value) {
    return one.*value.field == other.*value.field;
  });
  return header(one) == header(other) && values && same(one.R, other.R) && same(one.C, other.C) &&
         same(one.Err, other.Err) && same(one.Good, other.Good);
}

bool SameDatasets(const DatasetStore& one, const DatasetStore& other) {
  return one.UseData == other.UseData &&
         std::equal(one.Datasets.begin(), one.Datasets.end(), other.Datasets.begin(),
                    other.Datasets.end(), SameDataset);
}

bool SamePage(const QuorvaneModule& one, const QuorvaneModule& other) {
  return std::all_of(SharedParameters.begin(), SharedParameters.end(),
                     [&](const SharedParameter& parameter) {
                       return FindParameter(*one.Setup.FitModel, parameter) == nullptr ||
                              one.FitPage.*parameter.field == other.FitPage.*parameter.field;
                     }) &&
         SetupText(one) == SetupText(other);
}

// Whether the job brings the session's datasets and page back.
bool BringsBack(const std::string& text, const fs::path& folder, const QuorvaneModule& module) {
  try {
    const std::unique_ptr<ParsedJob> parsed = ParseJob(ParseToml(text, "job"), folder);
    QuorvaneModule scratch;
    scratch.CellGeometries = module.CellGeometries;
    scratch.LoadSettings = module.LoadSettings;
    scratch.ChosenModel = module.ChosenModel;
    QuietHost host;
    ApplyConstants(parsed->job, scratch);
    if (ApplyLoads(parsed->job, scratch, host) != LoadOutcome::kLoaded) return false;
    const auto datasets = ApplyDatasets(parsed->job, scratch, host);
    if (!SameDatasets(scratch.Store, module.Store)) return false;
    if (!parsed->job.fit) return true;
    if (!ApplyFit(parsed->job, datasets, scratch, host)) return false;
    scratch.ChosenModel = module.ChosenModel;
    return SamePage(module, scratch);
  } catch (const JobFault&) {  // such as a value that a page would not take
    return false;
  }
}

}  // namespace

JobText JobFromScans(const QuorvaneModule& module, const fs::path& folder) {
  std::vector<JobLoad> loads;
  for (const Dataset& dataset : module.Store.Datasets) {
    const std::optional<JobLoad> load = SourceOf(dataset, module.LoadSettings);
    if (!load) {
      return {{},
              PathOf(dataset) + " is not there any more, or does not give " + NameOf(dataset) +
                  " any more."};
    }
    loads.push_back(*load);
  }
  Job job;
  job.loads = JoinChannels(loads);
  QuorvaneModule fresh;
  QuietHost host;
  ApplyLoads(job, fresh, host);
  if (fresh.Store.NumDatasets() != module.Store.NumDatasets()) {
    return {{}, "The scan files do not give the same datasets any more."};
  }
  const bool setUp = IsSetUp(module);
  TomlWriter out;
  WriteHead(out);
  if (setUp && UsesGeometries(module.Setup)) {
    out.Key("channels_file", PathInJob(module.ChannelFile, folder));
  }
  WriteConstants(module, setUp, out);
  WriteLoads(job.loads, folder, out);
  for (int k = 0; k < module.Store.NumDatasets(); ++k) {
    WriteDataset(module, k, fresh.Store.Datasets[static_cast<std::size_t>(k)], out);
  }
  if (setUp) WriteFit(module, out);
  if (!BringsBack(out.Text(), folder, module)) {
    return {{}, "The datasets hold what a job cannot say of their scan files."};
  }
  return {out.Text(), {}};
}

std::string JobFromArchive(const QuorvaneModule& module, const fs::path& archive,
                           const fs::path& folder) {
  TomlWriter out;
  WriteHead(out);
  out.Key("archive", PathInJob(archive, folder));
  if (IsSetUp(module)) {
    WriteConstants(module, true, out);
    WriteFit(module, out);
  }
  return out.Text();
}

}  // namespace quorvane
