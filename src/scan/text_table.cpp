#include "scan/text_table.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace quorvane {

namespace {

constexpr std::array<const char*, kSeparators> kSeparatorNames = {"comma", "semicolon", "TAB",
                                                                  "blanks"};
constexpr std::array<const char*, kDecimalSigns> kDecimalNames = {"point", "comma"};

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool Separates(char c, Separator separator) {
  switch (separator) {
    case Separator::kComma:
      return c == ',';
    case Separator::kSemicolon:
      return c == ';';
    case Separator::kTab:
      return c == '\t';
    case Separator::kBlanks:
      break;
  }
  return IsBlank(c);
}

std::string WithoutQuotes(std::string_view field) {
  field = WithoutBlanks(field);
  if (field.size() < 2 || field.front() != '"' || field.back() != '"') return std::string(field);
  return std::string(WithoutBlanks(field.substr(1, field.size() - 2)));
}

// The numbers that a form reads from the chosen columns, row by row.
struct Reading {
  TextForm form;
  std::size_t rows = 0;
  std::vector<double> values;
};

Reading Read(const std::vector<std::string>& lines, const std::vector<int>& columns,
             const TextForm& form) {
  Reading reading{form, 0, {}};
  std::vector<double> row;
  const bool commaIsBoth =
      form.separator == Separator::kComma && form.decimal == DecimalSign::kComma;
  for (const std::string& line : lines) {
    if (!IsRow(line) || (commaIsBoth && line.find('"') == std::string::npos)) continue;
    const std::vector<std::string> fields = FieldsOf(line, form.separator);
    row.clear();
    for (const int column : columns) {
      const auto place = static_cast<std::size_t>(column) - 1;
      const std::optional<double> value =
          place < fields.size() ? NumberOf(fields[place], form.decimal) : std::nullopt;
      if (value) row.push_back(*value);
    }
    if (row.size() < columns.size()) continue;
    reading.values.insert(reading.values.end(), row.begin(), row.end());
    ++reading.rows;
  }
  return reading;
}

// Between TABs a column may be empty, where blanks would close the gap.
void PreferTabs(std::vector<Reading>& readings) {
  std::size_t byTabs = 0;
  for (const Reading& reading : readings) {
    if (reading.form.separator == Separator::kTab) byTabs = std::max(byTabs, reading.rows);
  }
  std::erase_if(readings, [byTabs](const Reading& reading) {
    return reading.form.separator == Separator::kBlanks && byTabs > 0 && 2 * byTabs >= reading.rows;
  });
}

// The form read best first; among equals the one that says more.
std::vector<Reading> AllReadings(const std::vector<std::string>& lines,
                                 const std::vector<int>& columns, const KnownForm& known) {
  std::vector<Reading> readings;
  for (const Separator separator :
       {Separator::kSemicolon, Separator::kTab, Separator::kComma, Separator::kBlanks}) {
    for (const DecimalSign decimal : {DecimalSign::kPoint, DecimalSign::kComma}) {
      if (known.separator.value_or(separator) != separator) continue;
      if (known.decimal.value_or(decimal) != decimal) continue;
      readings.push_back(Read(lines, columns, {separator, decimal}));
    }
  }
  PreferTabs(readings);
  std::stable_sort(readings.begin(), readings.end(),
                   [](const Reading& a, const Reading& b) { return a.rows > b.rows; });
  return readings;
}

// Commas alone, where three or more fields may as well be half as many with decimal commas.
bool MayBeDecimals(const std::vector<std::string>& lines, const TextForm& form) {
  if (form.separator != Separator::kComma) return false;
  std::size_t most = 0;
  for (const std::string& line : lines) {
    const std::vector<std::string> fields = FieldsOf(line, form.separator);
    if (!IsRow(line) || fields.empty() || !NumberOf(fields.front(), form.decimal)) continue;
    if (line.find_first_of(".\"") != std::string::npos) return false;
    most = std::max(most, fields.size());
  }
  return most > 2;
}

std::string Shown(const TextForm& form) {
  return std::string("separator ") + NameOf(form.separator) + " with decimal " +
         NameOf(form.decimal);
}

template <class Value, std::size_t N>
std::optional<Value> Named(const std::array<const char*, N>& names, std::string_view name) {
  for (std::size_t k = 0; k < N; ++k) {
    if (ToLower(names[k]) == ToLower(name)) return static_cast<Value>(k);
  }
  return std::nullopt;
}

}  // namespace

const char* NameOf(Separator separator) {
  return kSeparatorNames[static_cast<std::size_t>(separator)];
}

const char* NameOf(DecimalSign decimal) {
  return kDecimalNames[static_cast<std::size_t>(decimal)];
}

std::optional<Separator> SeparatorOf(std::string_view name) {
  return Named<Separator>(kSeparatorNames, name);
}

std::optional<DecimalSign> DecimalSignOf(std::string_view name) {
  return Named<DecimalSign>(kDecimalNames, name);
}

std::vector<std::string> TextLines(std::string_view bytes) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  const std::string text = WithUnixLines(bytes);
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  while (!lines.empty() && WithoutBlanks(lines.back()).empty()) lines.pop_back();
  return lines;
}

bool IsRow(std::string_view line) {
  line = WithoutBlanks(line);
  return !line.empty() && line.front() != '#' && line.front() != '%' && !line.starts_with("//");
}

std::vector<std::string> FieldsOf(std::string_view line, Separator separator) {
  std::vector<std::string> fields;
  if (separator == Separator::kBlanks) line = WithoutBlanks(line);
  std::size_t start = 0;
  bool quoted = false;
  for (std::size_t k = 0; k <= line.size(); ++k) {
    const bool end = k == line.size();
    if (!end && line[k] == '"') quoted = !quoted;
    if (!end && (quoted || !Separates(line[k], separator))) continue;
    const bool gap = separator == Separator::kBlanks && k == start;  // between two separators
    if (!gap) fields.push_back(WithoutQuotes(line.substr(start, k - start)));
    start = k + 1;
  }
  while (!fields.empty() && fields.back().empty()) fields.pop_back();
  return fields;
}

std::optional<double> NumberOf(std::string field, DecimalSign decimal) {
  if (decimal == DecimalSign::kComma) {
    if (field.find('.') != std::string::npos) return std::nullopt;
    std::replace(field.begin(), field.end(), ',', '.');
  }
  return ParseNumeric(field);
}

FoundForm FindForm(const std::vector<std::string>& lines, const std::vector<int>& columns,
                   const KnownForm& known) {
  const std::vector<Reading> readings = AllReadings(lines, columns, known);
  const Reading& best = readings.front();
  if (best.rows == 0) return {};
  for (const Reading& other : readings) {
    if (other.rows < best.rows || other.values == best.values) continue;
    return {std::nullopt, "the rows can be read with " + Shown(best.form) + ", and with " +
                              Shown(other.form) + ": choose one of them"};
  }
  if (!known.decimal && MayBeDecimals(lines, best.form)) {
    return {std::nullopt, "the commas can be separators or decimal signs: choose the decimal sign"};
  }
  return {best.form, {}};
}

}  // namespace quorvane
