#include "job/load_words.h"

#include <algorithm>
#include <array>

#include "base/files.h"
#include "scan/file_list.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

// By Centerpiece.
constexpr std::array<const char*, 3> kCenterpieces = {"2 channels", "6 channels", "8 channels"};

FileKind KindOf(const LoadWords& words, const fs::path& file, const TableReader& table) {
  if (words.kind) {
    for (const FileKind kind : {FileKind::kIpRa, FileKind::kDat, FileKind::kFi, FileKind::kEl}) {
      if (*words.kind == KindName(kind)) return kind;
    }
    table.Fail("kind", "\"IP,RA\", \"DAT\", \"FI\" or \"EL\" is wanted");
  }
  return KindOfExtension(file).value_or(FileKind::kDat);
}

}  // namespace

Centerpiece CenterpieceOf(const std::string& word, const TableReader& table) {
  for (std::size_t k = 0; k < kCenterpieces.size(); ++k) {
    if (word == kCenterpieces[k]) return static_cast<Centerpiece>(k);
  }
  table.Fail("centerpiece", "\"2 channels\", \"6 channels\" or \"8 channels\" is wanted");
}

const char* WordOf(Centerpiece centerpiece) {
  return kCenterpieces[static_cast<std::size_t>(centerpiece)];
}

ScanLoadSettings LoadSettingsOf(const LoadWords& words, const fs::path& file,
                                const TableReader& table) {
  ScanLoadSettings settings;
  settings.kind = KindOf(words, file, table);
  if (words.centerpiece) settings.centerpiece = CenterpieceOf(*words.centerpiece, table);
  // Where nothing is cut any channel that some cell has is taken, and none counts.
  const auto count = IsCut(settings) ? static_cast<std::size_t>(ChannelCount(settings.centerpiece))
                                     : ChannelLetters.size();
  for (std::size_t c = 0; c < settings.chkChannel.size(); ++c) {
    settings.chkChannel[c] = c < count && !words.channels;
  }
  if (!words.channels) return settings;
  if (words.channels->empty()) table.Fail("channels", "at least one channel is wanted");
  for (const std::string& channel : *words.channels) {
    const auto end = ChannelLetters.begin() + static_cast<std::ptrdiff_t>(count);
    const auto found =
        channel.size() == 1 ? std::find(ChannelLetters.begin(), end, channel[0]) : end;
    if (found == end) {
      table.Fail("channels", "\"" + channel + "\" is no channel of this centerpiece");
    }
    settings.chkChannel[static_cast<std::size_t>(found - ChannelLetters.begin())] = true;
  }
  return settings;
}

std::string PathInJob(const fs::path& file, const fs::path& folder) {
  const fs::path relative = file.lexically_relative(folder);
  const bool below = !relative.empty() && *relative.begin() != "..";
  return PathText((below ? relative : file).generic_u8string());  // "/" on every system
}

void WriteLoadWords(const ScanLoadSettings& settings, TomlWriter& out) {
  out.Key("kind", KindName(settings.kind));
  if (settings.kind != FileKind::kIpRa) return;  // nothing is cut
  out.Key("centerpiece", WordOf(settings.centerpiece));
  std::vector<std::string> channels;
  if (IsCut(settings)) {
    for (const LoadWindow& window : WindowsOf(settings)) channels.emplace_back(1, window.letter);
  }
  if (!channels.empty()) out.Key("channels", channels);
}

}  // namespace quorvane
