#include "cli/archive_command.h"

#include <cmath>
#include <ostream>

#include "archive/experiment_file.h"
#include "archive/experiment_session.h"
#include "base/files.h"
#include "base/number_format.h"
#include "base/text.h"
#include "cli/dataset_table.h"
#include "cli/json_records.h"
#include "cli/log_document.h"
#include "fit/model_parameters.h"

namespace {

// The fields of a page with their names.
std::vector<std::pair<std::string_view, double>> PageFields(const FitPage& page) {
  std::vector<std::pair<std::string_view, double>> fields;
  for (const SharedParameter& parameter : SharedParameters) {
    fields.emplace_back(parameter.name, page.*parameter.field);
  }
  fields.emplace_back("Vbar", page.Vbar);
  fields.emplace_back("VbarB", page.VbarB);
  fields.emplace_back("Density", page.Density);
  fields.emplace_back("ModelIndex", page.ModelIndex);
  return fields;
}

ReadExperiment Read(const std::string& file) {
  try {
    return ReadExperimentFile(PathFromText(file));
  } catch (const ArchiveFault& fault) {
    throw FileFault(file + " is not a valid saved experiment file!\n" + fault.what());
  }
}

std::string DirectoryText(const Experiment& experiment) {
  return Cp1252ToUtf8(Trim(experiment.directory.View()));
}

// The title of a kept graph, empty for one of another program.
std::string TitleOf(const Bytes& graph) {
  try {
    return ParseChart(graph).title;
  } catch (const ByteFault&) {
    return {};
  }
}

const char* LayoutName(const Experiment& experiment) {
  return experiment.layout == kOldLayout ? "old" : "current";
}

void PrintExperiment(const Experiment& experiment, const LogDocument& log, std::ostream& out) {
  out << "Layout: " << LayoutName(experiment) << " (" << experiment.layout << ")\n"
      << "Directory: " << DirectoryText(experiment) << "\n\nParameter page\n";
  for (const auto& [name, value] : PageFields(experiment.FitPage)) {
    out << "  " << name << " = " << (std::isfinite(value) ? FormatParam(value) : "no number")
        << '\n';
  }
  out << "\nDatasets\n";
  PrintDatasetTable(experiment.Datasets, out);
  out << "\nGraphs: " << experiment.GraphStreams.size() << '\n';
  for (const Bytes& graph : experiment.GraphStreams) {
    const std::string title = TitleOf(graph);
    out << "  " << (title.empty() ? "(a chart of another program)" : title) << ", " << graph.size()
        << " bytes\n";
  }
  out << "\nLog\n" << log.Text();
}

Json ExperimentJson(const Experiment& experiment, const LogDocument& log) {
  Json json = {{"layout", LayoutName(experiment)},
               {"version_marker", experiment.layout},
               {"directory", DirectoryText(experiment)}};
  for (const auto& [name, value] : PageFields(experiment.FitPage)) {
    json["fit_page"][std::string(name)] = value;
  }
  json["datasets"] = DatasetsJson(experiment.Datasets);
  Json& graphs = json["graphs"] = Json::array();
  for (const Bytes& graph : experiment.GraphStreams) {
    graphs.push_back(
        {{"number", graphs.size() + 1}, {"bytes", graph.size()}, {"title", TitleOf(graph)}});
  }
  json["log"] = log.Text();
  return json;
}

}  // namespace

ExitStatus RunArchive(const ArchiveArguments& arguments, const CommandStreams& streams) {
  const ReadExperiment read = Read(arguments.file);
  for (const std::string& warning : read.warnings) streams.err << warning << '\n';
  LogDocument log;
  if (!log.Load(read.experiment.log)) streams.err << "The log is no rich text.\n";
  PrintExperiment(read.experiment, log, streams.out);
  if (!arguments.json.empty()) {
    WriteWholeFile(PathFromText(arguments.json), JsonText(ExperimentJson(read.experiment, log)));
  }
  if (!arguments.saveAs.empty()) {
    const auto path = PathFromText(arguments.saveAs);
    const FileLock lock = LockForWriting(path, streams.err);
    WriteExperimentFile(path, read.experiment);
  }
  return ExitStatus::kDone;
}

FileLock LockForWriting(const std::filesystem::path& path, std::ostream& err) {
  FileLock lock = LockArchive(path);
  if (!lock.Holder().empty()) {
    err << PathText(path) << " is open in another Quorvane (" << lock.Holder()
        << "); it is replaced all the same.\n";
  }
  return lock;
}
