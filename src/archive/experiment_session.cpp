#include "archive/experiment_session.h"

#include "archive/data_member.h"
#include "archive/experiment_file.h"
#include "archive/zip_file.h"
#include "base/arithmetic.h"
#include "base/files.h"
#include "base/host.h"
#include "base/paths.h"
#include "base/text.h"
#include "fit/models.h"
#include "job/page_setup.h"
#include "job/toml_reader.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

void SayNotSaved(const char* why, Host& host) {
  host.ShowMessage("Save", "The experiment was not saved!" + std::string(kLineBreak) + why,
                   MessageIcon::kExclamation);
}

void SayBad(const fs::path& path, const std::string& why, Host& host) {
  std::string text = PathText(path) + " is not a valid saved experiment file!";
  if (!why.empty()) text += std::string(kLineBreak) + why;
  host.ShowMessage("Bad EXP File", text, MessageIcon::kExclamation);
}

// An experiment without a value takes the default; one with a value makes it the default.
void Reconcile(double& value, double& defaultValue) {
  if (value == 0.0) {
    value = defaultValue;
  } else {
    defaultValue = value;
  }
}

void TakePage(const Experiment& experiment, QuorvaneModule& module) {
  FitPage& page = module.FitPage = experiment.FitPage;
  module.ConstantsSet = {};
  if (experiment.layout == kOldLayout) {
    page.Vbar = module.Preferences.DefaultVbar;
    page.VbarB = module.Preferences.DefaultVbarB;
    page.Density = module.Preferences.DefaultDensity;
  } else {
    Reconcile(page.Vbar, module.Preferences.DefaultVbar);
    Reconcile(page.VbarB, module.Preferences.DefaultVbarB);
    Reconcile(page.Density, module.Preferences.DefaultDensity);
  }
  const double last = static_cast<double>(Models().size() - 1);
  if (!(page.ModelIndex >= 0.0 && page.ModelIndex <= last)) page.ModelIndex = 0.0;
  module.Setup = {};
  module.Setup.FitModel = module.ChosenModel =
      FindModel(static_cast<int>(RoundHalfEven(page.ModelIndex, 0, static_cast<long long>(last))));
}

void TakeDatasets(std::vector<Dataset> datasets, DatasetStore& store) {
  store.Datasets = std::move(datasets);
  store.UseData.clear();
  store.Edits.Clear();
  for (Dataset& dataset : store.Datasets) {
    dataset.FileName.SetBytes(std::string(Trim(dataset.FileName.View())));
    dataset.Comment2.SetBytes(std::string(Trim(dataset.Comment2.View())));
    store.UseData.push_back(!IsBlank(dataset));
  }
}

// All but the log.
void TakeSession(Experiment&& experiment, QuorvaneModule& module) {
  TakePage(experiment, module);
  TakeDatasets(std::move(experiment.Datasets), module.Store);
  module.LastFit.reset();
  module.Fits.Clear();
  module.Figure.reset();
  module.Solution = {};
  module.GraphStreams = std::move(experiment.GraphStreams);
}

// The setup in the comment, if it is ours; one of another program or a damaged one is left aside.
std::string TakeComment(const std::string& comment, QuorvaneModule& module) {
  if (comment.empty()) return {};
  if (!IsSetupText(comment)) {
    return "The comment of the archive is of another program; it was left aside.";
  }
  try {
    return TakeSetup(comment, "the setup in the archive", module);
  } catch (const JobFault& fault) {
    return "The setup of the page was left aside: " + std::string(fault.what());
  }
}

void TakeLog(const std::string& log, QuorvaneModule& module, SessionHost& host) {
  host.LoadLog(log);
  module.ExperimentOpen = true;
}

// What the user should know of a file that was read.
struct FileRemarks {
  std::int32_t layout;
  std::vector<std::string> warnings;
};

void SayWhatWasRead(const FileRemarks& remarks, const fs::path& path, Host& host) {
  if (remarks.layout == kOldLayout) {
    host.ShowMessage("Old Version EXP File",
                     PathText(path) +
                         " was saved by a previous verion of Quorvane.\r\n"
                         " Please update the format by saving it from this program!",
                     MessageIcon::kExclamation);
  }
  for (const std::string& warning : remarks.warnings) {
    host.ShowMessage("Bad EXP File", warning, MessageIcon::kExclamation);
  }
}

}  // namespace

