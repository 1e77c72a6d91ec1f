#include "scan/header_words.h"

#include <algorithm>
#include <cctype>

#include "base/text.h"

namespace quorvane {

std::vector<std::string_view> Words(std::string_view line) {
  constexpr std::string_view kBreaks = " \t\r,;";
  std::vector<std::string_view> words;
  std::size_t at = line.find_first_not_of(kBreaks);
  while (at != std::string_view::npos) {
    const std::size_t end = std::min(line.find_first_of(kBreaks, at), line.size());
    words.push_back(line.substr(at, end - at));
    at = line.find_first_not_of(kBreaks, end);
  }
  return words;
}

std::optional<double> NumberAt(const std::vector<std::string_view>& words, std::size_t place) {
  return place < words.size() ? ParseNumeric(words[place]) : std::nullopt;
}

bool HasDecimalCommas(std::string_view line) {
  return line.find(',') != std::string_view::npos && line.find('.') == std::string_view::npos;
}

std::string WithPoints(std::string line) {
  if (HasDecimalCommas(line)) std::replace(line.begin(), line.end(), ',', '.');
  return line;
}

std::optional<HeaderWords> ReadHeaderWords(std::string_view line) {
  const std::string text = WithPoints(std::string(line));
  const std::vector<std::string_view> words = Words(text);
  const std::optional<double> cell = NumberAt(words, 1);
  const std::optional<double> temperature = NumberAt(words, 2);
  const std::optional<double> speed = NumberAt(words, 3);
  if (!cell || !temperature || !speed || words[0].size() != 1 ||
      std::isalpha(static_cast<unsigned char>(words[0][0])) == 0) {
    return std::nullopt;
  }
  constexpr double kMostCell = 1e6;
  return HeaderWords{words[0][0],        static_cast<int>(std::clamp(*cell, -kMostCell, kMostCell)),
                     *temperature,       *speed,
                     NumberAt(words, 4), NumberAt(words, 5),
                     NumberAt(words, 6)};
}

}  // namespace quorvane
