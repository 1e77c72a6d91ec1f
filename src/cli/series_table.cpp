#include "cli/series_table.h"

#include <array>
#include <ostream>
#include <string>

#include "base/files.h"
#include "base/number_format.h"
#include "cli/text_column.h"

namespace quorvane {

namespace {

constexpr std::size_t kColumns = 10;
using Cells = std::array<std::string, kColumns>;

Cells CellsOf(const ScanSeries& series, const ListedScan& scan) {
  const ScanFacts& facts = scan.facts;
  return {
      PathText(facts.path.filename()),   std::string(SignalOf(facts)),
      std::to_string(series.cell),       std::to_string(series.speed),
      std::to_string(facts.wavelength),  FormatNumber(facts.temperature, "0.0"),
      FormatNumber(facts.hours, "0.00"), FormatNumber(facts.omega2t, "0.0000E+00"),
      std::to_string(facts.points),      scan.change ? FormatNumber(*scan.change, "0.00000") : ""};
}

}  // namespace

void PrintSeriesTable(const std::vector<ScanSeries>& series, std::ostream& out) {
  std::vector<Cells> rows = {
      {"File", "Kind", "Cell", "RPM", "nm", "deg C", "Hours", "w^2 t", "Points", "Change"}};
  for (const ScanSeries& one : series) {
    for (const ListedScan& scan : one.scans) rows.push_back(CellsOf(one, scan));
  }
  std::array<std::size_t, kColumns> widths{};
  for (const Cells& row : rows) {
    for (std::size_t k = 0; k < kColumns; ++k) widths[k] = std::max(widths[k], WidthOf(row[k]));
  }
  constexpr std::size_t kTexts = 2;  // file and kind stand to the left
  for (const Cells& row : rows) {
    std::string line;
    for (std::size_t k = 0; k < kColumns; ++k) {
      line += (k == 0 ? "" : "  ") + TextColumn(row[k], widths[k], k >= kTexts);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}

Json SeriesJson(const std::vector<ScanSeries>& series) {
  Json list = Json::array();
  for (const ScanSeries& one : series) {
    Json scans = Json::array();
    for (const ListedScan& scan : one.scans) {
      const ScanFacts& facts = scan.facts;
      Json json = {{"file", PathText(facts.path.filename())},
                   {"path", PathText(facts.path)},
                   {"kind", KindName(facts.kind)},
                   {"hours", facts.hours},
                   {"omega2t", facts.omega2t},
                   {"temperature", facts.temperature},
                   {"points", facts.points}};
      if (scan.change) json["change"] = *scan.change;
      scans.push_back(std::move(json));
    }
    list.push_back({{"cell", one.cell},
                    {"wavelength", one.wavelength},
                    {"speed", one.speed},
                    {"scans", std::move(scans)}});
  }
  return list;
}

}  // namespace quorvane
