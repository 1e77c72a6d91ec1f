// The module _quorvane: what the package quorvane stands on. Its texts, units and types are those
// of the package; nothing here is meant to be called by users.
#include <utility>

#include "archive/experiment.h"
#include "base/arithmetic.h"
#include "base/files.h"
#include "base/text.h"
#include "fit/models.h"
#include "python/bindings.h"
#include "python/fit_record.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

// Raises an exception class of the package.
void Raise(const char* name, const char* text) {
  const py::object type = py::module_::import("quorvane._errors").attr(name);
  PyErr_SetObject(type.ptr(), py::str(text).ptr());
}

// OSError picks its subclass, such as FileNotFoundError, by the number.
void RaiseFileFault(const FileFault& fault) {
  if (fault.number() == 0) return PyErr_SetString(PyExc_OSError, fault.what());
  const py::tuple arguments = py::make_tuple(fault.number(), fault.what());
  PyErr_SetObject(PyExc_OSError, arguments.ptr());
}

void Translate(std::exception_ptr fault) {
  try {
    if (fault) std::rethrow_exception(std::move(fault));
  } catch (const JobFault& refused) {
    PyErr_SetString(PyExc_ValueError, refused.what());
  } catch (const SolutionFault& refused) {
    PyErr_SetString(PyExc_ValueError, refused.what());
  } catch (const ByteFault& damaged) {
    PyErr_SetString(PyExc_ValueError, damaged.what());
  } catch (const SubscriptFault& outside) {
    PyErr_SetString(PyExc_ValueError, outside.what());
  } catch (const FileFault& file) {
    RaiseFileFault(file);
  } catch (const ArchiveFault& file) {
    PyErr_SetString(PyExc_OSError, file.what());
  } catch (const FitFault& failed) {
    Raise("FitError", failed.what());
  } catch (const ArithmeticFault& failed) {
    Raise("FitError", failed.what());
  }
}

// Name, whether it has a second component, and the shared parameters: name in a fit, in a job, and
// caption in a search of intervals.
py::list ModelList() {
  py::list models;
  for (const Model& model : Models()) {
    py::list parameters;
    for (const ModelParameter& parameter : model.parameters) {
      parameters.append(py::make_tuple(py::str(std::string(parameter.name)),
                                       py::str(std::string(parameter.shared->name)),
                                       py::str(std::string(Trim(parameter.caption)))));
    }
    models.append(
        py::make_tuple(py::str(std::string(model.name)), model.secondComponent, parameters));
  }
  return models;
}

}  // namespace

}  // namespace quorvane

PYBIND11_MODULE(_quorvane, m) {
  namespace q = quorvane;
  m.attr("__version__") = q::ProgramVersion();
  q::py::register_local_exception_translator(q::Translate);
  m.def("models", q::ModelList);
  q::BindScans(m);
  q::BindFits(m);
  q::BindExperiments(m);
  q::BindTools(m);
}
