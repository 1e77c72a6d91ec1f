#include "cli/scan_command.h"

#include "base/files.h"
#include "cli/dataset_table.h"
#include "cli/json_records.h"
#include "cli/terminal_host.h"
#include "core/page/cell_files.h"
#include "job/job_steps.h"
#include "scan/file_check.h"

namespace quorvane {

namespace {

std::vector<std::string> SplitAtCommas(const std::string& list) {
  std::vector<std::string> parts(1);
  for (const char c : list) {
    if (c == ',') {
      parts.emplace_back();
    } else if (c != ' ') {
      parts.back() += c;
    }
  }
  return parts;
}

LoadWords WordsOf(const ScanArguments& arguments) {
  LoadWords words;
  if (!arguments.kind.empty()) words.kind = arguments.kind;
  if (!arguments.centerpiece.empty()) words.centerpiece = arguments.centerpiece;
  if (!arguments.channels.empty()) words.channels = SplitAtCommas(arguments.channels);
  return words;
}

// What the window warns of before a load. A file that cannot be read is told by the load itself.
void PrintWarnings(const std::string& file, const ScanLoadSettings& settings, std::ostream& err) {
  for (const std::string& warning : CheckFile(PathFromText(file), settings).warnings) {
    err << file << ": " << warning << '\n';
  }
}

}  // namespace

ExitStatus RunScan(const ScanArguments& arguments, const CommandStreams& streams) {
  const toml::table nothing;
  const TableReader options("quorvane-cli scan", "", nothing);
  const LoadWords words = WordsOf(arguments);
  QuorvaneModule module;
  TerminalHost host(streams, true, module.Stop);
  LoadChannelFile(module, FindChannelFile(streams.programFolder));
  LogHead(host);
  ExitStatus status = ExitStatus::kDone;
  for (const std::string& file : arguments.files) {
    const std::filesystem::path path = PathFromText(file);
    const JobLoad load{.file = path,
                       .settings = LoadSettingsOf(words, path, options),
                       .channelsNamed = words.channels.has_value()};
    PrintWarnings(file, load.settings, streams.err);
    const LoadResult result = LoadOne(load, module.Store, host);
    if (result.outcome == LoadOutcome::kUnreadable) {
      status = ExitStatus::kFileFault;
    } else if (result.datasets == 0 && status == ExitStatus::kDone) {
      status = ExitStatus::kNotDone;
    }
  }
  const std::string drift = TemperatureDrift(module.Store.Datasets);
  if (!drift.empty()) streams.err << drift << '\n';
  PrintDatasetTable(module.Store.Datasets, streams.out);
  if (!arguments.json.empty()) {
    Json json = DocumentHead();
    json["datasets"] = DatasetsJson(module.Store.Datasets);
    json["log"] = host.Log();
    WriteWholeFile(PathFromText(arguments.json), JsonText(json));
  }
  return status;
}

}  // namespace quorvane
