// The parts of the module _quorvane.
#pragma once

#include <exception>
#include <optional>

#include "core/program_state.h"
#include "python/python_host.h"
#include "python/scan_record.h"

namespace quorvane {

void BindScans(py::module_& m);        // datasets and their files
void BindFits(py::module_& m);         // fits, searches around them, comparisons
void BindExperiments(py::module_& m);  // archives
void BindTools(py::module_& m);        // simulator, plans, constants of a solution

// The records of a list of scans, as they are now.
std::vector<Dataset> RecordsOf(const py::list& scans);

// Runs `work(module, host)` on a session of its own with the interpreter free, and gives back what
// it gives. An interrupt that came meanwhile is thrown instead.
template <class Work>
auto RunFree(Work&& work) {
  QuorvaneModule module;
  PythonHost host(module.Stop);
  std::optional<decltype(work(module, host))> result;
  std::exception_ptr fault;
  {
    const py::gil_scoped_release free;
    try {
      result.emplace(work(module, host));
    } catch (...) {
      fault = std::current_exception();
    }
  }
  host.ThrowIfInterrupted();
  if (fault) std::rethrow_exception(fault);
  return std::move(*result);
}

}  // namespace quorvane
