#include "job/job_solution.h"

#include <algorithm>
#include <iterator>

#include "base/number_format.h"
#include "base/text.h"
#include "core/page/constants.h"
#include "fit/fit_setup.h"
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
  try {
    if (sequence) request.letters = SequenceOf(*sequence, folder).letters;
  } catch (const SolutionFault& fault) {
    constants.Fail("sequence", fault.what());
  }
  try {
    if (buffer) request.buffer = ReadBuffer(*buffer);
  } catch (const SolutionFault& fault) {
    constants.Fail("buffer", fault.what());
  }
  return JobSolution{constants, request};
}

double TemperatureOf(const Job& job, const QuorvaneModule& module) {
  if (job.temperature) return *job.temperature;
  const DatasetStore& store = module.Store;
  if (module.Setup.NumFitSets > 0 || store.Datasets.empty()) return module.Setup.DegC;
  const auto used = std::find(store.UseData.begin(), store.UseData.end(), true);
  const auto first = static_cast<std::size_t>(
      used == store.UseData.end() ? 0 : std::distance(store.UseData.begin(), used));
  return ShownDegC(store.Datasets[first].Temperature);
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

}  // namespace quorvane
