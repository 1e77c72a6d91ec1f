// A job of `analyze` as it stands in its file, checked as far as that goes without the scans.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/picture_format.h"
#include "job/job_datasets.h"
#include "job/job_errors.h"
#include "job/job_fit.h"
#include "job/job_solution.h"
#include "job/load_words.h"
#include "job/toml_reader.h"
#include "scan/loading.h"
#include "stats/confidence.h"

namespace quorvane {

struct JobLoad {
  std::filesystem::path file;
  ScanLoadSettings settings;
  bool channelsNamed = false;
  bool blank = false;
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
  std::optional<std::filesystem::path> figure;  // .pdf, .svg or .png
};

struct Job {
  std::optional<std::filesystem::path> archive;
  std::optional<std::filesystem::path> channelsFile;
  std::optional<double> vbar;
  std::optional<double> vbarB;
  std::optional<double> density;
  std::optional<JobSolution> solution;  // in place of vbar, density or both
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

// The same of what was read, for a job in `folder`.
std::unique_ptr<ParsedJob> ParseJob(TomlFile file, const std::filesystem::path& folder);

}  // namespace quorvane
