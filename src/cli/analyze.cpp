#include "cli/analyze.h"

#include <algorithm>
#include <ostream>

#include "archive/experiment_session.h"
#include "base/arithmetic.h"
#include "base/files.h"
#include "base/number_format.h"
#include "cli/archive_command.h"
#include "cli/fit_table.h"
#include "cli/terminal_host.h"
#include "core/fit_run.h"
#include "core/page/figure_sets.h"
#include "core/report/report_file.h"
#include "job/job.h"
#include "job/job_run.h"
#include "job/job_steps.h"
#include "job/json_errors.h"
#include "job/json_records.h"
#include "job/require.h"
#include "plot/figure_export.h"
#include "plot/offscreen.h"
#include "plot/report_pages.h"
#include "scan/dataset_files.h"
#include "stats/correlation.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

ExitStatus StatusOf(FitEnding ending) {
  return ending == FitEnding::kFinished ? ExitStatus::kDone : ExitStatus::kNotDone;
}

void MakeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (!DirExists(folder)) {
    throw FileFault(PathText(folder) + ": the folder cannot be made" +
                    (error ? ": " + SystemErrorText(error) : ""));
  }
}

// "01_12_3B20280.png": number and name of a dataset, fit for a file name.
std::string PictureName(const FitState& fit, const std::vector<Dataset>& datasets, int set,
                        PictureFormat format) {
  constexpr std::array<const char*, 3> kSuffixes = {".png", ".svg", ".pdf"};
  const auto place = static_cast<std::size_t>(fit.FitSetList[static_cast<std::size_t>(set)]);
  std::string name = NameOf(datasets[place]);
  if (name.ends_with(".dat")) name.resize(name.size() - 4);
  for (char& c : name) {
    if (!ValidFileName(std::string_view(&c, 1))) c = '-';
  }
  return FormatNumber(static_cast<double>(place + 1), "00") + "_" + name +
         kSuffixes[static_cast<std::size_t>(format)];
}

ExitStatus WritePictures(const Job& job, const QuorvaneModule& module) {
  if (!job.output.graphsFolder) return ExitStatus::kDone;
  const fs::path& folder = *job.output.graphsFolder;
  MakeFolder(folder);
  const OffscreenDrawing drawing;
  const FitState& fit = module.LastFit->state;
  for (int set = 0; set < fit.NumFitSets; ++set) {
    const Chart chart = PlotDataFit(fit, module.Store.Datasets, set, module.Preferences.Plots);
    const std::string name = PictureName(fit, module.Store.Datasets, set, job.output.graphsFormat);
    WriteWholeFile(folder / PathFromText(name), RenderChart(chart, job.output.graphsFormat));
  }
  return ExitStatus::kDone;
}

// Runs `write`; a file fault is told and does not keep the other outputs from being written.
template <class Write>
ExitStatus Guarded(Host& host, Write&& write) {
  try {
    return write();
  } catch (const FileFault& fault) {
    host.ReportFailure(fault.what());
    return ExitStatus::kFileFault;
  }
}

ExitStatus WriteData(const Job& job, const QuorvaneModule& module, Host& host) {
  if (!job.output.dataFolder) return ExitStatus::kDone;
  MakeFolder(*job.output.dataFolder);
  const bool saved = SaveLoadedData(module.Store, *job.output.dataFolder, SavedSignal::kAsLoaded,
                                    ExistingFiles::kReplace, host);
  return saved ? ExitStatus::kDone : ExitStatus::kNotDone;
}

ExitStatus WriteTable(const Job& job, const QuorvaneModule& module) {
  if (job.output.table) {
    WriteWholeFile(*job.output.table, FitTable(module.LastFit->state, module.Store.Datasets));
  }
  return ExitStatus::kDone;
}

