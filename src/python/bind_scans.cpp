#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <cmath>

#include "base/files.h"
#include "base/quiet_host.h"
#include "core/page/dataset_rules.h"
#include "core/page/row_values.h"
#include "job/job_steps.h"
#include "job/require.h"
#include "python/bindings.h"
#include "scan/dataset_channel.h"

namespace quorvane {

namespace {

const RowValue& RowValueOf(const std::string& name) {
  for (const RowValue& value : RowValues) {
    if (value.name == name) return value;
  }
  throw py::key_error(name);
}

std::span<const double> ColumnOf(const Dataset& dataset,
                                 const std::array<double, kMaxPoints>& column) {
  return std::span(column).first(static_cast<std::size_t>(dataset.NumPoints));
}

DoubleArray ErrorsOf(ScanRecord& scan) {
  const Dataset& dataset = scan.Get();
  std::vector<double> errors;
  for (const double error : ColumnOf(dataset, dataset.Err)) errors.push_back(std::fabs(error));
  return ArrayOf(errors);
}

// A mask that writes through, and keeps the scan alive.
py::array MaskOf(const py::object& self) {
  auto& scan = self.cast<ScanRecord&>();
  return py::array(py::dtype("?"), {static_cast<py::ssize_t>(scan.Points())}, {1},
                   scan.Mask().data(), self);
}

void SetSignal(ScanRecord& scan, const DoubleArray& array) {
  const std::vector<double> signal = NumbersOf(array, "signal");
  if (signal.size() != scan.Points()) {
    throw py::value_error("signal: as many numbers as the scan has points are wanted");
  }
  Dataset& dataset = scan.Change();
  std::copy(signal.begin(), signal.end(), dataset.C.begin());
}

// An edit of the points between two radii.
template <class Edit>
void EditPoints(ScanRecord& scan, double low, double high, Edit&& edit) {
  if (!(low <= high)) throw JobFault("two rising radii are wanted, in cm");
  Dataset& dataset = scan.Change();
  Require(OpenForEditing(dataset));
  EditRectangle rectangle;
  rectangle.x1 = low;
  rectangle.x2 = high;
  edit(dataset, rectangle);
  scan.Taken();
}

void Rename(ScanRecord& scan, const std::string& name) {
  QuietHost host;
  Dataset changed = scan.Get();
  if (!RenameDataset(changed, name, host)) throw JobFault("this name is refused");
  if (IsBlank(changed) != IsBlank(scan.Get())) {
    throw JobFault("only a dataset loaded as a blank has a name that begins with BL_");
  }
  scan.Change() = changed;
}

void SubtractBlank(ScanRecord& scan, ScanRecord& blank) {
  QuietHost host;
  DatasetStore store;
  store.Datasets = {scan.Get(), blank.Get()};
  store.UseData = {true, false};
  Require(TakeOffBlank(store, 0, 1, host));
  scan.Change() = store.Datasets.front();
  scan.Taken();
}

py::object CellOf(ScanRecord& scan) {
  const CellChannel channel = ChannelOf(scan.Get());
  return channel.cell ? py::object(py::int_(*channel.cell)) : py::object(py::none());
}

py::object LetterOf(ScanRecord& scan) {
  const CellChannel channel = ChannelOf(scan.Get());
  return channel.letter ? py::object(py::str(std::string(1, *channel.letter)))
                        : py::object(py::none());
}

void RequireOf(const std::string& name, const Refusal& refusal) {
  if (refusal) throw JobFault(name + ": " + LineOf(refusal));
}

ScanRecord MakeScan(const DoubleArray& r, const DoubleArray& signal, const DoubleArray& error,
                    const std::string& name, const std::array<double, 3>& conditions) {
  ScanValues values{NumbersOf(r, "r"),
                    NumbersOf(signal, "signal"),
                    NumbersOf(error, "error"),
                    conditions[0],
                    conditions[1],
                    conditions[2]};
  for (const double value : conditions) {
    if (!std::isfinite(value)) throw py::value_error("a number is not finite");
  }
  return ScanRecord(DatasetOf(values, name));
}

// The datasets of one file, as [[load]] of a job asks for them.
py::list LoadScans(const std::filesystem::path& path, const py::dict& words) {
  const std::unique_ptr<ParsedJob> parsed = ParseJob(TomlOf(words, "load"), {});
  JobLoad load = parsed->job.loads.at(0);
  load.file = path;
  const std::vector<Dataset> datasets = RunFree([&](QuorvaneModule& module, PythonHost& host) {
    const LoadResult result = LoadOne(load, module.Store, host);
    const bool loaded = result.outcome == LoadOutcome::kLoaded && result.datasets > 0;
    if (!loaded) throw FileFault(host.FailureText());
    return module.Store.Datasets;
  });
  py::list scans;
  for (const Dataset& dataset : datasets) scans.append(ScanRecord(dataset));
  return scans;
}

void BindPoints(py::class_<ScanRecord>& scan) {
  scan.def_property_readonly("r",
                             [](ScanRecord& s) { return ArrayOf(ColumnOf(s.Get(), s.Get().R)); });
  scan.def_property(
      "signal", [](ScanRecord& s) { return ArrayOf(ColumnOf(s.Get(), s.Get().C)); }, SetSignal);
  scan.def_property_readonly("error", ErrorsOf);
  scan.def_property_readonly("good", MaskOf);
  scan.def("keep", [](ScanRecord& s, double low, double high) {
    EditPoints(s, low, high, [](Dataset& dataset, const EditRectangle& rectangle) {
      KeepRange(dataset, {rectangle.x1, rectangle.x2});
    });
  });
  scan.def("delete",
           [](ScanRecord& s, double low, double high) { EditPoints(s, low, high, DeleteInside); });
  scan.def("restore",
           [](ScanRecord& s, double low, double high) { EditPoints(s, low, high, RestoreInside); });
  scan.def("restore_all", [](ScanRecord& s) {
    RestoreAll(s.Change());
    s.Taken();
  });
  scan.def("subtract", SubtractBlank);
}

void BindFacts(py::class_<ScanRecord>& scan) {
  scan.def_property(
      "name", [](ScanRecord& s) { return NameOf(s.Get()); }, Rename);
  scan.def_property_readonly("path", [](ScanRecord& s) { return PathOf(s.Get()); });
  scan.def_property_readonly("comment1", [](ScanRecord& s) { return Comment1Of(s.Get()); });
  scan.def_property_readonly("comment2", [](ScanRecord& s) { return Comment2Of(s.Get()); });
  scan.def_property(
      "speed", [](ScanRecord& s) { return s.Get().Speed; },
      [](ScanRecord& s, double rpm) { RequireOf("speed", SetSpeed(s.Change(), rpm)); });
  scan.def_property_readonly("wavelength", [](ScanRecord& s) { return s.Get().Wavelength; });
  scan.def_property_readonly(
      "temperature", [](ScanRecord& s) { return static_cast<double>(s.Get().Temperature); });
  scan.def_property_readonly("ref_radius", [](ScanRecord& s) { return s.Get().RefRadius; });
  scan.def_property_readonly("cell", CellOf);
  scan.def_property_readonly("channel", LetterOf);
  scan.def_property_readonly("blank", [](ScanRecord& s) { return IsBlank(s.Get()); });
  scan.def("value",
           [](ScanRecord& s, const std::string& name) { return s.Get().*RowValueOf(name).field; });
  scan.def("set_value", [](ScanRecord& s, const std::string& name, double number) {
    RequireOf(name, SetValue(RowValueOf(name), s.Change(), number));
  });
}

}  // namespace

std::vector<Dataset> RecordsOf(const py::list& scans) {
  std::vector<Dataset> records;
  for (const py::handle scan : scans) records.push_back(scan.cast<ScanRecord&>().Get());
  return records;
}

void BindScans(py::module_& m) {
  py::class_<ScanRecord> scan(m, "Scan");
  scan.def(py::init(&MakeScan));
  BindPoints(scan);
  BindFacts(scan);
  scan.def("copy", [](ScanRecord& s) { return ScanRecord(s.Get()); });
  scan.def("pack", [](ScanRecord& s) {
    ByteWriter out;
    WriteDataset(s.Get(), out);
    return py::bytes(Sealed("dataset", out.Take()));
  });
  scan.def_static("unpack", [](const py::bytes& bytes) {
    ByteReader in("dataset", Unsealed("dataset", ViewOf(bytes)));
    const Dataset dataset = ReadDataset(in);
    if (!in.AtEnd()) in.Fail("length");
    return ScanRecord(dataset);
  });
  m.def("load", LoadScans);
}

}  // namespace quorvane
