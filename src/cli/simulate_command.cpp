#include "cli/simulate_command.h"

#include <ostream>

#include "base/files.h"
#include "cli/terminal_host.h"
#include "job/json_simulation.h"
#include "job/sim_job.h"

namespace quorvane {

namespace {

// All combinations of the lists, into a folder.
ExitStatus SimulateSeries(const SeriesPlan& plan, int model, const SimulateArguments& arguments,
                          const CommandStreams& streams) {
  if (arguments.output.empty()) {
    throw JobFault(arguments.job + ": lists make many files; -o FOLDER says where they go");
  }
  StopFlag stop;
  TerminalHost host(streams, true, stop);
  std::vector<SeriesFile> files;
  Json json = SimModelJson(model);
  json["columns"] = Json::array();
  const bool wanted = !arguments.json.empty();
  const std::string fault =
      RunSeries(plan, arguments.seed.value_or(SeedFromClock()), host,
                [&](const SeriesScan& scan, const Simulator& run, const SimReference& reference) {
                  files.push_back({scan.file, run.Text});
                  if (!wanted) return;
                  AddSimColumn(run, reference, json["columns"].emplace_back(SimScanJson(scan)));
                });
  streams.err << host.Log();
  if (!fault.empty()) {
    streams.err << fault << ". Nothing was written.\n";
    return ExitStatus::kNotDone;
  }
  WriteSeries(PathFromText(arguments.output), files);
  if (wanted) WriteWholeFile(PathFromText(arguments.json), JsonText(json));
  for (const SeriesFile& file : files) streams.out << file.name << '\n';
  return ExitStatus::kDone;
}

}  // namespace

ExitStatus RunSimulate(const SimulateArguments& arguments, const CommandStreams& streams) {
  const TomlFile file = ReadToml(PathFromText(arguments.job));
  TableReader job(file.name, "", file.table);
  const SimJob read = ReadSimJob(job);
  if (read.lists) return SimulateSeries(PlanOf(read, job), read.inputs.model, arguments, streams);

  Simulator simulator;
  simulator.Inputs = read.inputs;
  StopFlag stop;  // a simulation runs to its end; a second interrupt ends the program
  TerminalHost host(streams, true, stop);
  UniformSource uniform(arguments.seed.value_or(SeedFromClock()));
  const SimOutcome outcome = Simulate(simulator, uniform, host);
  streams.err << host.Log();  // "Singular matrix" and its like; standard output is the scan's
  if (!outcome.ok) return ExitStatus::kNotDone;
  if (arguments.output.empty()) {
    streams.out << simulator.Text;
  } else {
    WriteWholeFile(PathFromText(arguments.output), simulator.Text);
  }
  if (!arguments.json.empty()) {
    Json json = SimModelJson(read.inputs.model);
    AddSimColumn(simulator, outcome.reference, json);
    WriteWholeFile(PathFromText(arguments.json), JsonText(json));
  }
  return ExitStatus::kDone;
}

}  // namespace quorvane
