#include "cli/simulate_command.h"

#include <map>
#include <ostream>

#include "base/files.h"
#include "cli/json_records.h"
#include "cli/terminal_host.h"
#include "job/toml_reader.h"
#include "sim/simulate.h"

namespace quorvane {

namespace {

int ReadModel(TableReader& job) {
  const std::optional<std::variant<int, std::string>> model = job.IntegerOrText("model");
  if (!model) job.Fail("model", "the caption or the index of a model is wanted");
  const int index = std::holds_alternative<int>(*model)
                        ? std::get<int>(*model)
                        : SimModelIndexOf(std::get<std::string>(*model));
  if (index >= 0 && index < kSimModels) return index;
  std::string captions;
  for (int k = 0; k < kSimModels; ++k) captions += "\n  " + std::string(SimModelOf(k).caption);
  job.Fail("model", "there is no such model; the models, by index from 0, are:" + captions);
}

KDisplay ReadKDisplay(TableReader& job) {
  const std::string word = job.Text("k_display").value_or("ln");
  if (word == "ln") return KDisplay::kLn;
  if (word == "log10") return KDisplay::kLog10;
  if (word == "k") return KDisplay::kPlain;
  job.Fail("k_display", "\"ln\", \"log10\" or \"k\" is wanted");
}

SimFileKind ReadFileKind(TableReader& job) {
  const std::string word = job.Text("save_as").value_or("IP8");
  if (word == "IP8") return SimFileKind::kIP8;
  if (word == "RA8") return SimFileKind::kRA8;
  job.Fail("save_as", "\"IP8\" or \"RA8\" is wanted");
}

void ReadEntries(TableReader& job, SimInputs& inputs) {
  std::map<SimBox, std::string> entries;
  for (int k = 0; k < kSimBoxes; ++k) {
    const auto box = static_cast<SimBox>(k);
    if (const std::optional<std::string> text = job.NumberOrText(InfoOf(box).key)) {
      entries[box] = *text;
    }
  }
  if (const std::optional<EntryRefusal> refusal = StoreEntries(inputs, entries)) {
    job.Fail(InfoOf(refusal->box).key, std::string(refusal->message));
  }
}

Json ColumnJson(const Simulator& simulator, const SimReference& reference) {
  const SimModel& model = SimModelOf(simulator.Inputs.model);
  const int n = simulator.GridPoints;
  const auto list = [n](const GridArray<double>& values) {
    Json array = Json::array();
    for (int i = 0; i < n; ++i) array.push_back(values[i]);
    return array;
  };
  Json json = DocumentHead();
  json["model"] = model.caption;
  json["model_index"] = simulator.Inputs.model;
  json["points"] = n;
  json["r"] = list(simulator.Column.r);
  json["signal"] = list(simulator.Column.signal);
  if (model.TotalConcentration()) json["conc"] = list(simulator.Column.conc);
  if (!model.species.empty()) {
    Json& rows = json["species"] = Json::array();
    for (int i = 0; i < n; ++i) {
      const auto& row = simulator.Column.species[i];
      rows.push_back(std::vector<double>(
          row.begin(), row.begin() + static_cast<std::ptrdiff_t>(model.species.size())));
    }
  }
  json["ref_a"] = reference.a;
  json["ref_b"] = reference.b;
  json["text"] = simulator.Text;
  return json;
}

}  // namespace

ExitStatus RunSimulate(const SimulateArguments& arguments, const CommandStreams& streams) {
  const TomlFile file = ReadToml(PathFromText(arguments.job));
  TableReader job(file.name, "", file.table);
  Simulator simulator;
  SimInputs& inputs = simulator.Inputs;
  inputs.model = ReadModel(job);
  SetKDisplay(inputs, ReadKDisplay(job));
  inputs.saveAs = ReadFileKind(job);
  ReadEntries(job, inputs);
  job.RefuseUnknownKeys();

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
    WriteWholeFile(PathFromText(arguments.json),
                   JsonText(ColumnJson(simulator, outcome.reference)));
  }
  return ExitStatus::kDone;
}

}  // namespace quorvane
