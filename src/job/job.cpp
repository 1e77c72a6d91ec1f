#include "job/job.h"

#include <algorithm>

#include "base/files.h"
#include "base/text.h"
#include "core/page/confidence_level.h"
#include "core/page/constants.h"
#include "core/page/shared_values.h"
#include "core/report/report_file.h"
#include "fit/models.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

FileKind KindOf(const LoadWords& words, const fs::path& file, const TableReader& table) {
  if (words.kind) {
    constexpr std::array<std::pair<const char*, FileKind>, 4> kKinds = {{{"IP,RA", FileKind::kIpRa},
                                                                         {"DAT", FileKind::kDat},
                                                                         {"FI", FileKind::kFi},
                                                                         {"EL", FileKind::kEl}}};
    for (const auto& [name, kind] : kKinds) {
      if (*words.kind == name) return kind;
    }
    table.Fail("kind", "\"IP,RA\", \"DAT\", \"FI\" or \"EL\" is wanted");
  }
  const std::string extension = ToLower(PathText(file.extension()));
  if (extension.starts_with(".ip") || extension.starts_with(".ra")) return FileKind::kIpRa;
  if (extension.starts_with(".fi") || extension.starts_with(".fl")) return FileKind::kFi;
  if (extension.starts_with(".el")) return FileKind::kEl;
  return FileKind::kDat;
}

Centerpiece CenterpieceOf(const LoadWords& words, const TableReader& table) {
  if (!words.centerpiece || *words.centerpiece == "2 channels") return Centerpiece::kTwoChannels;
  if (*words.centerpiece == "6 channels") return Centerpiece::kSixChannels;
  if (*words.centerpiece == "8 channels") return Centerpiece::kEightChannels;
  table.Fail("centerpiece", "\"2 channels\", \"6 channels\" or \"8 channels\" is wanted");
}

