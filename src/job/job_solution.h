// Sequence and buffer of a job, which stand for vbar and density.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/program_state.h"
#include "job/toml_reader.h"
#include "solution/solution_constants.h"

namespace quorvane {

struct Job;

struct JobSolution {
  TableReader table;        // for messages
  std::string name;         // of the sequence
  SolutionRequest request;  // its temperature comes with the datasets
};

// The keys `sequence` and `buffer` of [constants], nothing if there are none; a sequence is a file,
// named from `folder`, or letters. Throws JobFault, for one beside vbar or density too, and
// FileFault.
std::optional<JobSolution> ReadSolution(TableReader& constants,
                                        const std::filesystem::path& folder);

// The temperature of the job on `module`: its own, or that of the experiment.
double TemperatureOf(const Job& job, const QuorvaneModule& module);

struct SolutionValues {
  std::optional<double> vbar;        // ml/g
  std::optional<double> density;     // g/ml
  std::vector<std::string> remarks;  // what they are and do not know, a line each
};

// What the keys give at `degC`. Throws JobFault for a temperature at which they give nothing.
SolutionValues ValuesAt(const JobSolution& solution, double degC);

// Takes these for the constants of the session.
void TakeValues(const SolutionValues& values, QuorvaneModule& module);

// What the keys say, for what the session knows of its sample.
void Remember(const JobSolution& solution, QuorvaneModule& module);

}  // namespace quorvane
