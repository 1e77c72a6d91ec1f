#include "job/scan_source.h"

#include <algorithm>

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/text.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

ScanLoadSettings OneChannel(FileKind kind, Centerpiece centerpiece, std::size_t channel) {
  ScanLoadSettings settings{kind, centerpiece, {}};
  settings.chkChannel[channel] = true;
  return settings;
}

// All ways to load a dataset from a file, those of the kind and centerpiece of `like` first.
std::vector<ScanLoadSettings> WaysLike(const ScanLoadSettings& like) {
  std::vector<ScanLoadSettings> ways;
  for (const Centerpiece piece :
       {Centerpiece::kTwoChannels, Centerpiece::kSixChannels, Centerpiece::kEightChannels}) {
    for (int channel = 0; channel < ChannelCount(piece); ++channel) {
      ways.push_back(OneChannel(FileKind::kIpRa, piece, static_cast<std::size_t>(channel)));
    }
  }
  for (const FileKind kind : {FileKind::kDat, FileKind::kFi, FileKind::kEl}) {
    ways.push_back(OneChannel(kind, Centerpiece::kTwoChannels, 0));
  }
  std::stable_partition(ways.begin(), ways.end(), [&](const ScanLoadSettings& way) {
    return way.kind == like.kind && way.centerpiece == like.centerpiece;
  });
  return ways;
}

bool SameNumbers(const Dataset& fresh, const Dataset& dataset) {
  if (fresh.NumPoints != dataset.NumPoints) return false;
  const auto same = [n = dataset.NumPoints](const auto& one, const auto& other) {
    return std::equal(one.begin(), one.begin() + n, other.begin());
  };
  return same(fresh.R, dataset.R) && (IsBlanked(dataset) || same(fresh.C, dataset.C));
}

// Whether the load gives the dataset. Throws FileFault, ArithmeticFault.
bool Gives(const JobLoad& load, const Dataset& dataset) {
  const LoadWindow window = WindowsOf(load.settings).front();
  std::ifstream in = OpenScan(load.file);
  return SameNumbers(ReadDataset(load.settings.kind, in, load.file, window.low, window.high),
                     dataset);
}

// The name that the load gives. Throws FileFault, ArithmeticFault.
std::string NameFrom(const JobLoad& load) {
  const std::string file = Utf8ToCp1252(PathText(load.file.filename()));
  const std::string header(Trim(ReadCommentLines(load.file).header));
  if (load.blank) return BlankName(load.settings.kind, file, header);
  return DatasetName(load.settings.kind, file, header, WindowsOf(load.settings).front().letter,
                     ElWavelength::kSingleLoad);
}

}  // namespace

std::optional<JobLoad> SourceOf(const Dataset& dataset, const ScanLoadSettings& like) {
  std::optional<JobLoad> found;
  const std::string name(Trim(dataset.FileName.View()));
  for (const ScanLoadSettings& way : WaysLike(like)) {
    JobLoad load{PathFromText(PathOf(dataset)), way, IsCut(way), IsBlank(dataset)};
    // A blank is one dataset of the whole window.
    if (load.blank && way.centerpiece != Centerpiece::kTwoChannels) continue;
    try {
      if (!Gives(load, dataset)) continue;
      const bool named = NameFrom(load) == name;
      if (named || !found) found = std::move(load);
      if (named) break;
    } catch (const FileFault&) {  // not this way
    } catch (const ArithmeticFault&) {
    }
  }
  return found;
}

std::vector<JobLoad> JoinChannels(const std::vector<JobLoad>& loads) {
  std::vector<JobLoad> joined;
  int last = kMaxChannels;  // channel of the load before
  for (const JobLoad& load : loads) {
    const auto& chosen = load.settings.chkChannel;
    const auto channel =
        static_cast<int>(std::find(chosen.begin(), chosen.end(), true) - chosen.begin());
    const bool more = channel > last && joined.back().file == load.file && IsCut(load.settings) &&
                      joined.back().settings.centerpiece == load.settings.centerpiece;
    if (more) {
      joined.back().settings.chkChannel[static_cast<std::size_t>(channel)] = true;
    } else {
      joined.push_back(load);
    }
    last = channel;
  }
  return joined;
}

}  // namespace quorvane
