#include "cli/simulate_command.h"

#include <algorithm>
#include <array>
#include <map>
#include <ostream>

#include "base/files.h"
#include "cli/json_records.h"
#include "cli/terminal_host.h"
#include "job/toml_reader.h"
#include "sim/sim_series.h"

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

// The inputs that a series may have in lists.
constexpr std::array<SimBox, 3> kListed = {SimBox::kSpeed, SimBox::kLoadC, SimBox::kLoadCB};

// The lists of a series; an input without one has its single value. Nothing if there is no list.
std::optional<SeriesLists> ReadLists(TableReader& job, const SimInputs& inputs) {
  const auto listed = [&](SimBox box) { return job.IsList(InfoOf(box).key); };
  if (std::none_of(kListed.begin(), kListed.end(), listed)) return std::nullopt;
  const auto entries = [&](SimBox box) {
    return listed(box) ? job.NumbersOrTexts(InfoOf(box).key)
                       : std::vector<std::string>{inputs.Text(box)};
  };
  return SeriesLists{entries(SimBox::kSpeed), entries(SimBox::kLoadC), entries(SimBox::kLoadCB)};
}

void ReadEntries(TableReader& job, SimInputs& inputs) {
  std::map<SimBox, std::string> entries;
  for (int k = 0; k < kSimBoxes; ++k) {
    const auto box = static_cast<SimBox>(k);
    const bool mayBeList = std::find(kListed.begin(), kListed.end(), box) != kListed.end();
    if (mayBeList && job.IsList(InfoOf(box).key)) continue;
    if (const std::optional<std::string> text = job.NumberOrText(InfoOf(box).key)) {
      entries[box] = *text;
    }
  }
  if (const std::optional<EntryRefusal> refusal = StoreEntries(inputs, entries)) {
    job.Fail(InfoOf(refusal->box).key, std::string(refusal->message));
  }
}

Json ModelJson(int index) {
  Json json = DocumentHead();
  json["model"] = SimModelOf(index).caption;
  json["model_index"] = index;
  return json;
}

// Adds the profile of a run to `json`.
void AddColumn(const Simulator& simulator, const SimReference& reference, Json& json) {
  const SimModel& model = SimModelOf(simulator.Inputs.model);
  const int n = simulator.GridPoints;
  const auto list = [n](const GridArray<double>& values) {
    Json array = Json::array();
    for (int i = 0; i < n; ++i) array.push_back(values[i]);
    return array;
  };
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
}

Json ScanJson(const SeriesScan& scan) {
  Json json;
  json["file"] = scan.file;
  json["cell"] = scan.cell;
  json["speed"] = NumberIn(scan.inputs, SimBox::kSpeed);
  json["load"] = NumberIn(scan.inputs, SimBox::kLoadC);
  if (UsesBox(scan.inputs.model, SimBox::kLoadCB)) {
    json["load_b"] = NumberIn(scan.inputs, SimBox::kLoadCB);
  }
  return json;
}

// All combinations of the lists, into a folder.
ExitStatus SimulateSeries(const TableReader& job, const SimInputs& inputs, const SeriesLists& lists,
                          const SimulateArguments& arguments, const CommandStreams& streams) {
  const SeriesPlan plan = PlanSeries(inputs, lists);
  if (plan.box) job.Fail(InfoOf(*plan.box).key, plan.refusal);
  if (arguments.output.empty()) {
    throw JobFault(arguments.job + ": lists make many files; -o FOLDER says where they go");
  }
  StopFlag stop;
  TerminalHost host(streams, true, stop);
  std::vector<SeriesFile> files;
  Json json = ModelJson(inputs.model);
  json["columns"] = Json::array();
  const bool wanted = !arguments.json.empty();
  const std::string fault =
      RunSeries(plan, arguments.seed.value_or(SeedFromClock()), host,
                [&](const SeriesScan& scan, const Simulator& run, const SimReference& reference) {
                  files.push_back({scan.file, run.Text});
                  if (!wanted) return;
                  AddColumn(run, reference, json["columns"].emplace_back(ScanJson(scan)));
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
  Simulator simulator;
  SimInputs& inputs = simulator.Inputs;
  inputs.model = ReadModel(job);
  SetKDisplay(inputs, ReadKDisplay(job));
  inputs.saveAs = ReadFileKind(job);
  ReadEntries(job, inputs);
  const std::optional<SeriesLists> lists = ReadLists(job, inputs);
  job.RefuseUnknownKeys();
  if (lists) return SimulateSeries(job, inputs, *lists, arguments, streams);

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
    Json json = ModelJson(inputs.model);
    AddColumn(simulator, outcome.reference, json);
    WriteWholeFile(PathFromText(arguments.json), JsonText(json));
  }
  return ExitStatus::kDone;
}

}  // namespace quorvane
