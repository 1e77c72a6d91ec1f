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

std::vector<std::string> CsvFields(std::string_view line) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t k = 0; k < line.size(); ++k) {
    const char c = line[k];
    if (c == '"' && quoted && k + 1 < line.size() && line[k + 1] == '"') {
      fields.back() += line[++k];
    } else if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

}  // namespace quorvane
