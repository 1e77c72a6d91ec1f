#include "scan/scan_file.h"

#include <cmath>
#include <limits>

#include "base/arithmetic.h"
#include "base/file_replace.h"
#include "base/files.h"
#include "base/host.h"
#include "base/text.h"
#include "scan/cell_geometry.h"

namespace quorvane {

namespace {

std::string RequiredLine(std::istream& in, const std::filesystem::path& path, const char* which) {
  std::string line;
  if (!ReadLine(in, line)) {
    if (in.bad()) throw FileFault(PathText(path) + ": a read failed");
    throw FileFault(PathText(path) + ": ends before its " + which);
  }
  return line;
}

// Line 1 with the end of the source path behind it.
std::string SourceComment(std::string_view line, std::string_view path) {
  constexpr std::size_t kRoom = 200;
  const std::string_view comment = Trim(line);
  if (comment.size() > kRoom) throw ArithmeticFault(FaultKind::kInvalidOperation);
  path = Trim(path);
  const std::size_t keep = kRoom - comment.size();
  if (path.size() > keep) path.remove_prefix(path.size() - keep);
  return std::string(comment) + " :: " + std::string(path);
}

void TakeComment(Dataset& dataset, FileKind kind, const LineBuffer& line,
                 const std::filesystem::path& path) {
  if (kind == FileKind::kDat) {
    dataset.Comment1.SetBytes(Trim(line.View()));
    return;
  }
  try {
    dataset.Comment1.SetBytes(SourceComment(line.View(), Utf8ToCp1252(PathText(path))));
  } catch (const ArithmeticFault&) {
    throw FileFault(PathText(path) + ": line 1 is longer than 200 characters");
  }
}

// Single precision from the header; throws ArithmeticFault beyond its range.
float SingleField(std::string_view field) {
  const double value = FieldVal(field);
  if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
    throw ArithmeticFault(FaultKind::kOverflow);
  }
  return static_cast<float>(value);
}

void TakeHeader(Dataset& dataset, FileKind kind, const LineBuffer& header) {
  dataset.Comment2.SetBytes(header.View());
  if (kind == FileKind::kEl) {
    dataset.Speed = 1;
    dataset.Temperature = 20.0F;
    dataset.Wavelength = FieldInt16(header.Columns(23, 26));
  } else {
    dataset.Speed = FieldInt32(header.Columns(9, 14));
    dataset.Temperature = SingleField(header.Columns(5, 8));
    dataset.Wavelength = FieldInt16(header.Columns(33, 36));
  }
}

// Takes one row into the record if it lies in the window.
void TakeRow(Dataset& dataset, FileKind kind, const LineBuffer& row, float low, float high) {
  const double x = FieldVal(row.Columns(1, 11));
  const auto single = static_cast<float>(x);
  if (!(low <= single && single <= high)) return;
  if (dataset.NumPoints >= kMaxPoints) throw SubscriptFault();
  const auto k = static_cast<std::size_t>(dataset.NumPoints);
  if (kind == FileKind::kEl && x < 0.0) throw ArithmeticFault(FaultKind::kInvalidOperation);
  dataset.R[k] = kind == FileKind::kEl ? std::sqrt(x + x) : x;
  dataset.C[k] = FieldVal(row.Columns(12, 26));
  const double err = FieldVal(row.Columns(28, 41));
  dataset.Err[k] = err == 0.0 ? 1.0 : err;
  dataset.Good[k] = dataset.Err[k] < 0.0 ? kFalse : kTrue;
  ++dataset.NumPoints;
}

}  // namespace

Dataset ReadDataset(FileKind kind, std::istream& in, const std::filesystem::path& path, float low,
                    float high) {
  Dataset dataset = EmptyDataset();
  int line = 1;
  try {
    TakeComment(dataset, kind, LineBuffer(RequiredLine(in, path, "comment line")), path);
    ++line;
    TakeHeader(dataset, kind, LineBuffer(RequiredLine(in, path, "header line")));
    for (std::string text; ReadLine(in, text);) {
      ++line;
      TakeRow(dataset, kind, LineBuffer(text), low, high);
    }
  } catch (const ArithmeticFault&) {
    throw FileFault(PathText(path) + ", line " + std::to_string(line) +
                    ": a number is out of range");
  } catch (const SubscriptFault&) {
    throw FileFault(PathText(path) + ", line " + std::to_string(line) + ": more than " +
                    std::to_string(kMaxPoints) + " rows lie in the radial window");
  }
  if (in.bad()) throw FileFault(PathText(path) + ": a read failed");
  return dataset;
}

std::string_view TimeColumns(const LineBuffer& header, TimeField timeField) {
  return timeField == TimeField::kElectrophoresis ? header.Columns(14, 23) : header.Columns(16, 22);
}

std::ifstream OpenScan(const std::filesystem::path& path) {
  if (DirExists(path)) throw FileFault(PathText(path) + ": is a folder");
  if (!FileExists(path)) throw FileFault(PathText(path) + ": there is no such file");
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    throw FileFault(PathText(path) + ": is no regular file");  // a device may never end
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    throw FileFault(PathText(path) + ": cannot be read" +
                    (OpenElsewhere(path) ? ": another program has it open" : ""));
  }
  return in;
}

CommentLines ReadCommentLines(const std::filesystem::path& path) {
  std::ifstream in = OpenScan(path);
  CommentLines lines;
  lines.comment = RequiredLine(in, path, "comment line");
  lines.header = RequiredLine(in, path, "header line");
  return lines;
}

std::string GetCommentLines(DatasetStore& store, const std::filesystem::path& path, Host& host) {
  try {
    const CommentLines lines = ReadCommentLines(path);
    store.HeaderLine = lines.header;
    return Cp1252ToUtf8(Trim(lines.comment)) + "\r\n" + Cp1252ToUtf8(Trim(lines.header));
  } catch (const FileFault& fault) {
    host.ReportFailure(fault.what());
    return {};
  }
}

LoadOutcome LoadDataFile(DatasetStore& store, FileKind kind, const std::filesystem::path& path,
                         const std::string& datasetName, RadialWindow window, Host& host) {
  Dataset dataset;
  try {
    std::ifstream in = OpenScan(path);
    dataset = ReadDataset(kind, in, path, window.low, window.high);
  } catch (const FileFault& fault) {
    host.ReportFailure(fault.what());
    return LoadOutcome::kUnreadable;
  }
  dataset.FileName.SetBytes(datasetName);
  dataset.FilePath.SetBytes(Utf8ToCp1252(PathText(path)));
  if (dataset.NumPoints < kMinPoints) {
    host.ShowMessage("",
                     "Fewer than 10 points were found for the dataset " + NameOf(dataset) +
                         ".  This dataset will not be loaded",
                     MessageIcon::kNone);
    return LoadOutcome::kTooFewPoints;
  }
  dataset.Rmen = dataset.R.front();
  dataset.Rbase = LastRadius(dataset);
  dataset.RefRadius = CalcRefRadius(dataset);
  store.Datasets.push_back(dataset);
  store.UseData.push_back(!IsBlank(dataset));
  host.PrintIt("Source:: " + PathOf(dataset) + "\r\n" +
               DatasetTitle(store, store.NumDatasets() - 1) + "\r\n");
  return LoadOutcome::kLoaded;
}

}  // namespace quorvane
