#include "cli/scan_command.h"

#include <set>

#include "base/files.h"
#include "base/paths.h"
#include "cli/dataset_table.h"
#include "cli/series_table.h"
#include "cli/terminal_host.h"
#include "core/page/cell_files.h"
#include "job/job_steps.h"
#include "job/json_records.h"
#include "job/scan_job.h"
#include "scan/file_check.h"
#include "scan/file_list.h"
#include "scan/scan_series.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

// What the arguments name.
struct Sources {
  std::vector<fs::path> folders;
  std::vector<fs::path> named;  // anything else
};

Sources SourcesOf(const ScanArguments& arguments) {
  Sources sources;
  for (const std::string& argument : arguments.files) {
    const fs::path path = PathFromText(argument);
    (DirExists(path) ? sources.folders : sources.named).push_back(path);
  }
  return sources;
}

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
void PrintWarnings(const fs::path& file, const ScanLoadSettings& settings, std::ostream& err) {
  for (const std::string& warning : CheckFile(file, settings).warnings) {
    err << PathText(file) << ": " << warning << '\n';
  }
}

// Loads the files one after the other into the store.
ExitStatus LoadAll(const std::vector<fs::path>& files, const LoadWords& words,
                   const TableReader& options, QuorvaneModule& module, TerminalHost& host,
                   std::ostream& err) {
  ExitStatus status = ExitStatus::kDone;
  for (const fs::path& file : files) {
    const JobLoad load{.file = file,
                       .settings = LoadSettingsOf(words, file, options),
                       .channelsNamed = words.channels.has_value()};
    PrintWarnings(file, load.settings, err);
    const LoadResult result = LoadOne(load, module.Store, host);
    if (result.outcome == LoadOutcome::kUnreadable) {
      status = ExitStatus::kFileFault;
    } else if (result.datasets == 0 && status == ExitStatus::kDone) {
      status = ExitStatus::kNotDone;
    }
  }
  return status;
}

// One run of the command.
class ScanRun {
 public:
  ScanRun(const ScanArguments& arguments, const CommandStreams& streams)
      : arguments_(arguments),
        streams_(streams),
        sources_(SourcesOf(arguments)),
        words_(WordsOf(arguments)),
        options_("quorvane-cli scan", "", nothing_),
        host_(streams, true, module_.Stop) {}

  ExitStatus Run() {
    LoadSettingsOf(words_, {}, options_);  // refuses a word that is none
    LogHead(host_);
    ExitStatus status = sources_.named.empty() ? ExitStatus::kDone : Load();
    const bool listed = !sources_.folders.empty() || arguments_.last || !arguments_.job.empty();
    if (listed || !arguments_.json.empty()) List(listed);
    if (module_.Stop.Raised()) return ExitStatus::kNotDone;
    if (!sources_.folders.empty()) PrintSeriesTable(series_, streams_.out);
    if (!sources_.named.empty()) PrintDatasetTable(module_.Store.Datasets, streams_.out);
    if (listed && series_.empty()) {
      host_.ReportFailure("No scan was found.");
      if (status == ExitStatus::kDone) status = ExitStatus::kNotDone;
    } else if (!arguments_.job.empty()) {
      WriteJob();
    }
    if (!arguments_.json.empty()) WriteJson();
    return status;
  }

 private:
  ExitStatus Load() {
    LoadChannelFile(module_, FindChannelFile(streams_.programFolder));
    const ExitStatus status =
        LoadAll(sources_.named, words_, options_, module_, host_, streams_.err);
    const std::string drift = TemperatureDrift(module_.Store.Datasets);
    if (!drift.empty()) streams_.err << drift << '\n';
    return status;
  }

  // Each file once, though it may be named and lie in a folder too.
  std::vector<fs::path> Files() const {
    std::vector<fs::path> files = sources_.named;
    for (const fs::path& folder : sources_.folders) {
      const std::vector<fs::path> inside = ScanFilesIn(folder);
      files.insert(files.end(), inside.begin(), inside.end());
    }
    std::set<fs::path> seen;
    std::erase_if(files,
                  [&](const fs::path& file) { return !seen.insert(ResolvedPath(file)).second; });
    return files;
  }

  void List(bool foreignNamed) {
    constexpr double kPercent = 100.0;
    const auto serve = [&](double share) {
      host_.RunPendingEvents();
      host_.ReportProgress({.what = "Scans",
                            .iteration = static_cast<int>(kPercent * share),
                            .phase = SearchPhase::kParts,
                            .trial = kPercent});
    };
    const ListWork work{.stop = module_.Stop, .serve = serve};
    std::optional<FileKind> kind;
    if (words_.kind) kind = LoadSettingsOf(words_, {}, options_).kind;
    ScanList list = ListScans(Files(), kind, work);
    FindChanges(list.series, work);
    if (module_.Stop.Raised()) return;
    for (const ForeignFile& file : list.foreign) {
      if (foreignNamed) host_.ReportFailure(file.reason);
    }
    series_ = arguments_.last ? LastOfEach(std::move(list.series)) : std::move(list.series);
  }

  void WriteJob() {
    const fs::path path = PathFromText(arguments_.job);
    std::vector<fs::path> files;
    for (const ScanSeries& series : series_) {
      for (const ListedScan& scan : series.scans) files.push_back(scan.facts.path);
    }
    WriteWholeFile(path, ScanJobText(files, words_, path.parent_path()));
  }

  void WriteJson() {
    Json json = DocumentHead();
    if (!sources_.named.empty()) json["datasets"] = DatasetsJson(module_.Store.Datasets);
    json["series"] = SeriesJson(series_);
    if (!sources_.named.empty()) json["log"] = host_.Log();
    WriteWholeFile(PathFromText(arguments_.json), JsonText(json));
  }

  const ScanArguments& arguments_;
  const CommandStreams& streams_;
  Sources sources_;
  LoadWords words_;
  toml::table nothing_;
  TableReader options_;
  QuorvaneModule module_;
  TerminalHost host_;
  std::vector<ScanSeries> series_;
};

}  // namespace

ExitStatus RunScan(const ScanArguments& arguments, const CommandStreams& streams) {
  return ScanRun(arguments, streams).Run();
}

}  // namespace quorvane
