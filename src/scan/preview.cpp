#include "scan/preview.h"

#include <cmath>
#include <fstream>
#include <limits>

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/host.h"
#include "scan/dataset.h"
#include "scan/fields.h"

namespace quorvane {

namespace {

float SingleAt(const LineBuffer& row, int first, int last) {
  const double value = FieldVal(row.Columns(first, last));
  if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
    throw ArithmeticFault(FaultKind::kOverflow);
  }
  return static_cast<float>(value);
}

bool IsHeader(const std::string& line) {
  return !line.empty() && std::string_view("PRFE").find(line.front()) != std::string_view::npos;
}

// Throws FileFault, ArithmeticFault or SubscriptFault.
ChartSeries ReadRows(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    throw FileFault(PathText(path) + ": is no regular file");  // a device may never end
  }
  std::ifstream in(path, std::ios::binary);
  std::string line;
  ReadLine(in, line);
  do {
    if (!ReadLine(in, line)) throw FileFault(PathText(path) + ": has no header line");
  } while (!IsHeader(line));
  ChartSeries series{"", SeriesStyle::kLine, kChartBlue, {}, {}};
  while (ReadLine(in, line)) {
    if (series.x.size() == static_cast<std::size_t>(kMaxPoints)) throw SubscriptFault();
    const LineBuffer row(line);
    series.x.push_back(static_cast<double>(SingleAt(row, 1, 11)));
    series.y.push_back(static_cast<double>(SingleAt(row, 12, 26)));
  }
  if (in.bad()) throw FileFault(PathText(path) + ": a read failed");
  return series;
}

}  // namespace

std::optional<Chart> PreviewFile(const std::filesystem::path& path, Host& host) {
  ChartSeries series;
  try {
    series = ReadRows(path);
  } catch (const std::exception&) {
    host.ShowMessage("",
                     "An error occurred trying to read this dataset.\r\nThis dataset cannot be "
                     "previewed",
                     MessageIcon::kNone);
    return std::nullopt;
  }
  if (series.x.size() < static_cast<std::size_t>(kMinPoints)) {
    host.ShowMessage("",
                     "Fewer than 10 points were found for this dataset.\r\n  This dataset will not "
                     "be previewed",
                     MessageIcon::kNone);
    return std::nullopt;
  }
  series.x.pop_back();
  series.y.pop_back();
  Chart chart;
  chart.panels.push_back({"", 1.0, {std::move(series)}, {}});
  return chart;
}

}  // namespace quorvane
