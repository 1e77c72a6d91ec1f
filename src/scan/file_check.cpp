#include "scan/file_check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <sstream>

#include "base/files.h"
#include "base/number_format.h"
#include "base/text.h"
#include "scan/header_words.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kFewPoints = 30;      // in a window: loaded, but little to fit
constexpr double kTemperatureStep = 0.095;  // columns 5 to 8 hold tenths of a degree
constexpr double kDriftLimit = 1.0;         // deg C

// The text of a file, or its start, and what it says about itself.
struct FileText {
  std::vector<std::string> lines;
  bool cut = false;      // the file is longer
  bool control = false;  // holds control characters other than a TAB
};

FileText ReadStart(const fs::path& path) {
  constexpr std::size_t kMost = std::size_t{1} << 20;
  std::ifstream in = OpenScan(path);
  std::string bytes(kMost + 1, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (in.bad()) throw FileFault(PathText(path.filename()) + ": a read failed");
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  FileText text;
  text.cut = bytes.size() > kMost;
  text.control = std::any_of(bytes.begin(), bytes.end(), [](char c) {
    return c >= 0 && c < ' ' && c != '\t' && c != '\r' && c != '\n';
  });
  std::istringstream lines(bytes);
  for (std::string line; std::getline(lines, line);) text.lines.push_back(line);
  if (text.cut) text.lines.pop_back();  // a part of a line
  return text;
}

struct Point {
  std::size_t line = 0;  // from 1; 0 where it is not known
  double r = 0.0;
  double c = 0.0;
  double err = 1.0;
};
using ChannelPoints = std::vector<std::vector<Point>>;  // by window

ChannelReading Summary(char letter, const std::vector<Point>& points) {
  ChannelReading reading{letter, static_cast<int>(points.size()), 0.0, 0.0};
  if (points.empty()) return reading;
  const auto below = [](const Point& a, const Point& b) { return a.r < b.r; };
  const auto [first, last] = std::minmax_element(points.begin(), points.end(), below);
  reading.first = first->r;
  reading.last = last->r;
  return reading;
}

std::string KindOfLetter(char letter) {
  const std::string_view signal = SignalOfLetter(letter);
  return signal.empty() ? std::string{letter} : letter + (": " + std::string(signal));
}

// The work of one check.
class Checking {
 public:
  Checking(const fs::path& path, const ScanLoadSettings& settings)
      : path_(path), kind_(settings.kind), windows_(WindowsOf(settings)) {}

  FileCheck Run() {
    try {
      text_ = ReadStart(path_);
      if (IsBinaryFile(path_)) result_.fault = FileName() + " is a binary file!";
      if (result_.fault.empty() || !text_.control) ReadBoth();
    } catch (const FileFault& fault) {
      if (result_.fault.empty()) result_.fault = fault.what();
    }
    return std::move(result_);
  }

 private:
  std::string FileName() const { return PathText(path_.filename()); }
  void Warn(std::string sentence) { result_.warnings.push_back(std::move(sentence)); }

  void ReadBoth() {
    if (kind_ != FileKind::kEl) ReadWords();
    ReadColumns();
    CompareHeaders();
    CompareRows();
    WarnOfKind();
    WarnOfFewPoints();
    if (text_.cut) Warn("The file is longer than one megabyte: only its start was checked.");
  }

  // As a load of each window reads it.
  void ReadColumns() {
    std::string bytes;
    for (const std::string& line : text_.lines) bytes += line + '\n';
    FileReading& reading = result_.columns;
    reading.kind = KindName(kind_);
    for (const LoadWindow& window : windows_) {
      std::istringstream in(bytes);
      const Dataset dataset = ReadDataset(kind_, in, path_.filename(), window.low, window.high);
      std::vector<Point> points;
      for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
        points.push_back({0, dataset.R[k], dataset.C[k], dataset.Err[k]});
      }
      reading.temperature = static_cast<double>(dataset.Temperature);
      reading.speed = dataset.Speed;
      reading.wavelength = dataset.Wavelength;
      reading.channels.push_back(Summary(window.letter, points));
      columnPoints_.push_back(std::move(points));
    }
    const bool named = kind_ == FileKind::kIpRa || kind_ == FileKind::kFi;
    if (named && !windows_.empty()) reading.cell = CellNumber(text_.lines[1]);
  }

  void ReadWords() {
    constexpr std::size_t kDeepest = 12;  // comment lines that a header is looked for behind
    FileReading& reading = result_.words;
    for (std::size_t k = 1; k < std::min(text_.lines.size(), kDeepest) && headerLine_ == 0; ++k) {
      const std::optional<HeaderWords> words = ReadHeaderWords(text_.lines[k]);
      if (!words) continue;
      headerLine_ = k + 1;
      letter_ = words->kind;
      reading.kind = KindOfLetter(letter_);
      reading.cell = words->cell;
      reading.temperature = words->temperature;
      reading.speed = words->speed;
      reading.wavelength = words->wavelength;
    }
    wordPoints_.resize(windows_.size());
    for (std::size_t k = std::max(headerLine_, std::size_t{2}); k < text_.lines.size(); ++k) {
      TakeRow(k + 1, text_.lines[k]);
    }
    for (std::size_t w = 0; w < windows_.size(); ++w) {
      reading.channels.push_back(Summary(windows_[w].letter, wordPoints_[w]));
    }
  }

  void TakeRow(std::size_t number, const std::string& line) {
    const std::string row = WithPoints(line);
    const std::vector<std::string_view> words = Words(row);
    const std::optional<double> r = NumberAt(words, 0);
    if (!r) return;
    decimalCommas_ = decimalCommas_ || HasDecimalCommas(line);
    separators_ = separators_ || row.find_first_of(",;\t") != std::string::npos;
    const double err = NumberAt(words, 2).value_or(0.0);
    for (std::size_t w = 0; w < windows_.size(); ++w) {
      const auto single = static_cast<float>(*r);  // as windows are compared
      if (!(windows_[w].low <= single && single <= windows_[w].high)) continue;
      wordPoints_[w].push_back(
          {number, *r, NumberAt(words, 1).value_or(0.0), err == 0.0 ? 1 : err});
    }
  }

  void CompareHeaders() {
    if (kind_ == FileKind::kEl) return;
    if (headerLine_ == 0) {
      Warn(
          "Line 2 does not look like a header line: a letter, cell, temperature, speed, time, "
          "omega squared t, wavelength.");
    } else if (headerLine_ > 2) {
      Warn("The header stands in line " + std::to_string(headerLine_) +
           ", behind more than one comment line. Loading takes line 2 for it.");
    } else {
      WarnOfShiftedHeader();
    }
  }

  void WarnOfShiftedHeader() {
    std::string columns;
    std::string words;
    for (const CheckRow& row : CheckRows(result_)) {
      const bool header = row.label == "Cell" || row.label == "Temperature" ||
                          row.label == "Speed" || row.label == "Wavelength";
      if (!header || !row.differs) continue;
      columns += (columns.empty() ? "" : ", ") + ToLower(row.label) + " " + row.columns;
      words += (words.empty() ? "" : ", ") + row.words;
    }
    if (columns.empty()) return;
    Warn("The header's columns are out of place. Loading reads " + columns + "; its words say " +
         words + ".");
  }

  void CompareRows() {
    std::vector<std::string> details;
    for (std::size_t w = 0; w < wordPoints_.size(); ++w) {
      std::string detail = DetailOf(windows_[w].letter, columnPoints_[w], wordPoints_[w]);
      if (!detail.empty()) details.push_back(std::move(detail));
    }
    if (details.empty()) return;
    if (decimalCommas_) {
      Warn("Numbers are written with a decimal comma. Loading knows the point only.");
    } else if (separators_) {
      Warn("The rows are separated by commas, semicolons or TABs. Loading goes by fixed columns.");
    }
    for (std::string& detail : details) Warn(std::move(detail));
  }

  // How the two readings of a channel differ; empty if they agree.
  static std::string DetailOf(char letter, const std::vector<Point>& columns,
                              const std::vector<Point>& words) {
    const std::string channel = std::string("Channel ") + letter + ": ";
    if (columns.size() != words.size()) {
      return channel + "loading finds " + std::to_string(columns.size()) +
             " points in its window, the words of the rows say " + std::to_string(words.size()) +
             ".";
    }
    int different = 0;
    std::string example;
    for (std::size_t k = 0; k < words.size(); ++k) {
      const std::string text = Difference(columns[k], words[k]);
      if (text.empty()) continue;
      if (different++ == 0) {
        example = "in line " + std::to_string(words[k].line) + " loading reads " + text;
      }
    }
    if (different == 0) return {};
    return channel + example + "; so in " + std::to_string(different) + " of " +
           std::to_string(words.size()) + " rows.";
  }

  // "signal 3, the words say 0.123"; empty if the two agree.
  static std::string Difference(const Point& columns, const Point& words) {
    const struct {
      const char* name;
      double columns;
      double words;
    } values[] = {{"radius ", columns.r, words.r},
                  {"signal ", columns.c, words.c},
                  {"standard deviation ", columns.err, words.err}};
    constexpr double kSame = 1e-6;
    for (const auto& value : values) {
      if (std::fabs(value.columns - value.words) <= kSame * std::fabs(value.words)) continue;
      return value.name + ShortestText(value.columns) + ", the words say " +
             ShortestText(value.words);
    }
    return {};
  }

  void WarnOfKind() {
    if (letter_ == 'I') {
      Warn(
          "An intensity scan (header I): its signals are light intensities. The models need "
          "absorbance.");
    } else if (letter_ == 'W') {
      Warn("A scan of wavelengths (header W): its first column is no radius.");
    } else if (kind_ == FileKind::kIpRa && letter_ != '\0' && letter_ != 'R' && letter_ != 'P') {
      Warn("The header says " + KindOfLetter(letter_) +
           ", the file type is IP,RA (absorbance or interference).");
    }
  }

  // A window in which the two readings do not find the same rows has its warning already.
  void WarnOfFewPoints() {
    for (std::size_t w = 0; w < columnPoints_.size(); ++w) {
      const std::size_t points = columnPoints_[w].size();
      const bool told = !wordPoints_.empty() && wordPoints_[w].size() != points;
      if (points >= kFewPoints || told) continue;
      const std::string count = points == 0   ? "no point lies"
                                : points == 1 ? "1 point lies"
                                              : "only " + std::to_string(points) + " points lie";
      Warn(std::string("Channel ") + windows_[w].letter + ": " + count + " in its window" +
           (points < kMinPoints ? "; a dataset needs " + std::to_string(kMinPoints) : "") + ".");
    }
  }

  fs::path path_;
  FileKind kind_;
  std::vector<LoadWindow> windows_;
  FileCheck result_;
  FileText text_;
  std::size_t headerLine_ = 0;  // from 1; 0: none found
  char letter_ = '\0';          // of the header
  bool decimalCommas_ = false;
  bool separators_ = false;
  ChannelPoints columnPoints_;
  ChannelPoints wordPoints_;
};

