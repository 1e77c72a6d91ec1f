// A finished fit as Python holds it.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/program_state.h"
#include "job/job.h"
#include "job/json_text.h"
#include "python/python_host.h"

namespace quorvane {

// Why a fit, a search or a simulation gave no result.
class FitFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct FitRecord {
  std::shared_ptr<const FinishedFit> fit;  // never null
  std::vector<CellGeometry> geometries;    // that the setup of the fit may name
  std::string log;                         // of the run, lines ended by \n
  std::vector<std::string> messages;       // what was reported beside the log
};

// The fit of `scans` that `job` says, which loads none itself. `programFolder`: where the programs
// of an installation lie, for the cell geometries. The interpreter is to be free.
// Throws JobFault for what a rule refuses, FitFault for a fit without a result, FileFault.
FitRecord FitScans(const std::vector<Dataset>& scans, const Job& job,
                   const std::filesystem::path& programFolder, PythonHost& host,
                   QuorvaneModule& module);

// A session in which the fit has just ended.
void BeginAround(const FitRecord& record, QuorvaneModule& module);

// Tables [errors] and [confidence] of `job`, and a search for other minima, around the fit, which
// then knows the first two. Each gives its part of the JSON of `analyze`. Throw as FitScans.
Json FindErrors(FitRecord& record, const Job& job, PythonHost& host, QuorvaneModule& module);
Json FindIntervals(FitRecord& record, const Job& job, PythonHost& host, QuorvaneModule& module);
Json FindMinima(const FitRecord& record, const Job& job, PythonHost& host, QuorvaneModule& module);

// The fit in bytes, with what searches around it found, and its log.
std::string PackFit(const FitRecord& record);

// Throws ByteFault, JobFault or ArithmeticFault for bytes that are no such fit.
FitRecord UnpackFit(std::string_view bytes);

}  // namespace quorvane