ExitStatus WritePaperReport(const Job& job, const QuorvaneModule& module) {
  if (!job.output.report) return ExitStatus::kDone;
  const OffscreenDrawing drawing;
  WriteReport(module, *job.output.report,
              {{RenderReportChart, RenderReportFigure}, RenderReportPages});
  return ExitStatus::kDone;
}

ExitStatus WriteFigure(const Job& job, const QuorvaneModule& module) {
  if (!job.output.figure) return ExitStatus::kDone;
  const OffscreenDrawing drawing;
  const FinishedFit& fit = *module.LastFit;
  const Figure figure = MakeFigure(FigureSets(fit), &fit.state, {});
  const PictureFormat format = PictureFormatOf(*job.output.figure).value();
  WriteWholeFile(*job.output.figure, RenderFigure(figure, format, SizeOf(figure)));
  return ExitStatus::kDone;
}

// The worst of several endings: a file fault, then what was not done.
ExitStatus Worst(std::initializer_list<ExitStatus> endings) {
  return std::max(endings);
}

// The outputs that show the fit; `fitted` if there is a finished one.
ExitStatus WriteFit(const Job& job, const QuorvaneModule& module, bool fitted, Host& host) {
  if (!fitted) {
    const JobOutput& output = job.output;
    if (output.table || output.graphsFolder || output.report) {
      host.ReportFailure("There is no finished fit: table, graphs and report are not written.");
    }
    if (output.figure) {
      host.ReportFailure("There is no finished fit: the figure is not written.");
    }
    return ExitStatus::kDone;
  }
  return Worst({Guarded(host, [&] { return WriteTable(job, module); }),
                Guarded(host, [&] { return WritePictures(job, module); }),
                Guarded(host, [&] { return WriteFigure(job, module); }),
                Guarded(host, [&] { return WritePaperReport(job, module); })});
}

// The fit again from many starts; a better minimum is told, and left to the user.
ExitStatus CheckMinima(const MinimumRequest& request, QuorvaneModule& module, Json& json,
                       TerminalHost& host) {
  const FitState& fit = module.LastFit->state;
  const MinimumOutcome outcome = CheckMinimum(fit, request, module.Stop, host);
  json["minima"] = MinimaJson(fit, request, outcome);
  if (outcome.better || outcome.stopped || outcome.minima.empty()) {
    host.ReportFailure(MinimumSummary(outcome, request));
  }
  return outcome.stopped ? ExitStatus::kNotDone : ExitStatus::kDone;
}

// The table [errors] around the finished fit.
ExitStatus FindErrors(const JobErrors& errors, QuorvaneModule& module, Json& json,
                      TerminalHost& host) {
  const std::shared_ptr<const FinishedFit> last = module.LastFit;
  const ErrorAnalysis found =
      SearchErrors(module, RequestOf(errors, last->setup, last->state), host);
  json["errors"] = ErrorsJson(found, last->state);
  if (!found.error.empty()) host.ReportFailure(found.error);
  if (found.better) host.ReportFailure(BetterSumText(found));
  if (!found.scaleRemark.empty()) host.ReportFailure(found.scaleRemark);
  return found.stopped || !found.error.empty() ? ExitStatus::kNotDone : ExitStatus::kDone;
}

// Minima, quality, confidence intervals and correlation coefficients of a finished fit, into
// `json`; the last two into the log as well.
ExitStatus AnalyseErrors(const Job& job, const FitOutcome& fit, QuorvaneModule& module, Json& json,
                         TerminalHost& host) {
  json = Json::object();
  if (!job.fit || fit.ending != FitEnding::kFinished) return ExitStatus::kDone;
  ExitStatus status = ExitStatus::kDone;
  if (job.fit->minima) status = CheckMinima(*job.fit->minima, module, json, host);
  const FitState& state = *fit.state;
  const double critical = module.Preferences.CriticalCCCValue;
  json["quality"] = QualityJson(*module.LastFit, critical);
  if (job.confidence) {
    const ConfidenceRequest request = ConfidenceOf(job, module.Setup);
    const ConfidenceOutcome found = SearchIntervals(module, request, host);
    json["confidence"] = ConfidenceJson(state, request, found);
    if (found.stopped || !found.error.empty()) status = ExitStatus::kNotDone;
    if (found.better) host.ReportFailure(BetterFitText(state, *found.better));
    const std::string missing = MissingLimitsText(found);
    if (!missing.empty()) host.ReportFailure(missing);
    if (!found.error.empty()) host.ReportFailure("The confidence search failed: " + found.error);
  }
  if (job.errors) status = Worst({status, FindErrors(*job.errors, module, json, host)});
  if (job.crossCorrelation) {
    LogCrossCorrelation(state, host);
    json["cross_correlation"] = CrossCorrelationJson(state, critical);
  }
  return status;
}

