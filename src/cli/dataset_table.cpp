#include "cli/dataset_table.h"

#include <algorithm>
#include <ostream>

#include "base/number_format.h"
#include "base/text.h"
#include "cli/text_column.h"

namespace quorvane {

namespace {

std::string TableRow(const std::vector<std::string>& cells, std::size_t nameWidth) {
  constexpr std::array<std::size_t, 8> kWidths = {3, 0, 6, 6, 6, 5, 6, 6};
  std::string row;
  for (std::size_t k = 0; k < cells.size(); ++k) {
    const bool name = k == 1;
    const std::size_t width = name ? nameWidth : k < kWidths.size() ? kWidths[k] : 6;
    row += (k == 0 ? "" : "  ") + TextColumn(cells[k], width, !name);
  }
  return row;
}

}  // namespace

void PrintDatasetTable(const std::vector<Dataset>& datasets, std::ostream& out) {
  std::size_t nameWidth = 4;
  for (const Dataset& dataset : datasets) {
    nameWidth = std::max(nameWidth, Trim(dataset.FileName.View()).size());
  }
  out << TableRow({"#", "Name", "Points", "Good", "RPM", "nm", "deg C", "R0", "First", "Last"},
                  nameWidth)
      << '\n';
  int number = 0;
  for (const Dataset& dataset : datasets) {
    out << TableRow({std::to_string(++number), NameOf(dataset), std::to_string(dataset.NumPoints),
                     std::to_string(CountGoodPoints(dataset)), std::to_string(dataset.Speed),
                     std::to_string(dataset.Wavelength),
                     FormatNumber(static_cast<double>(dataset.Temperature), "0.0"),
                     FormatNumber(dataset.RefRadius, "0.0000"),
                     FormatNumber(FirstRadius(dataset), "0.0000"),
                     FormatNumber(LastRadius(dataset), "0.0000")},
                    nameWidth)
        << '\n';
  }
}

}  // namespace quorvane
