#include "base/csv.h"

#include <array>
#include <charconv>

namespace quorvane {

std::string CsvText(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string CsvNumber(double value) {
  std::array<char, 40> text{};
  const auto result =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17);
  return {text.data(), result.ptr};
}

}  // namespace quorvane