// Loading, in its order.
std::vector<JobLoad> ReadLoads(TableReader& root, const fs::path& folder) {
  std::vector<JobLoad> loads;
  for (TableReader& table : root.Tables("load")) {
    JobLoad load;
    const std::optional<std::string> file = table.Text("file");
    if (!file || file->empty()) table.Fail("file", "a file name is wanted");
    load.file = folder / PathFromText(*file);
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

std::optional<int> Position(TableReader& table, const char* key) {
  const std::optional<int> number = table.Integer(key);
  if (number && *number < 1) table.Fail(key, "dataset numbers count from 1");
  return number;
}

// What stands in the row of a dataset on the page.
void ReadPageValues(TableReader& table, JobDataset& dataset) {
  dataset.speed = table.Integer("speed");
  for (const RowValue& value : RowValues) {
    const std::optional<double> number = table.Number(value.name);
    if (number) dataset.values[&value] = *number;
  }
  for (const RowCheck& check : RowChecks) {
    const std::optional<bool> checked = table.Flag(check.name);
    if (checked) dataset.checks[&check] = *checked;
  }
}

void CheckPageValues(const JobDataset& dataset) {
  if (dataset.speed) Require(dataset.table, "speed", RefusalOfSpeed(*dataset.speed));
  for (const auto& [value, number] : dataset.values) {
    Require(dataset.table, value->name, RefusalOfValue(*value, number));
  }
}

JobDataset ReadDataset(TableReader& table) {
  JobDataset dataset(table);
  const std::optional<int> number = Position(table, "number");
  if (!number) table.Fail("number", "the number of the dataset is wanted");
  dataset.number = *number;
  dataset.name = table.Text("name");
  dataset.use = table.Flag("use");
  dataset.subtractBlank = Position(table, "subtract_blank");
  dataset.deleteOutside = table.Range("delete_outside");
  dataset.deleteRanges = table.Ranges("delete");
  dataset.restoreRanges = table.Ranges("restore");
  ReadPageValues(table, dataset);
  dataset.linkTo = Position(table, "link_to");
  dataset.cellGeometry = table.Integer("cell_geometry");
  table.RefuseUnknownKeys();
  CheckPageValues(dataset);
  return dataset;
}

std::vector<JobDataset> ReadDatasets(TableReader& root) {
  std::vector<JobDataset> datasets;
  for (TableReader& table : root.Tables("dataset")) {
    JobDataset dataset = ReadDataset(table);
    for (const JobDataset& earlier : datasets) {
      if (earlier.number == dataset.number)
        table.Fail("number", "this dataset has a table already");
    }
    datasets.push_back(std::move(dataset));
  }
  return datasets;
}

const Model& ReadModel(TableReader& table) {
  const std::optional<std::variant<int, std::string>> model = table.IntegerOrText("model");
  if (!model) table.Fail("model", "the name or the index of a model is wanted");
  const std::span<const Model> known = Models();
  const auto chosen = std::find_if(known.begin(), known.end(), [&](const Model& entry) {
    return std::holds_alternative<int>(*model) ? entry.index == std::get<int>(*model)
                                               : entry.name == std::get<std::string>(*model);
  });
  if (chosen != known.end()) return *chosen;
  std::string names;
  for (const std::string_view name : ModelNames()) names += "\n  " + std::string(name);
  table.Fail("model", "there is no such model; the models, by index from 0, are:" + names);
}

std::map<const SharedParameter*, JobParameter> ReadParameters(TableReader& fit) {
  std::map<const SharedParameter*, JobParameter> parameters;
  std::optional<TableReader> table = fit.Table("parameters");
  if (!table) return parameters;
  for (const SharedParameter& parameter : SharedParameters) {
    std::optional<TableReader> entry = table->Table(parameter.name);
    if (!entry) continue;
    parameters[&parameter] = {entry->Number("start"), entry->Flag("fit")};
    entry->RefuseUnknownKeys();
  }
  table->RefuseUnknownKeys();
  return parameters;
}

// Rules between the switches of [fit].
void CheckFit(const JobFit& fit) {
  if (!fit.constrainKRatios) return;
  Require(fit.table, "constrain_k_ratios", RefusalOfConstraint(*fit.model));
  for (const auto& [parameter, entry] : fit.parameters) {
    if (!MayBeRatio(*parameter)) continue;
    Refusal refusal;
    if (entry.fit.value_or(false)) refusal = RefusalOfFitting(*parameter, true);
    if (!refusal && entry.start) refusal = RefusalOfRatio(*parameter, *entry.start);
    if (refusal) {
      fit.table.Fail("parameters", std::string(parameter->name) + ": " + LineOf(refusal));
    }
  }
}

// "starts" and "seed" of [fit].
std::optional<MinimumRequest> ReadMinima(TableReader& table) {
  constexpr int kMostStarts = 10000;
  const std::optional<int> starts = table.Integer("starts");
  const std::optional<int> seed = table.Integer("seed");
  if (!starts && seed) table.Fail("seed", "it is that of the starts, which are missing");
  if (!starts) return std::nullopt;
  if (*starts < 1 || *starts > kMostStarts) table.Fail("starts", "1 to 10000 is wanted");
  MinimumRequest request{.starts = *starts};
  if (seed && *seed < 0) table.Fail("seed", "it must not be negative");
  if (seed) request.seed = static_cast<std::uint64_t>(*seed);
  return request;
}

void ReadRepeat(TableReader& table, JobFit& fit) {
  const auto repeat = table.IntegerOrText("repeat");
  if (!repeat) return;
  if (const int* times = std::get_if<int>(&*repeat)) {
    if (*times < 1) table.Fail("repeat", "it must be at least 1");
    fit.repeat = *times;
    return;
  }
  if (std::get<std::string>(*repeat) != "rest") {
    table.Fail("repeat", "a number of times or \"rest\" is wanted");
  }
  fit.toRest = true;
}

std::optional<JobFit> ReadFit(TableReader& root) {
  std::optional<TableReader> table = root.Table("fit");
  if (!table) return std::nullopt;
  JobFit fit(*table);
  fit.model = &ReadModel(*table);
  fit.constrainKRatios = table->Flag("constrain_k_ratios").value_or(false);
  fit.useMassConservation = table->Flag("use_mass_conservation").value_or(false);
  fit.calcLoadingConcs = table->Flag("calc_loading_concs").value_or(false);
  fit.timeLimit = table->Number("time_limit");
  ReadRepeat(*table, fit);
  fit.minima = ReadMinima(*table);
  fit.parameters = ReadParameters(*table);
  table->RefuseUnknownKeys();
  if (fit.timeLimit && !(*fit.timeLimit > 0.0)) {
    table->Fail("time_limit", "the number of seconds must be greater than 0");
  }
  CheckFit(fit);
  return fit;
}

std::optional<double> ReadConstant(TableReader& table, const char* key, Constant constant) {
  const std::optional<double> value = table.Number(key);
  if (value) Require(table, key, RefusalOfConstant(constant, *value));
  return value;
}

void ReadConstants(TableReader& root, Job& job) {
  std::optional<TableReader> table = root.Table("constants");
  if (!table) return;
  job.vbar = ReadConstant(*table, "vbar", Constant::kVbar);
  job.vbarB = ReadConstant(*table, "vbar_b", Constant::kVbarB);
  job.density = ReadConstant(*table, "density", Constant::kDensity);
  job.mcTolerance = ReadConstant(*table, "mc_tolerance", Constant::kMCTolerance);
  job.temperature = table->Number("temperature");
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
  return folder / PathFromText(*text);
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
  if (const std::optional<std::string> format = table->Text("graphs_format")) {
    const std::optional<PictureFormat> known = PictureFormatFromText(*format);
    if (!known) table->Fail("graphs_format", "\"png\", \"svg\" or \"pdf\" is wanted");
    output.graphsFormat = *known;
  }
  table->RefuseUnknownKeys();
  return output;
}

}  // namespace

void Require(const TableReader& table, const char* key, const Refusal& refusal) {
  if (refusal) table.Fail(key, LineOf(refusal));
}

void Require(const Refusal& refusal) {
  if (refusal) throw JobFault(LineOf(refusal));
}

ScanLoadSettings LoadSettingsOf(const LoadWords& words, const fs::path& file,
                                const TableReader& table) {
  ScanLoadSettings settings;
  settings.kind = KindOf(words, file, table);
  settings.centerpiece = CenterpieceOf(words, table);
  // Where nothing is cut any channel that some cell has is taken, and none counts.
  const auto count = IsCut(settings) ? static_cast<std::size_t>(ChannelCount(settings.centerpiece))
                                     : ChannelLetters.size();
  for (std::size_t c = 0; c < settings.chkChannel.size(); ++c) {
    settings.chkChannel[c] = c < count && !words.channels;
  }
  if (!words.channels) return settings;
  if (words.channels->empty()) table.Fail("channels", "at least one channel is wanted");
  for (const std::string& channel : *words.channels) {
    const auto end = ChannelLetters.begin() + static_cast<std::ptrdiff_t>(count);
    const auto found =
        channel.size() == 1 ? std::find(ChannelLetters.begin(), end, channel[0]) : end;
    if (found == end) {
      table.Fail("channels", "\"" + channel + "\" is no channel of this centerpiece");
    }
    settings.chkChannel[static_cast<std::size_t>(found - ChannelLetters.begin())] = true;
  }
  return settings;
}

std::unique_ptr<ParsedJob> ReadJob(const fs::path& path) {
  auto parsed = std::make_unique<ParsedJob>();
  parsed->file = ReadToml(path);
  const fs::path folder = path.parent_path();
  TableReader root(parsed->file.name, "", parsed->file.table);
  Job& job = parsed->job;
  job.archive = ReadPath(root, "archive", folder);
  job.channelsFile = ReadPath(root, "channels_file", folder);
  ReadConstants(root, job);
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
