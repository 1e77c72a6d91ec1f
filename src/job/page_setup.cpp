#include "job/page_setup.h"

#include <map>
#include <optional>
#include <vector>

#include "core/page/dataset_rules.h"
#include "core/page/row_choices.h"
#include "core/page/row_values.h"
#include "core/page/shared_values.h"
#include "fit/model_parameters.h"
#include "fit/models.h"
#include "job/fitted_tables.h"
#include "job/job_fit.h"
#include "job/load_words.h"
#include "job/require.h"
#include "job/solution_setup.h"

namespace quorvane {

namespace {

constexpr std::string_view kFirstLine = "quorvane setup 1\n";

bool IsRatio(const SharedParameter& parameter, const FitSetup& setup) {
  return setup.ConstrainKRatios && MayBeRatio(parameter);
}

// ---- writing

std::vector<bool> RowsAsUse(const QuorvaneModule& module) {
  std::vector<bool> rows(module.Store.Datasets.size(), false);
  for (const std::int16_t dataset : module.Setup.FitSetList) {
    rows[static_cast<std::size_t>(dataset)] = true;
  }
  return rows;
}

void WritePage(const QuorvaneModule& module, bool setUp, TomlWriter& out) {
  out.Table("page");
  if (setUp) out.Key("temperature", module.Setup.DegC);
  WriteLoadWords(module.LoadSettings, out);
  if (!setUp || RowsAsUse(module) == module.Store.UseData) return;
  std::vector<int> rows;  // the choice was changed since "Setup Fit"
  for (const std::int16_t dataset : module.Setup.FitSetList) rows.push_back(dataset + 1);
  out.Key("datasets", rows);
}

void WriteFit(const QuorvaneModule& module, TomlWriter& out) {
  const FitSetup& setup = module.Setup;
  out.Table("fit");
  if (setup.FitModel != module.ChosenModel) out.Key("model", std::string(setup.FitModel->name));
  out.Key("constrain_k_ratios", setup.ConstrainKRatios);
  out.Key("use_mass_conservation", setup.UseMassConservation);
  out.Key("calc_loading_concs", setup.CalcLoadingConcs);
  out.Table("fit.parameters");
  for (const SharedParameter& parameter : SharedParameters) {
    if (FindParameter(*setup.FitModel, parameter) == nullptr) continue;
    toml::table entry;
    entry.is_inline(true);
    if (IsRatio(parameter, setup)) entry.insert("start", module.FitPage.*parameter.field);
    entry.insert("fit", setup.*parameter.check == CheckState::kChecked);
    out.Write(parameter.name, entry);
  }
}

void WriteRow(const FitSetup& setup, std::size_t row, TomlWriter& out) {
  for (const RowCheck& check : RowChecks) {
    out.Key(check.name, (setup.*check.states)[row] == CheckState::kChecked);
  }
  if (IsLinked(setup, static_cast<int>(row))) {
    out.Key("link_to", setup.FitSetList[static_cast<std::size_t>(setup.RefLink[row])] + 1);
  }
  if (setup.SetCellChannel[row] != 0) out.Key("cell_geometry", int{setup.SetCellChannel[row]});
}

void WriteDatasets(const QuorvaneModule& module, bool setUp, TomlWriter& out) {
  const DatasetStore& store = module.Store;
  for (int k = 0; k < store.NumDatasets(); ++k) {
    const auto place = static_cast<std::size_t>(k);
    const std::optional<int> row = setUp ? RowOfDataset(module.Setup, k) : std::nullopt;
    const bool asLoaded = store.UseData[place] == !IsBlank(store.Datasets[place]);
    if (!row && asLoaded) continue;
    out.Entry("dataset");
    out.Key("number", k + 1);
    out.Key("use", static_cast<bool>(store.UseData[place]));
    if (row) WriteRow(module.Setup, static_cast<std::size_t>(*row), out);
  }
}

// ---- reading

// What a setup says, checked against the datasets, before any of it is taken.
struct Restored {
  std::vector<bool> use;
  ScanLoadSettings load;
  std::optional<FitSetup> setup;  // absent: the page was not set up
  FitPage page;                   // for the ratios
  std::string remark;
  std::vector<FittedEntry> fits;
  SolutionEntry solution;
};

int NumberIn(TableReader& table, const char* key, const DatasetStore& store) {
  const std::optional<int> number = table.Integer(key);
  if (!number || *number < 1 || *number > store.NumDatasets()) {
    table.Fail(key, "the number of a dataset is wanted");
  }
  return *number;
}

struct RowSetup {
  TableReader table;  // for messages
  std::map<const RowCheck*, bool> checks;
  std::optional<int> linkTo;  // number of a dataset
  std::optional<int> cellGeometry;
};

// By position in the store; takes the choice of datasets at once.
std::map<int, RowSetup> ReadRows(TableReader& root, const DatasetStore& store, Restored& restored) {
  std::map<int, RowSetup> rows;
  for (TableReader& table : root.Tables("dataset")) {
    const int position = NumberIn(table, "number", store) - 1;
    const auto place = static_cast<std::size_t>(position);
    if (rows.contains(position)) table.Fail("number", "this dataset has a table already");
    if (const std::optional<bool> use = table.Flag("use")) {
      if (*use) Require(table, "use", RefusalOfFitting(store.Datasets[place]));
      restored.use[place] = *use;
    }
    RowSetup row{table, {}, {}, {}};
    for (const RowCheck& check : RowChecks) {
      if (const std::optional<bool> checked = table.Flag(check.name)) row.checks[&check] = *checked;
    }
    if (table.Has("link_to")) row.linkTo = NumberIn(table, "link_to", store);
    row.cellGeometry = table.Integer("cell_geometry");
    table.RefuseUnknownKeys();
    rows.emplace(position, std::move(row));
  }
  return rows;
}

// The datasets of the page, positions in the store.
std::vector<std::int16_t> ReadPageList(TableReader& page, const DatasetStore& store,
                                       const std::vector<bool>& use) {
  std::vector<bool> chosen = use;
  if (const auto numbers = page.Numbers("datasets")) {
    chosen.assign(use.size(), false);
    for (const double number : *numbers) {
      const bool known = number >= 1.0 && number <= store.NumDatasets() &&
                         number == static_cast<double>(static_cast<int>(number));
      if (!known) page.Fail("datasets", "numbers of datasets are wanted");
      chosen[static_cast<std::size_t>(number) - 1] = true;
    }
  }
  std::vector<std::int16_t> list;
  for (std::size_t k = 0; k < chosen.size(); ++k) {
    if (!chosen[k]) continue;
    Require(page, "datasets", RefusalOfFitting(store.Datasets[k]));
    list.push_back(static_cast<std::int16_t>(k));
  }
  return list;
}

void RestoreRow(const RowSetup& row, int position, std::size_t geometries, Restored& restored,
                std::vector<RowLink>& links) {
  FitSetup& setup = *restored.setup;
  const std::optional<int> place = RowOfDataset(setup, position);
  if (!place) return;  // not on the page
  for (const auto& [check, checked] : row.checks) SetCheck(*check, setup, *place, checked);
  if (row.linkTo) {
    const std::optional<int> target = RowOfDataset(setup, *row.linkTo - 1);
    if (!target) row.table.Fail("link_to", "that dataset is not on the page");
    links.push_back({*place, *target});
  }
  if (!row.cellGeometry) return;
  if (*row.cellGeometry >= 0 && static_cast<std::size_t>(*row.cellGeometry) < geometries) {
    setup.SetCellChannel[static_cast<std::size_t>(*place)] =
        static_cast<std::int16_t>(*row.cellGeometry);
  } else {
    restored.remark =
        "A cell geometry of the experiment is not known here: the default one stands "
        "in its place.";
  }
}

void RestoreParameters(TableReader& fit, Restored& restored) {
  FitSetup& setup = *restored.setup;
  for (const auto& [parameter, entry] : ReadParameters(fit)) {
    if (entry.start) restored.page.*parameter->field = *entry.start;
    if (entry.fit) {
      setup.*parameter->check = *entry.fit ? CheckState::kChecked : CheckState::kUnchecked;
    }
  }
  if (!fit.Flag("constrain_k_ratios").value_or(false)) return;
  Require(fit, "constrain_k_ratios", RefusalOfConstraint(*setup.FitModel));
  for (const SharedParameter& parameter : SharedParameters) {
    if (!MayBeRatio(parameter)) continue;
    Require(fit, "parameters", RefusalOfRatio(parameter, restored.page.*parameter.field));
  }
  ConstrainRatios(setup);
}

void RestorePage(TableReader& fit, TableReader& page, const std::map<int, RowSetup>& rows,
                 const QuorvaneModule& module, Restored& restored) {
  const Model* model = fit.Has("model") ? &ReadModel(fit) : module.ChosenModel;
  std::vector<std::int16_t> list = ReadPageList(page, module.Store, restored.use);
  if (list.empty() || list.size() > kMaxFitSets) {
    fit.Fail("model", "the page has no datasets, or more than a fit can hold");
  }
  restored.setup = FreshSetup(std::move(list), module.Store, *model);
  FitSetup& setup = *restored.setup;
  if (const auto degC = page.Number("temperature")) {
    Require(page, "temperature", SetTemperature(setup, *degC));
  }
  setup.UseMassConservation = fit.Flag("use_mass_conservation").value_or(false);
  setup.CalcLoadingConcs = fit.Flag("calc_loading_concs").value_or(false);
  RestoreParameters(fit, restored);
  std::vector<RowLink> links;
  const std::size_t geometries = CellGeometryNames(module).size();
  for (const auto& [position, row] : rows) {
    RestoreRow(row, position, geometries, restored, links);
  }
  if (const std::optional<LinkRefusal> refused = LinkRows(setup, links)) {
    throw JobFault(LineOf(refused->refusal));
  }
  fit.RefuseUnknownKeys();
}

Restored ReadSetup(TableReader& root, const QuorvaneModule& module) {
  Restored restored{module.Store.UseData, module.LoadSettings, {}, module.FitPage, {}, {}, {}};
  const std::map<int, RowSetup> rows = ReadRows(root, module.Store, restored);
  std::optional<TableReader> page = root.Table("page");
  if (!page) root.Fail("page", "the table is wanted");
  LoadWords words{page->Text("kind"), page->Text("centerpiece"), page->Texts("channels")};
  if (words.kind) restored.load = LoadSettingsOf(words, {}, *page);
  if (std::optional<TableReader> fit = root.Table("fit")) {
    RestorePage(*fit, *page, rows, module, restored);
  }
  static_cast<void>(page->Number("temperature"));  // known keys, if only for a page
  static_cast<void>(page->Numbers("datasets"));
  page->RefuseUnknownKeys();
  restored.solution = ReadSolutionEntry(root);
  restored.fits = ReadFitted(root, module.Store.Datasets);
  root.RefuseUnknownKeys();
  return restored;
}

}  // namespace

bool IsSetupText(std::string_view comment) {
  return comment.starts_with(kFirstLine);
}

std::string SetupText(const QuorvaneModule& module) {
  const bool setUp = module.Setup.NumFitSets > 0 && RowsAreCurrent(module);
  TomlWriter out;
  WritePage(module, setUp, out);
  if (setUp) WriteFit(module, out);
  WriteDatasets(module, setUp, out);
  WriteSolution(module.Solution, out);
  return std::string(kFirstLine) + out.Text();
}

ArchiveText SetupWithFits(const QuorvaneModule& module, std::size_t longest) {
  std::string setup = SetupText(module);
  if (setup.size() > longest) return {{}, static_cast<int>(module.Fits.Entries().size())};
  const FittedTables fits = WriteFitted(module.Fits, module.Store.Datasets, longest - setup.size());
  return {setup + fits.text, fits.leftOut};
}

std::string TakeSetup(std::string_view text, const std::string& source, QuorvaneModule& module) {
  const TomlFile file = ParseToml(text.substr(kFirstLine.size()), source);
  TableReader root(file.name, "", file.table);
  Restored restored = ReadSetup(root, module);
  module.Store.UseData = std::move(restored.use);
  module.LoadSettings = restored.load;
  module.Solution = std::move(restored.solution);
  if (restored.setup) {
    module.Setup = std::move(*restored.setup);
    module.FitPage = restored.page;
  }
  for (FittedEntry& fit : restored.fits) {
    module.Fits.AddKept(std::move(fit.name), fit.time, std::move(fit.kept));
  }
  return restored.remark;
}

}  // namespace quorvane
