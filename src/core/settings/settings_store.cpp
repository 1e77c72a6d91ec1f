#include "core/settings/settings_store.h"

#include "base/files.h"
#include "base/text.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestFile = std::size_t{4} << 20U;  // bytes

// The name in a line "[name]", nothing for any other line.
std::optional<std::string> SectionOf(std::string_view line) {
  line = Trim(line);
  if (line.size() < 2 || line.front() != '[' || line.back() != ']') return std::nullopt;
  return ToLower(Trim(line.substr(1, line.size() - 2)));
}

// The place of "=" in a line "key = value" with that key.
std::optional<std::size_t> ValuePlace(std::string_view line, std::string_view key) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || Trim(line.substr(0, equals)) != key) return std::nullopt;
  return equals;
}

std::string Quoted(std::string_view value) {
  const bool plain =
      value.find_first_of("\"\r\n") == std::string_view::npos && Trim(value) == value;
  if (plain) return std::string(value);
  std::string text = "\"";
  for (const char c : value) {
    if (c == '"' || c == '\\') text += '\\';
    if (c == '\n' || c == '\r') {
      text += c == '\n' ? "\\n" : "\\r";
    } else {
      text += c;
    }
  }
  return text + '"';
}

std::string Unquoted(std::string_view text) {
  text = Trim(text);
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') return std::string(text);
  std::string value;
  for (std::size_t k = 1; k + 1 < text.size(); ++k) {
    if (text[k] != '\\' || k + 2 >= text.size()) {
      value += text[k];
      continue;
    }
    ++k;
    value += text[k] == 'n' ? '\n' : text[k] == 'r' ? '\r' : text[k];
  }
  return value;
}

// The lines [first, last) of the section, without its head; first = last = size if it is absent.
struct LineRange {
  std::size_t first;
  std::size_t last;
};

LineRange FindSection(const std::vector<std::string>& lines, std::string_view section) {
  const std::string wanted = ToLower(section);
  for (std::size_t k = 0; k < lines.size(); ++k) {
    if (SectionOf(lines[k]) != wanted) continue;
    std::size_t end = k + 1;
    while (end < lines.size() && !SectionOf(lines[end])) ++end;
    return {k + 1, end};
  }
  return {lines.size(), lines.size()};
}

void SetLine(std::vector<std::string>& lines, std::string_view section,
             const SettingsEntry& entry) {
  LineRange range = FindSection(lines, section);
  if (range.first == lines.size() &&
      (lines.empty() || SectionOf(lines.back()) != ToLower(section))) {
    lines.push_back("[" + std::string(section) + "]");
    range = {lines.size(), lines.size()};
  }
  const std::string line = entry.key + "=" + Quoted(entry.value);
  for (std::size_t k = range.first; k < range.last; ++k) {
    if (ValuePlace(lines[k], entry.key)) {
      lines[k] = line;
      return;
    }
  }
  while (range.last > range.first && Trim(lines[range.last - 1]).empty()) --range.last;
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(range.last), line);
}

}  // namespace

std::vector<std::string> IniSettings::ReadLines() const {
  std::vector<std::string> lines;
  if (!FileExists(path_)) return lines;
  const std::string text = WithUnixLines(ReadWholeFile(path_, kLongestFile));
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

std::optional<std::string> IniSettings::Get(std::string_view section, std::string_view key) const {
  try {
    const std::vector<std::string> lines = ReadLines();
    const LineRange range = FindSection(lines, section);
    for (std::size_t k = range.first; k < range.last; ++k) {
      if (const std::optional<std::size_t> at = ValuePlace(lines[k], key)) {
        return Unquoted(std::string_view(lines[k]).substr(*at + 1));
      }
    }
  } catch (const FileFault&) {
  }
  return std::nullopt;
}

void IniSettings::Set(std::string_view section, std::span<const SettingsEntry> entries) {
  std::vector<std::string> lines = ReadLines();
  for (const SettingsEntry& entry : entries) SetLine(lines, section, entry);
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  std::error_code error;
  fs::create_directories(path_.parent_path(), error);
  WriteWholeFile(path_, text);
}

}  // namespace quorvane
