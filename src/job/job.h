// A job of `analyze` as it stands in its file, checked as far as that goes without the scans.
#pragma once

#include <array>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/picture_format.h"
#include "core/page/row_values.h"
#include "fit/models.h"
#include "job/job_errors.h"
#include "job/toml_reader.h"
#include "scan/loading.h"
#include "stats/confidence.h"
#include "stats/minimum_check.h"

namespace quorvane {

// How a file is to be loaded: the words of a job and of the options of `scan`.
struct LoadWords {
  std::optional<std::string> kind;
  std::optional<std::string> centerpiece;
  std::optional<std::vector<std::string>> channels;
};

struct JobLoad {
  std::filesystem::path file;
  ScanLoadSettings settings;
  bool channelsNamed = false;
  bool blank = false;
};

using RadiusRange = std::pair<double, double>;  // cm, rising

struct JobDataset {
  explicit JobDataset(TableReader reader) : table(std::move(reader)) {}

  TableReader table;  // for messages
  int number = 0;     // from 1
  std::optional<std::string> name;
  std::optional<bool> use;
  std::optional<int> subtractBlank;
  std::optional<RadiusRange> deleteOutside;
  std::vector<RadiusRange> deleteRanges;
  std::vector<RadiusRange> restoreRanges;
  std::optional<int> speed;
  std::map<const RowValue*, double> values;
  std::map<const RowCheck*, bool> checks;
  std::optional<int> linkTo;
  std::optional<int> cellGeometry;
};

struct JobParameter {
  std::optional<double> start;
  std::optional<bool> fit;
};

struct JobFit {
  explicit JobFit(TableReader reader) : table(std::move(reader)) {}

  TableReader table;  // for messages
  const Model* model = nullptr;
  bool constrainKRatios = false;
  bool useMassConservation = false;
  bool calcLoadingConcs = false;
  std::optional<double> timeLimit;  // seconds
  int repeat = 1;
  bool toRest = false;                   // instead of the repeats
  std::optional<MinimumRequest> minima;  // the check that follows
  std::map<const SharedParameter*, JobParameter> parameters;
};

struct JobConfidence {
  explicit JobConfidence(TableReader reader) : table(std::move(reader)) {}

  TableReader table;  // for messages
  double percent = 95.46;
  RatioMethod method = RatioMethod::kParameters;
  std::optional<std::vector<std::string>> parameters;  // by their names on the page
};

struct JobOutput {
  std::optional<std::filesystem::path> archive;
  std::optional<std::filesystem::path> dataFolder;
  std::optional<std::filesystem::path> graphsFolder;
  PictureFormat graphsFormat = PictureFormat::kPng;
  std::optional<std::filesystem::path> table;
  std::optional<std::filesystem::path> report;  // .html or .pdf
};

struct Job {
  std::optional<std::filesystem::path> archive;
  std::optional<std::filesystem::path> channelsFile;
  std::optional<double> vbar;
  std::optional<double> vbarB;
  std::optional<double> density;
  std::optional<double> mcTolerance;
  std::optional<double> temperature;  // deg C
  std::vector<JobLoad> loads;
  std::vector<JobDataset> datasets;
  std::optional<JobFit> fit;
  std::optional<JobConfidence> confidence;
  std::optional<JobErrors> errors;
  bool crossCorrelation = false;  // print the coefficients after the fit
  std::optional<double> criticalCoefficient;
  JobOutput output;
};

// The file of a job and what it says. Kept together: the tables inside point into `file`.
struct ParsedJob {
  TomlFile file;
  Job job;
};

// Reads and checks a job. Relative paths in it are taken from its folder.
// Throws FileFault if it cannot be read and JobFault, naming file, line and key, if it is bad.
std::unique_ptr<ParsedJob> ReadJob(const std::filesystem::path& path);

// Refuses the job because of a key of `table` if a rule of the session does.
void Require(const TableReader& table, const char* key, const Refusal& refusal);

// The same for a value that was judged as it was read, when its key was at hand.
void Require(const Refusal& refusal);

// The load settings that the words ask for; `table` is for messages.
// Throws JobFault for a word that is none.
ScanLoadSettings LoadSettingsOf(const LoadWords& words, const std::filesystem::path& file,
                                const TableReader& table);

}  // namespace quorvane
