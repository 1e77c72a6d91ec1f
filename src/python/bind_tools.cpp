#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include "base/arithmetic.h"
#include "fit/models.h"
#include "job/json_plan.h"
#include "job/json_simulation.h"
#include "job/json_solution.h"
#include "job/plan_file.h"
#include "job/sim_job.h"
#include "python/bindings.h"
#include "python/fit_record.h"
#include "solution/sequence.h"

namespace quorvane {

namespace {

// A model of the fit stands at the same place in the catalogue of the simulator.
void TakeModelOfFit(TomlFile& file) {
  const auto name = file.table["model"].value<std::string>();
  if (!name || SimModelIndexOf(*name) >= 0) return;
  const Model* model = FindModel(*name);
  if (model != nullptr) file.table.insert_or_assign("model", model->index);
}

// The inputs of a scan that a dataset of it needs, defaults too, by their keys in a job.
void AddUsed(const SimInputs& inputs, Json& column) {
  Json& used = column["used"] = Json::object();
  for (const SimBox box : {SimBox::kSpeed, SimBox::kTemp, SimBox::kWaveL, SimBox::kRMS,
                           SimBox::kExtCoeff, SimBox::kLoadC}) {
    used[std::string(InfoOf(box).key)] = NumberIn(inputs, box);
  }
  for (const SimBox box : {SimBox::kExtCoeffB, SimBox::kLoadCB}) {
    if (UsesBox(inputs.model, box)) used[std::string(InfoOf(box).key)] = NumberIn(inputs, box);
  }
}

Json SimulateOne(const SimInputs& inputs, std::uint64_t seed, PythonHost& host) {
  Simulator simulator;
  simulator.Inputs = inputs;
  UniformSource uniform(seed);
  const SimOutcome outcome = Simulate(simulator, uniform, host);
  if (!outcome.ok) throw FitFault(outcome.error.empty() ? host.FailureText() : outcome.error);
  Json column;
  AddSimColumn(simulator, outcome.reference, column);
  AddUsed(inputs, column);
  return column;
}

Json SimulateAll(const SeriesPlan& plan, std::uint64_t seed, PythonHost& host) {
  Json columns = Json::array();
  const std::string fault =
      RunSeries(plan, seed, host,
                [&](const SeriesScan& scan, const Simulator& run, const SimReference& reference) {
                  AddSimColumn(run, reference, columns.emplace_back(SimScanJson(scan)));
                  AddUsed(scan.inputs, columns.back());
                });
  if (!fault.empty()) throw FitFault(fault);
  return columns;
}

// The column of a simulation, or a list of those of a series.
py::object SimulateJob(const py::dict& inputs, std::optional<std::uint64_t> seed) {
  TomlFile file = TomlOf(inputs, "simulate");
  TakeModelOfFit(file);
  TableReader table(file.name, "", file.table);
  const SimJob job = ReadSimJob(table);
  const std::uint64_t used = seed.value_or(SeedFromClock());
  std::optional<SeriesPlan> plan;
  if (job.lists) plan = PlanOf(job, table);
  return ObjectOf(RunFree([&](QuorvaneModule&, PythonHost& host) {
    return plan ? SimulateAll(*plan, used, host) : SimulateOne(job.inputs, used, host);
  }));
}

py::object Plan(const py::dict& values) {
  const ExperimentPlan plan = PlanOf(TomlOf(values, "plan"), {});
  return ObjectOf(RunFree([&](QuorvaneModule& module, PythonHost& host) {
    const WorkedPlan worked = WorkOut(plan, module.Stop, host);
    return PlanJson(plan, worked.result, worked.check);
  }));
}

py::object Solution(const std::optional<std::string>& sequence,
                    const std::optional<int>& disulphides, const std::optional<std::string>& buffer,
                    double degC) {
  SolutionRequest request;
  if (sequence) request.letters = SequenceOf(*sequence, {}).letters;
  request.disulphides = disulphides;
  if (buffer) request.buffer = ReadBuffer(*buffer);
  request.degC = degC;
  return ObjectOf(SolutionJson(request, CalcSolution(request)));
}

}  // namespace

void BindTools(py::module_& m) {
  m.def("simulate", SimulateJob);
  m.def("plan", Plan);
  m.def("solution", Solution);
}

}  // namespace quorvane
