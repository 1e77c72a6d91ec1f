#include "scan/loading.h"

#include <algorithm>
#include <set>

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/host.h"
#include "base/text.h"
#include "scan/file_check.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

std::string FileNameOf(const fs::path& path) {
  return Utf8ToCp1252(PathText(path.filename()));
}

bool RefuseBinary(const fs::path& path, Host& host) {
  if (!IsBinaryFile(path)) return false;
  host.ShowMessage("Invalid Data File", PathText(path) + " is a binary file!",
                   MessageIcon::kExclamation);
  return true;
}

void Note(LoadResult& result, LoadOutcome outcome) {
  if (outcome == LoadOutcome::kLoaded) {
    ++result.datasets;
  } else {
    result.outcome = std::max(result.outcome, outcome);
  }
}

// Why a dropped file is not even tried; empty if it is.
std::string ReasonToLeaveOut(const fs::path& path) {
  try {
    OpenScan(path);
  } catch (const FileFault& fault) {
    return fault.what();
  }
  return IsBinaryFile(path) ? PathText(path) + " is a binary file!" : "";
}

// Lines of a message box, of which it has room for so many.
class Lines {
 public:
  void Add(const std::string& line) {
    if (++count_ <= kMost) text_ += (count_ > 1 ? "\r\n" : "") + line;
  }
  bool Empty() const { return count_ == 0; }
  std::string Text() const {
    return count_ > kMost ? text_ + "\r\nand " + std::to_string(count_ - kMost) + " more" : text_;
  }

 private:
  static constexpr int kMost = 10;
  int count_ = 0;
  std::string text_;
};

// What a look at the file finds odd about it; the first thing, if there are several.
void AddWarning(const fs::path& path, const ScanLoadSettings& settings, Lines& lines) {
  const FileCheck check = CheckFile(path, settings);
  if (!check.fault.empty()) {
    lines.Add(check.fault);
  } else if (!check.warnings.empty()) {
    lines.Add(PathText(path.filename()) + ": " + check.warnings.front());
  }
}

void LoadChecked(DatasetStore& store, const ScanLoadSettings& settings, std::vector<fs::path> paths,
                 Lines& warnings, Host& host) {
  std::stable_sort(paths.begin(), paths.end(), [](const fs::path& a, const fs::path& b) {
    return FileNameOf(a) < FileNameOf(b);
  });
  for (const fs::path& path : paths) {
    AddWarning(path, settings, warnings);
    LoadNamedFile(store, settings, path, host);
  }
}

// A load with its trap: a header number out of range gives the file up.
template <class Load>
LoadResult Trapped(const fs::path& path, Host& host, Load&& load) {
  LoadResult result;
  try {
    load(result);
  } catch (const ArithmeticFault&) {
    host.ReportFailure(PathText(path) + ", line 2: a number is out of range");
    Note(result, LoadOutcome::kUnreadable);
  } catch (const FileFault& fault) {
    host.ReportFailure(fault.what());
    Note(result, LoadOutcome::kUnreadable);
  }
  return result;
}

// The centerpiece by which a file is cut into its channels.
Centerpiece CutAs(const ScanLoadSettings& settings) {
  return settings.kind == FileKind::kIpRa ? settings.centerpiece : Centerpiece::kTwoChannels;
}

// A file and what the names of its datasets are made from.
struct NamedSource {
  const fs::path& path;
  const std::string& header;
  ElWavelength elWavelength;
};

// Loads each chosen channel of the file, in the order of the letters.
void LoadChannels(DatasetStore& store, const ScanLoadSettings& settings, const NamedSource& source,
                  Host& host, LoadResult& result) {
  for (const LoadWindow& window : WindowsOf(settings)) {
    const std::string name = DatasetName(settings.kind, FileNameOf(source.path), source.header,
                                         window.letter, source.elWavelength);
    const LoadOutcome outcome =
        LoadDataFile(store, settings.kind, source.path, name, {window.low, window.high}, host);
    Note(result, outcome);
    if (!FileExists(source.path)) return;  // the other windows would only say it again
  }
}

}  // namespace

