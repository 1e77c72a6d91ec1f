#include "scan/loading.h"

#include <algorithm>

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/host.h"
#include "base/text.h"

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

// Each chosen channel of the file, in the order of the letters.
// The centerpiece by which a file is cut into its channels.
Centerpiece CutAs(const ScanLoadSettings& settings) {
  return settings.kind == FileKind::kIpRa ? settings.centerpiece : Centerpiece::kTwoChannels;
}

void LoadChannels(DatasetStore& store, const ScanLoadSettings& settings, const fs::path& path,
                  const std::string& header, ElWavelength elWavelength, Host& host,
                  LoadResult& result) {
  for (const LoadWindow& window : WindowsOf(settings)) {
    const std::string name =
        DatasetName(settings.kind, FileNameOf(path), header, window.letter, elWavelength);
    const LoadOutcome outcome =
        LoadDataFile(store, settings.kind, path, name, window.low, window.high, host);
    Note(result, outcome);
    if (!FileExists(path)) return;  // the other windows would only say it again
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
    LoadChannels(store, settings, path, store.HeaderLine, ElWavelength::kSingleLoad, host, result);
  });
}

LoadResult LoadNamedFile(DatasetStore& store, const ScanLoadSettings& settings,
                         const fs::path& path, Host& host) {
  return Trapped(path, host, [&](LoadResult& result) {
    std::string header = store.HeaderLine;
    if (settings.kind == FileKind::kIpRa) header = Trim(ReadCommentLines(path).header);
    LoadChannels(store, settings, path, header, ElWavelength::kMultipleLoad, host, result);
  });
}

void LoadNamedFiles(DatasetStore& store, const ScanLoadSettings& settings,
                    std::vector<fs::path> paths, Host& host) {
  std::stable_sort(paths.begin(), paths.end(), [](const fs::path& a, const fs::path& b) {
    return FileNameOf(a) < FileNameOf(b);
  });
  for (const fs::path& path : paths) LoadNamedFile(store, settings, path, host);
}

void LoadDroppedFiles(DatasetStore& store, const ScanLoadSettings& settings,
                      const std::vector<fs::path>& paths, Host& host) {
  constexpr int kMostNamed = 10;  // more would not fit a message box
  std::vector<fs::path> files;
  std::string refusals;
  int refused = 0;
  for (const fs::path& path : paths) {
    const std::string reason = ReasonToLeaveOut(path);
    if (reason.empty()) {
      files.push_back(path);
    } else if (++refused <= kMostNamed) {
      refusals += (refused > 1 ? "\r\n" : "") + reason;
    }
  }
  LoadNamedFiles(store, settings, std::move(files), host);
  if (refused > kMostNamed) {
    refusals += "\r\nand " + std::to_string(refused - kMostNamed) + " more";
  }
  if (refused > 0) host.ShowMessage("Invalid Data File", refusals, MessageIcon::kExclamation);
}

LoadResult LoadBlankFile(DatasetStore& store, FileKind kind, const fs::path& path, Host& host) {
  return Trapped(path, host, [&](LoadResult& result) {
    if (RefuseBinary(path, host)) {
      Note(result, LoadOutcome::kBinary);
      return;
    }
    const std::size_t column = kind == FileKind::kEl ? kElectrophoresisColumn : 0;
    const std::string name = BlankName(kind, FileNameOf(path), store.HeaderLine);
    Note(result, LoadDataFile(store, kind, path, name, ChannelLowRadius[0][column],
                              ChannelHighRadius[0][column], host));
  });
}