// A new session, or that of the job's archive. False, with a message, if it cannot be taken up.
bool Begin(const Job& job, const CommandStreams& streams, QuorvaneModule& module,
           TerminalHost& host) {
  LoadGeometries(job, streams.programFolder, module);  // the page of an archive may use them
  if (!job.archive) LogHead(host);
  if (job.archive && !LoadExperiment(module, *job.archive, host)) return false;
  ApplyConstants(job, module);
  return true;
}

Json ResultsJson(const Job& job, const QuorvaneModule& module, const FitOutcome& outcome,
                 const Json& analysis, const TerminalHost& host) {
  Json json = DocumentHead();
  json["constants"] = ConstantsJson(module);
  json["datasets"] = DatasetsJson(module.Store.Datasets);
  if (job.fit) json["fit"] = FitJson(outcome, module.LastFit.get());
  json.update(analysis);
  json["log"] = host.Log();
  return json;
}

}  // namespace

ExitStatus RunAnalyze(const AnalyzeArguments& arguments, const CommandStreams& streams) {
  const std::unique_ptr<ParsedJob> parsed = ReadJob(PathFromText(arguments.job));
  const Job& job = parsed->job;
  QuorvaneModule module;
  TerminalHost host(streams, arguments.quiet, module.Stop);
  if (job.output.archive || !arguments.log.empty()) host.KeepPictures();
  if (!Begin(job, streams, module, host)) return ExitStatus::kFileFault;
  const LoadOutcome loaded = ApplyLoads(job, module, host);
  if (loaded == LoadOutcome::kUnreadable) return ExitStatus::kFileFault;
  if (loaded != LoadOutcome::kLoaded) return ExitStatus::kNotDone;
  const std::vector<ChosenDataset> datasets = ApplyDatasets(job, module, host);
  TakeTemperature(job, module);
  FitOutcome outcome;
  if (job.fit) {
    outcome = RunJobFit(job, datasets, module, host, host.Limit());
  } else {
    TakeSolution(job, module, host);
  }
  Json analysis;  // of the errors of the fit
  const ExitStatus analysed = AnalyseErrors(job, outcome, module, analysis, host);
  const bool fitted = job.fit && outcome.ending == FitEnding::kFinished;
  ExitStatus saved = ExitStatus::kDone;
  if (job.output.archive) saved = SaveSession(*job.output.archive, module, host, streams);
  const ExitStatus written = Worst({Guarded(host, [&] { return WriteData(job, module, host); }),
                                    WriteFit(job, module, fitted, host)});
  const ExitStatus logged = Guarded(host, [&] {
    if (!arguments.log.empty()) WriteWholeFile(PathFromText(arguments.log), host.LogAsRtf());
    return ExitStatus::kDone;
  });
  if (!arguments.json.empty()) {
    WriteWholeFile(PathFromText(arguments.json),
                   JsonText(ResultsJson(job, module, outcome, analysis, host)));
  }
  const ExitStatus fit = job.fit ? StatusOf(outcome.ending) : ExitStatus::kDone;
  return Worst({fit, analysed, saved, written, logged});
}

}  // namespace quorvane
