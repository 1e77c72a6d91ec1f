#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <cmath>
#include <limits>

#include "base/arithmetic.h"
#include "fit/fit_statistics.h"
#include "fit/levmarq.h"
#include "fit/models.h"
#include "job/job_steps.h"
#include "job/json_comparison.h"
#include "job/json_records.h"
#include "python/bindings.h"
#include "python/fit_record.h"
#include "stats/fit_comparison.h"
#include "stats/fit_summary.h"

namespace quorvane {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

const FitState& StateOf(const FitRecord& record) {
  return record.fit->state;
}

FitRecord Fit(const py::list& scans, const py::dict& job, const std::filesystem::path& folder) {
  const std::vector<Dataset> records = RecordsOf(scans);
  const std::unique_ptr<ParsedJob> parsed = ParseJob(TomlOf(job, "fit"), {});
  return RunFree([&](QuorvaneModule& module, PythonHost& host) {
    return FitScans(records, parsed->job, folder, host, module);
  });
}

// Standard error, 0 of a held one; not a number where the fit has none.
double ErrorOf(const FitState& state, const FitStatistics& statistics, int k) {
  try {
    return StandardError(state, statistics, k);
  } catch (const ArithmeticFault&) {
    return kNone;
  }
}

// (name, name in a job or None, value, standard error, fitted) of each, in the order of FitA.
py::list ParametersOf(const FitRecord& record) {
  const FitState& state = StateOf(record);
  const FitStatistics statistics = CalcFitStatistics(state);
  py::list list;
  for (int k = 1; k <= state.FitMA; ++k) {
    py::object shared = py::none();
    if (k > state.SharedBase()) {
      const auto place = static_cast<std::size_t>(k - state.SharedBase() - 1);
      shared = py::str(std::string(state.FitModel->parameters[place].shared->name));
    }
    list.append(py::make_tuple(py::str(ParameterName(state, k)), shared, state.FitA(k),
                               ErrorOf(state, statistics, k), state.FitIA(k) != 0));
  }
  return list;
}

DoubleArray CovarianceOf(const FitRecord& record) {
  const Matrix1<double>& matrix = StateOf(record).FitCovar;
  DoubleArray array({matrix.rows(), matrix.cols()});
  for (int j = 1; j <= matrix.rows(); ++j) {
    std::copy_n(matrix.Row(j), matrix.cols(), array.mutable_data(j - 1, 0));
  }
  return array;
}

// Radius, signal and model value of the data points of dataset `set`, from 0.
py::tuple CurveOf(const FitRecord& record, int set) {
  const FitState& state = StateOf(record);
  if (set < 0 || set >= state.NumFitSets) throw py::index_error("the fit has no such dataset");
  std::vector<double> r, y, calculated;
  for (int i = 1; i <= state.FitNumPoints; ++i) {
    if (state.FitSet(i) != set + 1 || state.PointKind(i) != 0) continue;
    r.push_back(state.FitR(i));
    y.push_back(state.FitY(i));
    calculated.push_back(state.FitYCalc(i));
  }
  return py::make_tuple(ArrayOf(r), ArrayOf(y), ArrayOf(calculated));
}

py::dict CountsOf(const FitRecord& record) {
  const FitState& state = StateOf(record);
  const FitStatistics statistics = CalcFitStatistics(state);
  py::dict counts;
  counts["model"] = std::string(state.FitModel->name);
  counts["sum_of_squares"] = state.FitChiSq;
  counts["best_sum"] = AcceptedSum(state);
  counts["variance"] = statistics.variance;
  counts["rms"] = std::sqrt(statistics.variance);
  counts["degrees_of_freedom"] = statistics.freedom;
  counts["points"] = static_cast<int>(state.FitNumPoints);
  counts["iterations"] = record.fit->iterations;
  counts["sets"] = static_cast<int>(state.NumFitSets);
  counts["temperature"] = record.fit->setup.DegC;
  counts["vbar"] = record.fit->page.Vbar;
  counts["density"] = record.fit->page.Density;
  return counts;
}

py::object RestOf(const FitRecord& record) {
  return record.fit->rest ? ObjectOf(RestJson(*record.fit->rest)) : py::none();
}

// AICc and BIC, None where they are not defined.
py::tuple CriteriaOf(const FitRecord& record) {
  const FitSummary summary = Summarise(StateOf(record), std::nullopt);
  return py::make_tuple(py::cast(summary.AICc()), py::cast(summary.BIC()));
}

py::object QualityOf(const FitRecord& record) {
  return ObjectOf(QualityJson(*record.fit, Preferences().CriticalCCCValue));
}

using Search = Json (*)(FitRecord&, const Job&, PythonHost&, QuorvaneModule&);

py::object SearchAround(FitRecord& record, const py::dict& job, Search search) {
  const std::unique_ptr<ParsedJob> parsed = ParseJob(TomlOf(job, "fit"), {});
  FitRecord copy = record;  // other threads may look at the fit meanwhile
  const Json json = RunFree([&](QuorvaneModule& module, PythonHost& host) {
    return search(copy, parsed->job, host, module);
  });
  record.fit = copy.fit;
  return ObjectOf(json);
}

Json Minima(FitRecord& record, const Job& job, PythonHost& host, QuorvaneModule& module) {
  return FindMinima(record, job, host, module);
}

// The datasets of the fit with their fitted values.
py::list ScansOf(const FitRecord& record) {
  py::list scans;
  for (const Dataset& dataset : record.fit->datasets) scans.append(ScanRecord(dataset));
  return scans;
}

// `fits`: pairs of a name and a fit.
py::object Compare(const py::list& fits) {
  std::vector<FitSummary> summaries;
  std::vector<std::string> names;
  for (const py::handle item : fits) {
    const auto pair = item.cast<py::tuple>();
    const auto& record = pair[1].cast<const FitRecord&>();
    names.push_back(pair[0].cast<std::string>());
    summaries.push_back(Summarise(StateOf(record), record.fit->rest));
  }
  std::vector<NamedFit> named;
  for (std::size_t k = 0; k < names.size(); ++k) named.push_back({names[k], &summaries[k]});
  if (const std::string refusal = RefusalOfComparison(named); !refusal.empty()) {
    throw JobFault(refusal);
  }
  return ObjectOf(ComparisonJson(named, CompareFits(named)));
}

}  // namespace

void BindFits(py::module_& m) {
  py::class_<FitRecord> fit(m, "FinishedFit");
  fit.def("counts", CountsOf);
  fit.def("parameters", ParametersOf);
  fit.def("covariance", CovarianceOf);
  fit.def("curve", CurveOf);
  fit.def("rest", RestOf);
  fit.def("criteria", CriteriaOf);
  fit.def("quality", QualityOf);
  fit.def("scans", ScansOf);
  fit.def_readonly("log", &FitRecord::log);
  fit.def_readonly("messages", &FitRecord::messages);
  fit.def("errors",
          [](FitRecord& f, const py::dict& job) { return SearchAround(f, job, FindErrors); });
  fit.def("intervals",
          [](FitRecord& f, const py::dict& job) { return SearchAround(f, job, FindIntervals); });
  fit.def("minima", [](FitRecord& f, const py::dict& job) { return SearchAround(f, job, Minima); });
  fit.def("pack", [](const FitRecord& f) { return py::bytes(PackFit(f)); });
  fit.def_static("unpack", [](const py::bytes& bytes) { return UnpackFit(ViewOf(bytes)); });
  m.def("fit", Fit);
  m.def("compare", Compare);
}

}  // namespace quorvane
