#include "cli/archive_command.h"

#include <cmath>
#include <ostream>

#include "archive/experiment_file.h"
#include "archive/experiment_session.h"
#include "base/files.h"
#include "base/number_format.h"
#include "base/text.h"
#include "cli/dataset_table.h"
#include "cli/terminal_host.h"
#include "fit/models.h"
#include "job/json_records.h"
#include "job/page_setup.h"

namespace quorvane {

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

// What a file holds, as it stands there.
struct Contents {
  std::int32_t layout;
  std::string directory;
  FitPage page;
  std::vector<Dataset> datasets;
};

Contents ContentsOf(const Experiment& experiment) {
  return {experiment.layout, Cp1252ToUtf8(Trim(experiment.directory.View())), experiment.FitPage,
          experiment.Datasets};
}

// The title of a kept graph, empty for one of another program.
std::string TitleOf(const Bytes& graph) {
  try {
    return ParseChart(graph).title;
  } catch (const ByteFault&) {
    return {};
  }
}

const char* LayoutName(const Contents& contents) {
  return contents.layout == kOldLayout ? "old" : "current";
}

void PrintExperiment(const Contents& contents, const std::vector<Bytes>& graphs,
                     const std::string& log, std::ostream& out) {
  out << "Layout: " << LayoutName(contents) << " (" << contents.layout << ")\n"
      << "Directory: " << contents.directory << "\n\nParameter page\n";
  for (const auto& [name, value] : PageFields(contents.page)) {
    out << "  " << name << " = " << (std::isfinite(value) ? FormatParam(value) : "no number")
        << '\n';
  }
  out << "\nDatasets\n";
  PrintDatasetTable(contents.datasets, out);
  out << "\nGraphs: " << graphs.size() << '\n';
  for (const Bytes& graph : graphs) {
    const std::string title = TitleOf(graph);
    out << "  " << (title.empty() ? "(a chart of another program)" : title) << ", " << graph.size()
        << " bytes\n";
  }
  out << "\nLog\n" << log;
}

Json ExperimentJson(const Contents& contents, const std::vector<Bytes>& graphs,
                    const std::string& log) {
  Json json = {{"layout", LayoutName(contents)},
               {"version_marker", contents.layout},
               {"directory", contents.directory}};
  for (const auto& [name, value] : PageFields(contents.page)) {
    json["fit_page"][std::string(name)] = value;
  }
  json["datasets"] = DatasetsJson(contents.datasets);
  Json& list = json["graphs"] = Json::array();
  for (const Bytes& graph : graphs) {
    list.push_back(
        {{"number", list.size() + 1}, {"bytes", graph.size()}, {"title", TitleOf(graph)}});
  }
  json["log"] = log;
  return json;
}

}  // namespace

ExitStatus RunArchive(const ArchiveArguments& arguments, const CommandStreams& streams) {
  ReadExperiment read = Read(arguments.file);
  const Contents contents = ContentsOf(read.experiment);
  // Kept as it is: what it says of cell geometries may not be known here.
  const std::string setup =
      IsSetupText(read.experiment.comment) ? read.experiment.comment : std::string();
  QuorvaneModule module;
  TerminalHost host(streams, true, module.Stop);
  const std::string remark =
      TakeUpExperiment(module, std::move(read), PathFromText(arguments.file), host);
  if (!remark.empty()) host.ReportFailure(remark);
  PrintExperiment(contents, module.GraphStreams, host.Log(), streams.out);
  if (!arguments.json.empty()) {
    WriteWholeFile(PathFromText(arguments.json),
                   JsonText(ExperimentJson(contents, module.GraphStreams, host.Log())));
  }
  if (arguments.saveAs.empty()) return ExitStatus::kDone;
  return SaveSession(PathFromText(arguments.saveAs), module, host, streams, &setup);
}

ExitStatus SaveSession(const std::filesystem::path& path, QuorvaneModule& module,
                       TerminalHost& host, const CommandStreams& streams,
                       const std::string* comment) {
  const FileLock lock = LockArchive(path);
  if (!lock.Holder().empty()) {
    streams.err << PathText(path) << " is open in another Quorvane (" << lock.Holder()
                << "); it is replaced all the same.\n";
  }
  if (SaveExperiment(module, path, host, comment)) return ExitStatus::kDone;
  return module.Store.Datasets.empty() ? ExitStatus::kNotDone : ExitStatus::kFileFault;
}

}  // namespace quorvane