bool IsCut(const ScanLoadSettings& settings) {
  return ChannelCount(CutAs(settings)) > 1;
}

std::vector<LoadWindow> WindowsOf(const ScanLoadSettings& settings) {
  const Centerpiece centerpiece = CutAs(settings);
  const auto column = settings.kind == FileKind::kEl ? std::size_t{kElectrophoresisColumn}
                                                     : static_cast<std::size_t>(centerpiece);
  const int channels = ChannelCount(centerpiece);
  std::vector<LoadWindow> windows;
  for (std::size_t c = 0; c < static_cast<std::size_t>(channels); ++c) {
    if (IsCut(settings) && !settings.chkChannel[c]) continue;
    windows.push_back(
        {ChannelLetters[c], ChannelLowRadius[c][column], ChannelHighRadius[c][column]});
  }
  return windows;
}

LoadResult LoadSelectedFile(DatasetStore& store, const ScanLoadSettings& settings,
                            const fs::path& path, Host& host) {
  return Trapped(path, host, [&](LoadResult& result) {
    if (RefuseBinary(path, host)) {
      Note(result, LoadOutcome::kBinary);
      return;
    }
    LoadChannels(store, settings, {path, store.HeaderLine, ElWavelength::kSingleLoad}, host,
                 result);
  });
}

LoadResult LoadNamedFile(DatasetStore& store, const ScanLoadSettings& settings,
                         const fs::path& path, Host& host) {
  return Trapped(path, host, [&](LoadResult& result) {
    std::string header = store.HeaderLine;
    if (settings.kind == FileKind::kIpRa) header = Trim(ReadCommentLines(path).header);
    LoadChannels(store, settings, {path, header, ElWavelength::kMultipleLoad}, host, result);
  });
}

void LoadNamedFiles(DatasetStore& store, const ScanLoadSettings& settings,
                    std::vector<fs::path> paths, Host& host) {
  Lines warnings;
  LoadChecked(store, settings, std::move(paths), warnings, host);
  if (!warnings.Empty()) {
    host.ShowMessage("Load Multiple Files", warnings.Text(), MessageIcon::kExclamation);
  }
}

void LoadDroppedFiles(DatasetStore& store, const ScanLoadSettings& settings,
                      const std::vector<fs::path>& paths, Host& host) {
  std::vector<fs::path> files;
  Lines lines;
  for (const fs::path& path : paths) {
    const std::string reason = ReasonToLeaveOut(path);
    if (reason.empty()) {
      files.push_back(path);
    } else {
      lines.Add(reason);
    }
  }
  const bool refused = !lines.Empty();
  LoadChecked(store, settings, std::move(files), lines, host);
  if (lines.Empty()) return;
  host.ShowMessage(refused ? "Invalid Data File" : "Load Multiple Files", lines.Text(),
                   MessageIcon::kExclamation);
}

LoadResult LoadBlankFile(DatasetStore& store, FileKind kind, const fs::path& path, Host& host) {
  return Trapped(path, host, [&](LoadResult& result) {
    if (RefuseBinary(path, host)) {
      Note(result, LoadOutcome::kBinary);
      return;
    }
    const std::size_t column = kind == FileKind::kEl ? kElectrophoresisColumn : 0;
    const std::string name = BlankName(kind, FileNameOf(path), store.HeaderLine);
    Note(result, LoadDataFile(store, kind, path, name,
                              {ChannelLowRadius[0][column], ChannelHighRadius[0][column]}, host));
  });
}

std::string TakenForText(const DatasetStore& store, int first, FileKind kind) {
  std::set<std::string> files;
  for (auto k = static_cast<std::size_t>(first); k < store.Datasets.size(); ++k) {
    files.insert(PathOf(store.Datasets[k]));
  }
  const std::string path = PathOf(store.Datasets.at(static_cast<std::size_t>(first)));
  std::string text = PathText(PathFromText(path).filename());
  const std::size_t others = files.size() - 1;
  if (others > 0) {
    text += " and " + std::to_string(others) + (others == 1 ? " other file" : " other files");
  }
  return text + (others == 0 ? " was" : " were") + " taken for the file type " + KindName(kind) +
         ".";
}

}  // namespace quorvane