std::string NumberText(const std::optional<double>& value) {
  constexpr double kPlain = 1e9;
  if (!value) return {};
  return std::fabs(*value) < kPlain ? FormatNumber(*value, "0.####") : ShortestText(*value);
}

std::string WithoutPoint(std::string text) {
  if (text.ends_with('.')) text.pop_back();
  return text;
}

CheckRow NumberRow(const char* label, const char* unit, const std::optional<double>& columns,
                   const std::optional<double>& words, double tolerance) {
  const auto text = [unit](const std::optional<double>& value) {
    return value ? WithoutPoint(NumberText(value)) + unit : "";
  };
  return {label, text(columns), text(words),
          columns && words && !(std::fabs(*columns - *words) < tolerance)};
}

// "201/198/40" and "A/B/C".
std::string CountsText(const FileReading& reading) {
  std::string text;
  for (const ChannelReading& channel : reading.channels) {
    text += (text.empty() ? "" : "/") + std::to_string(channel.points);
  }
  return text;
}

std::string PointsLabel(const FileReading& reading) {
  std::string letters;
  for (const ChannelReading& channel : reading.channels) {
    letters += (letters.empty() ? " " : "/") + std::string(1, channel.letter);
  }
  return "Points" + letters;
}

std::string RangeText(const FileReading& reading) {
  double first = 0.0;
  double last = 0.0;
  bool any = false;
  for (const ChannelReading& channel : reading.channels) {
    if (channel.points == 0) continue;
    first = any ? std::min(first, channel.first) : channel.first;
    last = any ? std::max(last, channel.last) : channel.last;
    any = true;
  }
  if (!any) return {};
  return FormatNumber(first, "0.000") + " - " + FormatNumber(last, "0.000");
}