Experiment ExperimentOf(const QuorvaneModule& module, const fs::path& folder) {
  Experiment experiment;
  experiment.directory.SetBytes(Utf8ToCp1252(PathText(folder)));
  experiment.FitPage = module.FitPage;
  FitPage& page = experiment.FitPage;
  page.ModelIndex = module.ChosenModel->index;
  if (module.Setup.ConstrainKRatios) {
    page.ModelLnK2 = CheckedLog(page.ModelLnK2) + page.ModelLnK1;
    page.ModelLnK3 = CheckedLog(page.ModelLnK3) + page.ModelLnK1;
  }
  experiment.Datasets = module.Store.Datasets;
  experiment.GraphStreams = module.GraphStreams;
  // Without room, as for thousands of datasets with choices of their own, there is none: what must
  // be kept is in the members.
  experiment.comment = SetupWithFits(module, kLongestComment).text;
  return experiment;
}

bool SaveExperiment(QuorvaneModule& module, const fs::path& path, SessionHost& host,
                    const std::string* comment) {
  if (module.Store.Datasets.empty()) {
    host.ShowMessage("", "There is nothing to save!", MessageIcon::kStop);
    return false;
  }
  module.FitPage.ModelIndex = module.ChosenModel->index;
  try {
    Experiment experiment = ExperimentOf(module, WholePath(path).parent_path());
    experiment.log = host.LogAsRtf();
    if (comment != nullptr) experiment.comment = *comment;
    WriteExperimentFile(path, experiment);
    return true;
  } catch (const ArithmeticFault& fault) {
    SayNotSaved(fault.what(), host);
  } catch (const ArchiveFault& fault) {
    SayNotSaved(fault.what(), host);
  } catch (const FileFault& fault) {
    SayNotSaved(fault.what(), host);
  }
  return false;
}

std::optional<ReadExperiment> OpenExperiment(const fs::path& path, Host& host) {
  if (!FileExists(path)) {
    host.ShowMessage("No File Found", PathText(path) + " not found!", MessageIcon::kExclamation);
    return std::nullopt;
  }
  try {
    return ReadExperimentFile(path);
  } catch (const UnknownLayout&) {
    SayBad(path, "", host);
  } catch (const ArchiveFault& fault) {
    SayBad(path, fault.what(), host);
  } catch (const FileFault& fault) {
    SayBad(path, fault.what(), host);
  }
  return std::nullopt;
}

bool LoadExperiment(QuorvaneModule& module, const fs::path& path, SessionHost& host) {
  std::optional<ReadExperiment> read = OpenExperiment(path, host);
  if (!read) return false;
  const std::string remark = LoadReadExperiment(module, std::move(*read), path, host);
  if (!remark.empty()) host.ReportFailure(remark);
  return true;
}

std::string LoadReadExperiment(QuorvaneModule& module, ReadExperiment&& read, const fs::path& path,
                               SessionHost& host) {
  std::string remark = TakeUpExperiment(module, std::move(read), path, host);
  host.PrintIt("\r\nThe current directory is " + PathText(WholePath(path).parent_path()) + "\r\n");
  return remark;
}

// The boxes come when the datasets are there and before the log is.
std::string TakeUpExperiment(QuorvaneModule& module, ReadExperiment&& read, const fs::path& path,
                             SessionHost& host) {
  const FileRemarks remarks = {read.experiment.layout, std::move(read.warnings)};
  const std::string log = std::move(read.experiment.log);
  const std::string comment = std::move(read.experiment.comment);
  TakeSession(std::move(read.experiment), module);
  std::string remark = TakeComment(comment, module);
  SayWhatWasRead(remarks, path, host);
  TakeLog(log, module, host);
  return remark;
}

std::string ResumeExperiment(QuorvaneModule& module, ReadExperiment&& read, SessionHost& host) {
  const std::string log = std::move(read.experiment.log);
  const std::string comment = std::move(read.experiment.comment);
  TakeSession(std::move(read.experiment), module);
  std::string remark = TakeComment(comment, module);
  TakeLog(log, module, host);
  return remark;
}

fs::path ArchiveLockFile(const fs::path& path) {
  const fs::path file = ResolvedPath(path);
  return file.parent_path() / PathFromText("." + PathText(file.filename()) + ".lock");
}

FileLock LockArchive(const fs::path& path) {
  return FileLock(ArchiveLockFile(path));
}

}  // namespace quorvane
