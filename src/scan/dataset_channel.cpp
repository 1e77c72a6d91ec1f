#include "scan/dataset_channel.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "base/text.h"

namespace quorvane {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// "12_3B20280.dat": behind the last "_" cell, letter, and then digits up to the extension.
std::optional<CellChannel> ChannelOfName(std::string_view name) {
  const std::size_t mark = name.rfind('_');
  if (mark == std::string_view::npos) return std::nullopt;
  const std::string_view tail = name.substr(mark + 1, name.find('.', mark) - mark - 1);
  if (tail.size() < 3 || !IsDigit(tail[0]) || !IsLetter(tail[1])) return std::nullopt;
  if (!std::all_of(tail.begin() + 2, tail.end(), IsDigit)) return std::nullopt;
  return CellChannel{tail[0] - '0',
                     static_cast<char>(std::toupper(static_cast<unsigned char>(tail[1])))};
}

// "R 2 20.0 10000 ...": the letter of the optics, then the cell in a column of its own.
std::optional<int> CellOfHeader(std::string_view header) {
  if (header.size() < 4 || !IsLetter(header[0]) || header[1] != ' ' || header[3] != ' ') {
    return std::nullopt;
  }
  if (!IsDigit(header[2]) || header[2] == '0') return std::nullopt;
  return header[2] - '0';
}

}  // namespace

CellChannel ChannelOf(const Dataset& dataset) {
  if (const auto named = ChannelOfName(Trim(dataset.FileName.View()))) return *named;
  return {CellOfHeader(dataset.Comment2.View()), std::nullopt};
}

std::vector<int> OthersOfChannel(const std::vector<Dataset>& datasets, int position,
                                 ChannelReach reach) {
  std::vector<int> others;
  const CellChannel own = ChannelOf(datasets[static_cast<std::size_t>(position)]);
  if (!own.letter) return others;
  for (int k = 0; k < static_cast<int>(datasets.size()); ++k) {
    const Dataset& dataset = datasets[static_cast<std::size_t>(k)];
    if (k == position || IsBlank(dataset)) continue;
    const CellChannel channel = ChannelOf(dataset);
    if (channel.letter != own.letter) continue;
    if (reach == ChannelReach::kAllCells || channel.cell == own.cell) others.push_back(k);
  }
  return others;
}

}  // namespace quorvane
