#include "scan/scan_facts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <sstream>
#include <string>

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/text.h"
#include "scan/file_check.h"
#include "scan/file_list.h"
#include "scan/header_words.h"
#include "scan/scan_file.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

// The lines of a text as ReadLine gives them, without their copies.
class LineCutter {
 public:
  explicit LineCutter(std::string_view text) : rest_(text) {}

  bool Next(std::string_view& line) {
    if (rest_.empty()) return false;
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return true;
  }
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

std::string ReadText(const fs::path& path) {
  constexpr std::size_t kMost = std::size_t{4} << 20;
  OpenScan(path);  // says what is no regular file, and a device may never end
  std::string text = ReadWholeFile(path, kMost);
  if (text.empty()) throw FileFault(PathText(path) + ": is empty");
  if (LooksBinary(text)) throw FileFault(PathText(path) + " is a binary file!");
  return text;
}

// Calls take(radius, signal) for each row with a radius above 0.
template <class Take>
void ForEachRow(std::string_view text, FileKind kind, const fs::path& path, Take&& take) {
  LineCutter lines(text);
  int number = 0;
  try {
    for (std::string_view line; lines.Next(line);) {
      if (++number <= 2) continue;
      const LineBuffer row(line);
      const double x = FieldVal(row.Columns(1, 11));
      const double signal = FieldVal(row.Columns(12, 26));
      if (x > 0.0) take(kind == FileKind::kEl ? std::sqrt(x + x) : x, signal);
    }
  } catch (const ArithmeticFault&) {
    throw FileFault(PathText(path) + ", line " + std::to_string(number) +
                    ": a number is out of range");
  }
}

// What loading does not need gives no file up.
double Lenient(std::string_view field) {
  try {
    return std::max(FieldVal(field), 0.0);
  } catch (const ArithmeticFault&) {
    return 0.0;
  }
}

// Speed, temperature and wavelength come from the reader of a load, which gets no rows.
void TakeHeader(const std::string& head, std::string_view header, ScanFacts& facts) {
  constexpr double kSecondsAnHour = 3600.0;
  constexpr float kAny = std::numeric_limits<float>::max();
  std::istringstream in(head);
  const Dataset dataset = ReadDataset(facts.kind, in, facts.path, -kAny, kAny);
  facts.speed = dataset.Speed;
  facts.wavelength = dataset.Wavelength;
  facts.temperature = static_cast<double>(dataset.Temperature);
  const LineBuffer columns(header);
  if (facts.kind == FileKind::kEl) {
    facts.cell = 1;
    facts.hours = Lenient(TimeColumns(columns, TimeField::kElectrophoresis)) / kSecondsAnHour;
    return;
  }
  facts.letter = columns.View().front();
  facts.cell = CellNumber(header);
  facts.hours = Lenient(TimeColumns(columns, TimeField::kCentrifuge)) / kSecondsAnHour;
  facts.omega2t = Lenient(columns.Columns(24, 32));
}

}  // namespace

std::string_view SignalOf(const ScanFacts& facts) {
  const std::string_view signal = SignalOfLetter(facts.letter);
  return signal.empty() ? KindName(facts.kind) : signal;
}

ScanFacts ReadScanFacts(const fs::path& path, std::optional<FileKind> kind) {
  ScanFacts facts;
  facts.path = path;
  facts.kind = kind ? *kind : KindOfExtension(path).value_or(FileKind::kDat);
  const std::string text = ReadText(path);
  LineCutter lines(text);
  std::string_view comment;
  std::string_view header;
  lines.Next(comment);
  if (!lines.Next(header)) throw FileFault(PathText(path) + ": ends before its header line");
  if (facts.kind != FileKind::kEl && !ReadHeaderWords(header.substr(0, LineBuffer::kSize))) {
    throw FileFault(PathText(path) +
                    ": line 2 is no header (a letter, cell, temperature, speed ...)");
  }
  TakeHeader(text.substr(0, text.size() - lines.Rest().size()), header, facts);
  ForEachRow(text, facts.kind, path, [&](double, double) { ++facts.points; });
  if (facts.points < kMinPoints) {
    throw FileFault(PathText(path) + ": has " + std::to_string(facts.points) +
                    " points; a scan needs " + std::to_string(kMinPoints));
  }
  return facts;
}

ScanPoints ReadScanPoints(const fs::path& path, FileKind kind) {
  ScanPoints read;
  ForEachRow(ReadText(path), kind, path, [&](double r, double c) {
    read.r.push_back(r);
    read.c.push_back(c);
  });
  if (std::is_sorted(read.r.begin(), read.r.end())) return read;
  std::vector<std::size_t> order(read.r.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return read.r[a] < read.r[b]; });
  ScanPoints sorted;
  for (const std::size_t k : order) {
    sorted.r.push_back(read.r[k]);
    sorted.c.push_back(read.c[k]);
  }
  return sorted;
}

}  // namespace quorvane
