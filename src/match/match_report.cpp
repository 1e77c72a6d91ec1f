#include "match/match_report.h"

#include "base/number_format.h"
#include "base/text.h"
#include "match/match_plots.h"

namespace quorvane {

namespace {

constexpr std::string_view kBlankLine = " ";

void PrintHead(MatchReport& report, const MatchSeries& series, const MatchResult& result,
               std::string_view dateAndTime) {
  PrintMatch(report, std::string(kLineBreak) + "Matching Files :: " + std::string(dateAndTime));
  PrintMatch(report, "Current Directory :: " + series.folder);
  PrintMatch(report, "Reference File :: " + series.names.back());
  PrintMatch(report, "Fitting Range :: " + FormatNumber(result.rr.front(), "#.#### to ") +
                         FormatNumber(result.rr.back(), "#.####"));
  PrintMatch(report, std::string(kBlankLine));
  PrintMatch(report, std::string(33, ' ') + "RMS w/" + std::string(6, ' ') + "RMS w/" +
                         std::string(18, ' ') + "RMS w/");
  PrintMatch(report,
             "  #      Filename   Time(hrs)  No Offsets   Y-Offset    Y-Offset   X&Y Offsets  "
             "Y-Offset    X-Offset");
}

std::string ScanLine(std::size_t number, const std::string& name, const ScanMatch& match) {
  constexpr std::string_view kGap = "   ";
  constexpr std::string_view kRms = " 0.00E+00";
  constexpr std::string_view kOffset = " 0.00E+00;-0.00E+00";
  std::string line = FormatNumber(static_cast<double>(number), " 000 :");
  const auto append = [&line, kGap](const std::string& piece) {
    line += kGap;
    line += piece;
  };
  append(name);
  append(FormatNumber(TimeInHours(match), "000.000"));
  append(FormatNumber(match.rms[0], kRms));
  append(FormatNumber(match.rms[1], kRms));
  append(FormatNumber(match.yoff[0], kOffset));
  append(FormatNumber(match.rms[2], kRms));
  append(FormatNumber(match.yoff[1], kOffset));
  append(FormatNumber(match.xoff, kOffset));
  return line;
}

}  // namespace

void PrintMatch(MatchReport& report, std::string text) {
  report.emplace_back(std::move(text));
}

std::string WhyNotMatched(std::string_view fault, FittingRange range) {
  return "The scans were not matched: " + std::string(fault) + ".\nThe fitting range, " +
         FormatNumber(range.low, "0.0### to ") + FormatNumber(range.high, "0.0###") +
         " cm, must hold at least 4 points of the reference\n"
         "and 2 of every other scan, and the reference must not be a straight line there.";
}

MatchReport WriteMatchReport(const MatchSeries& series, const MatchResult& result,
                             std::string_view dateAndTime) {
  MatchReport report;
  PrintHead(report, series, result, dateAndTime);
  for (std::size_t i = 0; i < result.scans.size(); ++i) {
    PrintMatch(report, ScanLine(i + 1, series.names[i], result.scans[i]));
  }
  for (const Offsets offsets : kAllOffsets) {
    PrintMatch(report, std::string(kBlankLine));
    report.emplace_back(PlotRms(result, offsets));
  }
  return report;
}

}  // namespace quorvane
