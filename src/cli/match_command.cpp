#include "cli/match_command.h"

#include <algorithm>
#include <ostream>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "base/files.h"
#include "cli/terminal_host.h"
#include "job/json_text.h"
#include "match/match_report.h"

namespace quorvane {

namespace {

ExitStatus StatusOf(MatchLoadOutcome outcome) {
  switch (outcome) {
    case MatchLoadOutcome::kLoaded:
      return ExitStatus::kDone;
    case MatchLoadOutcome::kTooFewFiles:
      return ExitStatus::kBadUsage;
    case MatchLoadOutcome::kTooFewScans:
      return ExitStatus::kNotDone;
    case MatchLoadOutcome::kUnreadable:
      break;
  }
  return ExitStatus::kFileFault;
}

MatchLoadOutcome Load(const MatchArguments& arguments, MatchSeries& series, Host& host) {
  std::vector<std::filesystem::path> paths;
  for (const std::string& file : arguments.files) paths.push_back(PathFromText(file));
  MatchLoadSettings settings;
  settings.every = arguments.every;
  if (arguments.filter == "electrophoresis") settings.timeField = TimeField::kElectrophoresis;
  return LoadMatchFiles(std::move(paths), settings, series, host);
}

Json MatchJson(const MatchSeries& series, FittingRange range, const MatchResult& result,
               const std::string& report) {
  Json scans = Json::array();
  Json deviations = Json::array({Json::array(), Json::array(), Json::array()});
  for (std::size_t i = 0; i < result.scans.size(); ++i) {
    const ScanMatch& match = result.scans[i];
    scans.push_back({{"file", series.names[i]},
                     {"time_hours", TimeInHours(match)},
                     {"rms", match.rms},
                     {"y_offset", match.yoff[0]},
                     {"xy_y_offset", match.yoff[1]},
                     {"x_offset", match.xoff}});
    for (std::size_t k = 0; k < match.dev.size(); ++k) deviations[k].push_back(match.dev[k]);
  }
  return {{"reference", series.names.back()},
          {"range", {range.low, range.high}},
          {"points", result.rr.size()},
          {"scans", scans},
          {"radii", result.rr},
          {"deviations", deviations},
          {"report", report}};
}

}  // namespace

ExitStatus RunMatch(const MatchArguments& arguments, const CommandStreams& streams) {
  StopFlag stop;
  TerminalHost host(streams, false, stop);
  MatchSeries series;
  const ExitStatus loaded = StatusOf(Load(arguments, series, host));
  if (loaded != ExitStatus::kDone) return loaded;
  if (const std::string remark = SpeedRemark(series); !remark.empty()) host.ReportFailure(remark);
  const FittingRange range = arguments.range.empty()
                                 ? WholeRange(series)
                                 : FittingRange{arguments.range[0], arguments.range[1]};
  MatchResult result;
  MatchReport report;
  try {
    result = DoMatch(series, range);
    report = WriteMatchReport(series, result, DateAndTimeText());
  } catch (const ArithmeticFault& fault) {
    streams.err << WhyNotMatched(fault.what(), range) << '\n';
    return ExitStatus::kNotDone;
  } catch (const SubscriptFault& fault) {
    streams.err << WhyNotMatched(fault.what(), range) << '\n';
    return ExitStatus::kNotDone;
  }
  if (!arguments.report.empty()) host.KeepPictures();
  for (const MatchReportItem& item : report) {
    if (const auto* line = std::get_if<std::string>(&item)) host.PrintIt(*line);
    if (const auto* chart = std::get_if<Chart>(&item)) host.SendPictureToLog(*chart);
  }
  if (!arguments.report.empty()) {
    WriteWholeFile(PathFromText(arguments.report), host.LogAsRtf());
  }
  if (!arguments.json.empty()) {
    WriteWholeFile(PathFromText(arguments.json),
                   JsonText(MatchJson(series, range, result, host.Log())));
  }
  return ExitStatus::kDone;
}

}  // namespace quorvane
