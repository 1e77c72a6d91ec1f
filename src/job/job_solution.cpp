#include "job/job_solution.h"

#include "base/number_format.h"
#include "base/text.h"
#include "core/page/constants.h"
#include "core/page/solution_use.h"
#include "job/job.h"
#include "job/require.h"
#include "solution/sequence.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

// The text of a key that stands for the constant under another one.
std::optional<std::string> TextInPlaceOf(const char* constant, const char* key,
                                         TableReader& table) {
  std::optional<std::string> text = table.Text(key);
  if (text && table.Has(constant)) {
    table.Fail(key, std::string("it stands for ") + constant + "; only one of them can");
  }
  return text;
}

}  // namespace

std::optional<JobSolution> ReadSolution(TableReader& constants,
                                        const std::filesystem::path& folder) {
  const std::optional<std::string> sequence = TextInPlaceOf("vbar", "sequence", constants);
  const std::optional<std::string> buffer = TextInPlaceOf("density", "buffer", constants);
  if (!sequence && !buffer) return std::nullopt;
  SolutionRequest request;
  std::string name;
  try {
    if (sequence) {
      ProteinSequence read = SequenceOf(*sequence, folder);
      name = std::move(read.name);
      request.letters = std::move(read.letters);
    }
  } catch (const SolutionFault& fault) {
    constants.Fail("sequence", fault.what());
  }
  try {
    if (buffer) request.buffer = ReadBuffer(*buffer);
  } catch (const SolutionFault& fault) {
    constants.Fail("buffer", fault.what());
  }
  return JobSolution{constants, name, request};
}

double TemperatureOf(const Job& job, const QuorvaneModule& module) {
  return job.temperature ? *job.temperature : ExperimentDegC(module);
}

SolutionValues ValuesAt(const JobSolution& solution, double degC) {
  SolutionRequest request = solution.request;
  request.degC = degC;
  SolutionConstants constants;
  try {
    constants = CalcSolution(request);
  } catch (const SolutionFault& fault) {
    solution.table.Fail(request.letters ? "sequence" : "buffer", fault.what());
  }
  SolutionValues values;
  const std::string at = " at " + ShortestText(degC) + " deg C";
  if (constants.protein) {
    values.vbar = constants.protein->vbar;
    values.remarks.push_back("vbar " + FormatNumber(*values.vbar, "0.0000") + " ml/g of " +
                             std::to_string(constants.protein->residues) + " residues" + at);
  }
  if (constants.density) {
    values.density = constants.density;
    values.remarks.push_back("density " + FormatNumber(*values.density, "0.00000") + " g/ml of " +
                             BufferText(*request.buffer) + at);
  }
  values.remarks.insert(values.remarks.end(), constants.remarks.begin(), constants.remarks.end());
  return values;
}

void TakeValues(const SolutionValues& values, QuorvaneModule& module) {
  if (values.vbar) Require(SetConstant(module, Constant::kVbar, *values.vbar));
  if (values.density) Require(SetConstant(module, Constant::kDensity, *values.density));
}

void Remember(const JobSolution& solution, QuorvaneModule& module) {
  SolutionEntry& entry = module.Solution;
  if (solution.request.letters) {
    entry.name = solution.name;
    entry.letters = *solution.request.letters;
    entry.disulphides.reset();
  }
  if (solution.request.buffer) entry.buffer = *solution.request.buffer;
}

}  // namespace quorvane