CheckRow TextRow(std::string label, std::string columns, std::string words) {
  const bool differs = !columns.empty() && !words.empty() && columns != words;
  return {std::move(label), std::move(columns), std::move(words), differs};
}

}  // namespace

std::string_view SignalOfLetter(char letter) {
  switch (letter) {
    case 'R':
      return "absorbance";
    case 'P':
      return "interference";
    case 'F':
      return "fluorescence";
    case 'I':
      return "intensity";
    case 'W':
      return "wavelengths";
    default:
      return {};
  }
}

FileCheck CheckFile(const fs::path& path, const ScanLoadSettings& settings) {
  return Checking(path, settings).Run();
}

std::vector<CheckRow> CheckRows(const FileCheck& check) {
  constexpr double kWhole = 0.5;  // cells, speeds and wavelengths are rounded to integers
  const FileReading& columns = check.columns;
  const FileReading& words = check.words;
  return {
      {"Kind", columns.kind, words.kind},
      NumberRow("Cell", "", columns.cell, words.cell, kWhole),
      NumberRow("Temperature", " deg C", columns.temperature, words.temperature, kTemperatureStep),
      NumberRow("Speed", " rpm", columns.speed, words.speed, kWhole),
      NumberRow("Wavelength", " nm", columns.wavelength, words.wavelength, kWhole),
      TextRow(PointsLabel(columns), CountsText(columns), CountsText(words)),
      TextRow("Radii, cm", RangeText(columns), RangeText(words))};
}

std::string TemperatureDrift(const std::vector<Dataset>& loaded, std::optional<double> next) {
  if (loaded.empty()) return {};
  const auto cooler = [](const Dataset& a, const Dataset& b) {
    return a.Temperature < b.Temperature;
  };
  const auto [low, high] = std::minmax_element(loaded.begin(), loaded.end(), cooler);
  const auto sentence = [](const char* which, double from, double to) {
    if (!(to - from > kDriftLimit)) return std::string();
    return which + FormatNumber(from, "0.0") + " to " + FormatNumber(to, "0.0") +
           " deg C. A fit knows one temperature only.";
  };
  const auto from = static_cast<double>(low->Temperature);
  const auto to = static_cast<double>(high->Temperature);
  const std::string already = sentence("The loaded scans were taken at ", from, to);
  if (!already.empty() || !next) return already;
  return sentence("With this file the loaded scans span ", std::min(from, *next),
                  std::max(to, *next));
}

}  // namespace quorvane
