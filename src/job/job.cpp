#include "job/job.h"

#include "base/files.h"
#include "base/paths.h"
#include "core/page/confidence_level.h"
#include "core/page/constants.h"
#include "core/report/report_file.h"
#include "job/require.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

// Loading, in its order.
std::vector<JobLoad> ReadLoads(TableReader& root, const fs::path& folder) {
  std::vector<JobLoad> loads;
  for (TableReader& table : root.Tables("load")) {
    JobLoad load;
    const std::optional<std::string> file = table.Text("file");
    if (!file || file->empty()) table.Fail("file", "a file name is wanted");
    load.file = PathIn(folder, PathFromText(*file));
    LoadWords words;
    words.kind = table.Text("kind");
    words.centerpiece = table.Text("centerpiece");
    words.channels = table.Texts("channels");
    load.settings = LoadSettingsOf(words, load.file, table);
    load.channelsNamed = words.channels.has_value();
    load.blank = table.Flag("blank").value_or(false);
    table.RefuseUnknownKeys();
    loads.push_back(std::move(load));
  }
  return loads;
}

std::optional<double> ReadConstant(TableReader& table, const char* key, Constant constant) {
  const std::optional<double> value = table.Number(key);
  if (value) Require(table, key, RefusalOfConstant(constant, *value));
  return value;
}

void ReadConstants(TableReader& root, const fs::path& folder, Job& job) {
  std::optional<TableReader> table = root.Table("constants");
  if (!table) return;
  job.vbar = ReadConstant(*table, "vbar", Constant::kVbar);
  job.vbarB = ReadConstant(*table, "vbar_b", Constant::kVbarB);
  job.density = ReadConstant(*table, "density", Constant::kDensity);
  job.mcTolerance = ReadConstant(*table, "mc_tolerance", Constant::kMCTolerance);
  job.temperature = table->Number("temperature");
  job.solution = ReadSolution(*table, folder);
  table->RefuseUnknownKeys();
}

std::optional<JobConfidence> ReadConfidence(TableReader& root) {
  std::optional<TableReader> table = root.Table("confidence");
  if (!table) return std::nullopt;
  JobConfidence confidence(*table);
  confidence.percent = table->Number("percent").value_or(confidence.percent);
  const int method = table->Integer("method").value_or(2);
  confidence.parameters = table->Texts("parameters");
  table->RefuseUnknownKeys();
  Require(*table, "percent", RefusalOfLevel(confidence.percent));
  if (method != 1 && method != 2) table->Fail("method", "1 or 2 is wanted");
  confidence.method = static_cast<RatioMethod>(method);
  return confidence;
}

void ReadCrossCorrelation(TableReader& root, Job& job) {
  std::optional<TableReader> table = root.Table("cross_correlation");
  if (!table) return;
  job.crossCorrelation = true;
  job.criticalCoefficient = ReadConstant(*table, "critical", Constant::kCriticalCCC);
  table->RefuseUnknownKeys();
}

// A path in a job, relative to the job's folder.
std::optional<fs::path> ReadPath(TableReader& table, const char* key, const fs::path& folder) {
  const std::optional<std::string> text = table.Text(key);
  if (!text) return std::nullopt;
  if (text->empty()) table.Fail(key, "a path is wanted");
  return PathIn(folder, PathFromText(*text));
}

JobOutput ReadOutput(TableReader& root, const fs::path& folder) {
  JobOutput output;
  std::optional<TableReader> table = root.Table("output");
  if (!table) return output;
  output.archive = ReadPath(*table, "archive", folder);
  output.dataFolder = ReadPath(*table, "data_folder", folder);
  output.graphsFolder = ReadPath(*table, "graphs_folder", folder);
  output.table = ReadPath(*table, "table", folder);
  output.report = ReadPath(*table, "report", folder);
  if (output.report && !ReportFormatOf(*output.report)) {
    table->Fail("report", "a file name ending in .html or .pdf is wanted");
  }
  output.figure = ReadPath(*table, "figure", folder);
  if (output.figure && !PictureFormatOf(*output.figure)) {
    table->Fail("figure", "a file name ending in .pdf, .svg or .png is wanted");
  }
  if (const std::optional<std::string> format = table->Text("graphs_format")) {
    const std::optional<PictureFormat> known = PictureFormatFromText(*format);
    if (!known) table->Fail("graphs_format", "\"png\", \"svg\" or \"pdf\" is wanted");
    output.graphsFormat = *known;
  }
  table->RefuseUnknownKeys();
  return output;
}

}  // namespace

std::unique_ptr<ParsedJob> ReadJob(const fs::path& path) {
  return ParseJob(ReadToml(path), path.parent_path());
}

std::unique_ptr<ParsedJob> ParseJob(TomlFile file, const fs::path& folder) {
  auto parsed = std::make_unique<ParsedJob>();
  parsed->file = std::move(file);
  TableReader root(parsed->file.name, "", parsed->file.table);
  Job& job = parsed->job;
  job.archive = ReadPath(root, "archive", folder);
  job.channelsFile = ReadPath(root, "channels_file", folder);
  ReadConstants(root, folder, job);
  job.loads = ReadLoads(root, folder);
  job.datasets = ReadDatasets(root);
  job.fit = ReadFit(root);
  job.confidence = ReadConfidence(root);
  job.errors = ReadErrors(root);
  ReadCrossCorrelation(root, job);
  for (const char* table : {"confidence", "errors", "cross_correlation"}) {
    if (!job.fit && root.Has(table)) root.Fail(table, "it needs a [fit]");
  }
  job.output = ReadOutput(root, folder);
  root.RefuseUnknownKeys();
  return parsed;
}

}  // namespace quorvane
