#include "cli/scan_command.h"

#include <algorithm>
#include <ostream>

#include "base/files.h"
#include "base/number_format.h"
#include "base/text.h"
#include "cli/job_steps.h"
#include "cli/json_records.h"
#include "cli/terminal_host.h"
#include "core/cell_files.h"

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

// `text` (UTF-8) filled up to `width` characters; numbers to the right.
std::string Column(const std::string& text, std::size_t width, bool right) {
  const std::size_t length = Utf8ToCp1252(text).size();
  const std::string blanks(width > length ? width - length : 0, ' ');
  return right ? blanks + text : text + blanks;
}

std::string TableRow(const std::vector<std::string>& cells, std::size_t nameWidth) {
  constexpr std::array<std::size_t, 8> kWidths = {3, 0, 6, 6, 6, 5, 6, 6};
  std::string row;
  for (std::size_t k = 0; k < cells.size(); ++k) {
    const bool name = k == 1;
    const std::size_t width = name ? nameWidth : k < kWidths.size() ? kWidths[k] : 6;
    row += (k == 0 ? "" : "  ") + Column(cells[k], width, !name);
  }
  return row;
}

void PrintTable(const DatasetStore& store, std::ostream& out) {
  std::size_t nameWidth = 4;
  for (const Dataset& dataset : store.Datasets) {
    nameWidth = std::max(nameWidth, Trim(dataset.FileName.View()).size());
  }
  out << TableRow({"#", "Name", "Points", "Good", "RPM", "nm", "deg C", "R0", "First", "Last"},
                  nameWidth)
      << '\n';
  int number = 0;
  for (const Dataset& dataset : store.Datasets) {
    out << TableRow(
               {std::to_string(++number), NameOf(dataset), std::to_string(dataset.NumPoints),
                std::to_string(CountGoodPoints(dataset)), std::to_string(dataset.Speed),
                std::to_string(dataset.Wavelength),
                FormatNumber(static_cast<double>(dataset.Temperature), "0.0"),
                FormatNumber(dataset.RefRadius, "0.0000"),
                FormatNumber(dataset.R.front(), "0.0000"), FormatNumber(LastRadius(dataset), "0.0000")},
               nameWidth)
        << '\n';
  }
}

}  // namespace

ExitStatus RunScan(const ScanArguments& arguments, const CommandStreams& streams) {
  const toml::table nothing;
  const TableReader options("quorvane-cli scan", "", nothing);
  const LoadWords words = WordsOf(arguments);
  QuorvaneModule module;
  TerminalHost host(streams, true, module.Fit.FitKeepGoing);
  LoadChannelFile(module, FindChannelFile(streams.programFolder));
  LogHead(host);
  ExitStatus status = ExitStatus::kDone;
  for (const std::string& file : arguments.files) {
    const std::filesystem::path path = PathFromText(file);
    const JobLoad load{path, LoadSettingsOf(words, path, options), false};
    const LoadResult result = LoadOne(load, module.Store, host);
    if (result.outcome == LoadOutcome::kUnreadable) {
      status = ExitStatus::kFileFault;
    } else if (result.datasets == 0 && status == ExitStatus::kDone) {
      status = ExitStatus::kNotDone;
    }
  }
  PrintTable(module.Store, streams.out);
  if (!arguments.json.empty()) {
    Json json = DocumentHead();
    json["datasets"] = DatasetsJson(module.Store);
    json["log"] = host.Log();
    WriteWholeFile(PathFromText(arguments.json), JsonText(json));
  }
  return status;
}
