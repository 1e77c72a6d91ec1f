#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <cmath>

#include "archive/experiment_session.h"
#include "base/files.h"
#include "job/require.h"
#include "python/bindings.h"
#include "python/fit_record.h"

namespace quorvane {

namespace {

// A session as Python holds it between opening and saving.
struct ExperimentRecord {
  QuorvaneModule module;
  std::string log;  // as plain text
  std::string rtf;  // the same as it is kept; empty: to be made
  std::vector<std::string> messages;
};

// The values of the page, by their names in the JSON of `archive`.
const std::vector<std::pair<std::string, double FitPage::*>>& PageNames() {
  static const auto names = [] {
    std::vector<std::pair<std::string, double FitPage::*>> list;
    list.reserve(SharedParameters.size() + 3);
    for (const SharedParameter& parameter : SharedParameters) {
      list.emplace_back(parameter.name, parameter.field);
    }
    list.emplace_back("Vbar", &FitPage::Vbar);
    list.emplace_back("VbarB", &FitPage::VbarB);
    list.emplace_back("Density", &FitPage::Density);
    return list;
  }();
  return names;
}

ReadExperiment Read(const std::filesystem::path& path) {
  try {
    return ReadExperimentFile(path);
  } catch (const ArchiveFault& fault) {
    throw FileFault(PathText(path) + " is not a valid saved experiment file!\n" + fault.what());
  }
}

ExperimentRecord Open(const std::filesystem::path& path) {
  return RunFree([&](QuorvaneModule&, PythonHost& host) {
    ExperimentRecord record;
    record.module.Preferences.SaveGraphs = false;
    ReadExperiment read = Read(path);
    record.rtf = read.experiment.log;
    const std::string remark = ResumeExperiment(record.module, std::move(read), host);
    record.log = host.Log();
    record.messages = host.Failures();
    if (!remark.empty()) record.messages.push_back(remark);
    return record;
  });
}

ExperimentRecord Around(const FitRecord& fit) {
  ExperimentRecord record;
  BeginAround(fit, record.module);
  record.log = fit.log;
  return record;
}

py::list ScansOf(const ExperimentRecord& record) {
  py::list scans;
  for (const Dataset& dataset : record.module.Store.Datasets) scans.append(ScanRecord(dataset));
  return scans;
}

py::dict PageOf(const ExperimentRecord& record) {
  py::dict page;
  for (const auto& [name, field] : PageNames()) page[py::str(name)] = record.module.FitPage.*field;
  page["Model"] = std::string(record.module.ChosenModel->name);
  page["Temperature"] = record.module.Setup.DegC;
  return page;
}

void TakePage(const py::dict& page, QuorvaneModule& module) {
  for (const auto& [key, value] : page) {
    const auto name = py::str(key).cast<std::string>();
    if (name == "Model") {
      const Model* model = FindModel(py::str(value).cast<std::string>());
      if (model == nullptr) throw JobFault("Model: there is no such model");
      module.ChosenModel = model;
      continue;
    }
    if (PyNumber_Check(value.ptr()) == 0) throw py::type_error(name + ": a number is wanted");
    const auto number = value.cast<double>();
    if (!std::isfinite(number)) throw JobFault(name + ": not a finite number");
    if (name == "Temperature") {
      module.Setup.DegC = number;
      continue;
    }
    bool known = false;
    for (const auto& [known_name, field] : PageNames()) {
      if (known_name != name) continue;
      module.FitPage.*field = number;
      known = true;
    }
    if (!known) throw JobFault(name + ": the page has no such value");
  }
}

// The datasets take the places of those of the session. Another number of them, or another order,
// closes its page.
void TakeScans(std::vector<Dataset> datasets, QuorvaneModule& module) {
  DatasetStore& store = module.Store;
  bool same = datasets.size() == store.Datasets.size();
  for (std::size_t k = 0; same && k < datasets.size(); ++k) {
    same = PathOf(datasets[k]) == PathOf(store.Datasets[k]) &&
           IsBlank(datasets[k]) == IsBlank(store.Datasets[k]) &&
           datasets[k].R == store.Datasets[k].R;
  }
  store.Datasets = std::move(datasets);
  if (same) return;
  store.UseData.clear();
  for (const Dataset& dataset : store.Datasets) store.UseData.push_back(!IsBlank(dataset));
  ForgetChosenSets(module.Setup);
}

// Says what was told while it was saved.
std::vector<std::string> Save(const ExperimentRecord& record, const py::list& scans,
                              const py::dict& page, const std::string& log,
                              const std::filesystem::path& path) {
  QuorvaneModule saved = record.module;
  TakePage(page, saved);
  TakeScans(RecordsOf(scans), saved);
  if (saved.Store.Datasets.empty()) throw JobFault("an experiment without datasets is not saved");
  return RunFree([&](QuorvaneModule&, PythonHost& host) {
    if (log == record.log && !record.rtf.empty()) {
      host.LoadLog(record.rtf);
    } else {
      host.PrintIt(log);
    }
    std::vector<std::string> told;
    const FileLock lock = LockArchive(path);
    if (!lock.Holder().empty()) {
      told.push_back(PathText(path) + " is open in another Quorvane (" + lock.Holder() +
                     "); it is replaced all the same.");
    }
    if (!SaveExperiment(saved, path, host)) throw FileFault(host.FailureText());
    return told;
  });
}

}  // namespace

void BindExperiments(py::module_& m) {
  py::class_<ExperimentRecord> experiment(m, "Session");
  experiment.def(py::init<>());
  experiment.def("scans", ScansOf);
  experiment.def("page", PageOf);
  experiment.def_readonly("log", &ExperimentRecord::log);
  experiment.def_readonly("messages", &ExperimentRecord::messages);
  experiment.def("copy", [](const ExperimentRecord& record) { return record; });
  experiment.def("save", Save);
  m.def("open", Open);
  m.def("session_around", Around);
}

}  // namespace quorvane
