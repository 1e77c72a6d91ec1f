#include "scan/text_import.h"

#include <algorithm>
#include <map>
#include <set>

#include "base/files.h"
#include "base/number_format.h"
#include "base/text.h"
#include "scan/import_columns.h"
#include "scan/import_header.h"
#include "scan/import_rows.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

// The work on one text.
class Understanding {
 public:
  Understanding(const ImportChoices& choices, const fs::path& source, const fs::path& target)
      : choices_(choices), source_(source), target_(target) {}

  TextImport Run(std::string_view bytes) {
    if (const std::string refusal = RefusalOfText(bytes); !refusal.empty()) {
      return Given(ImportState::kUnreadable, refusal);
    }
    if (const std::string refusal = RefusalOfChoices(choices_); !refusal.empty()) {
      return Given(ImportState::kBadChoice, refusal);
    }
    lines_ = TextLines(bytes);
    headed_ = TakeImportHeader(lines_, choices_, source_, target_, result_);
    if (result_.state == ImportState::kReady && FindColumns() && CheckColumns())
      ReadImportRows(lines_, result_);
    return std::move(result_);
  }

 private:
  TextImport Given(ImportState state, std::string fault) {
    Fail(state, std::move(fault));
    return std::move(result_);
  }
  void Fail(ImportState state, std::string fault) {
    result_.state = state;
    result_.fault = std::move(fault);
  }
  void Remark(std::string sentence) { result_.remarks.push_back(std::move(sentence)); }

  std::vector<int> NeededColumns() const {
    std::vector<int> columns = {result_.columns.radius, result_.columns.signal};
    if (result_.columns.reference) columns.push_back(*result_.columns.reference);
    return columns;
  }

  static std::optional<int> ColumnOf(const std::optional<int>& chosen) {
    return chosen == 0 ? std::nullopt : chosen;
  }

  void TakeColumns(const HeadedColumns& headed) {
    ImportColumns& columns = result_.columns;
    columns.radius = choices_.radius.value_or(headed.radius.value_or(1));
    columns.signal = choices_.signal.value_or(headed.signal.value_or(2));
    columns.error = ColumnOf(choices_.error ? choices_.error : headed.error);
    columns.reference = ColumnOf(choices_.reference);
  }

  // The lines that may be rows, for the search of the form.
  std::vector<std::string> SomeRows() const {
    constexpr std::size_t kMost = 4000;
    const auto from = std::min(static_cast<std::size_t>(choices_.skip.value_or(0)), lines_.size());
    return {lines_.begin() + static_cast<std::ptrdiff_t>(from),
            lines_.begin() + static_cast<std::ptrdiff_t>(std::min(from + kMost, lines_.size()))};
  }

  // Form, columns and the first row: by default columns 1 and 2, or those that headings name.
  bool FindColumns() {
    if (choices_.skip && static_cast<std::size_t>(*choices_.skip) >= lines_.size()) {
      Fail(ImportState::kBadChoice, "there are only " + Counted(lines_.size(), "line"));
      return false;
    }
    const std::vector<std::string> rows = SomeRows();
    TakeColumns({});
    FoundForm found = FindForm(rows, NeededColumns(), choices_.form);
    if (!found.form && found.why.empty()) {
      TakeColumns(FindHeadedColumns(lines_));
      found = FindForm(rows, NeededColumns(), choices_.form);
    }
    if (!found.form) {
      Fail(found.why.empty() ? ImportState::kUnreadable : ImportState::kAmbiguous,
           found.why.empty() ? NoRowText() : found.why);
      return false;
    }
    result_.form = *found.form;
    FindFirstRow();
    TakeHeadings(rows);
    return true;
  }

  std::string NoRowText() const {
    std::string columns;
    for (const int column : NeededColumns()) {
      columns += (columns.empty() ? "" : ", ") + std::to_string(column);
    }
    const bool commas = choices_.form.decimal == DecimalSign::kComma;
    return "no line has a number in each of the columns " + columns +
           (commas
                ? "; a comma cannot be separator and decimal sign, unless the fields are in quotes"
                : "");
  }

  bool HasNumbers(const std::vector<std::string>& fields) const {
    for (const int column : NeededColumns()) {
      const auto place = static_cast<std::size_t>(column) - 1;
      if (place >= fields.size() || !NumberOf(fields[place], result_.form.decimal)) return false;
    }
    return true;
  }

  void FindFirstRow() {
    std::map<std::size_t, std::size_t> widths;  // how many rows have so many columns
    std::optional<std::size_t> first;
    for (std::size_t k = static_cast<std::size_t>(choices_.skip.value_or(0)); k < lines_.size();
         ++k) {
      if (!IsRow(lines_[k])) continue;
      const std::vector<std::string> fields = FieldsOf(lines_[k], result_.form.separator);
      if (!HasNumbers(fields)) continue;
      if (!first) first = k;
      ++widths[fields.size()];
    }
    result_.skipped =
        choices_.skip ? static_cast<std::size_t>(*choices_.skip) : BeginOfRows(first.value_or(0));
    const auto fewer = [](const auto& a, const auto& b) { return a.second < b.second; };
    const auto most = std::max_element(widths.begin(), widths.end(), fewer);
    result_.width = most == widths.end() ? 0 : static_cast<int>(most->first);
  }

  // Lines just before the first row that can be read are rows too if they have a radius.
  std::size_t BeginOfRows(std::size_t first) const {
    const auto column = static_cast<std::size_t>(result_.columns.radius) - 1;
    for (std::size_t k = first; k > 0; --k) {
      if (!IsRow(lines_[k - 1])) continue;
      const std::vector<std::string> fields = FieldsOf(lines_[k - 1], result_.form.separator);
      if (column >= fields.size() || !NumberOf(fields[column], result_.form.decimal)) break;
      first = k - 1;
    }
    return first;
  }

  // The line before the first row, if it has a heading for each column; they may name other ones.
  void TakeHeadings(const std::vector<std::string>& rows) {
    if (result_.skipped == 0) return;
    std::vector<std::string> headings =
        HeadingsOf(lines_[result_.skipped - 1], result_.form.separator);
    const HeadedColumns headed = ColumnsNamedBy(headings);
    if (headings.size() != static_cast<std::size_t>(result_.width)) return;
    result_.headings = std::move(headings);
    const ImportColumns before = result_.columns;
    TakeColumns(headed);
    if (headed.reference && !choices_.reference) {
      Remark("Column " + std::to_string(*headed.reference) +
             " is headed as a reference, and none is chosen.");
    }
    if (result_.columns.radius == before.radius && result_.columns.signal == before.signal) return;
    const FoundForm found = FindForm(rows, NeededColumns(), {result_.form.separator, {}});
    if (found.form) result_.form = *found.form;
    FindFirstRow();
  }

  // The third column of a scan is the standard deviation; that of any other table is not taken
  // unasked.
  bool CheckColumns() {
    ImportColumns& columns = result_.columns;
    constexpr int kColumnsOfScan = 3;
    const bool scan = headed_ && result_.width == kColumnsOfScan && columns.radius == 1 &&
                      columns.signal == 2 && !columns.reference;
    if (scan && !choices_.error && !columns.error) columns.error = kColumnsOfScan;
    std::set<int> used;
    for (const std::optional<int>& column :
         {std::optional(columns.radius), std::optional(columns.signal), columns.error,
          columns.reference}) {
      if (!column) continue;
      if (!used.insert(*column).second) {
        Fail(ImportState::kBadChoice,
             "column " + std::to_string(*column) + " cannot serve twice: choose another");
        return false;
      }
      if (*column > result_.width) {
        Fail(ImportState::kBadChoice, "there is no column " + std::to_string(*column) +
                                          "; the rows have " + std::to_string(result_.width));
        return false;
      }
    }
    std::vector<std::size_t> unused;
    for (int column = 1; column <= result_.width; ++column) {
      if (!used.contains(column)) unused.push_back(static_cast<std::size_t>(column));
    }
    if (!unused.empty()) Remark("Columns that are not used: " + RangesText(unused) + ".");
    return true;
  }

  const ImportChoices& choices_;
  const fs::path& source_;
  const fs::path& target_;
  std::vector<std::string> lines_;
  bool headed_ = false;  // there is the header line of a scan
  TextImport result_;
};

}  // namespace

std::string RefusalOfText(std::string_view bytes) {
  if (bytes.empty()) return "the file is empty";
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    return "the text has two bytes a character (UTF-16): save it as UTF-8 or plain text";
  }
  const bool control = std::any_of(bytes.begin(), bytes.end(), [](char c) {
    return c >= 0 && c < ' ' && c != '\t' && c != '\r' && c != '\n' && c != '\f';
  });
  return control ? "it is a binary file" : "";
}

std::string RefusalOfChoices(const ImportChoices& choices) {
  const auto beyond = [](const auto& value, double low, double high) {
    return value && !(*value >= low && *value <= high);
  };
  constexpr int kMostColumn = 10000;
  for (const std::optional<int>& column : {choices.radius, choices.signal}) {
    if (beyond(column, 1, kMostColumn)) return "columns are counted from 1";
  }
  for (const std::optional<int>& column : {choices.error, choices.reference}) {
    if (beyond(column, 0, kMostColumn)) return "columns are counted from 1, and 0 is none";
  }
  if (choices.skip && *choices.skip < 0) return "the lines to skip cannot be fewer than 0";
  if (beyond(choices.cell, 1, kMostCell)) return "the cell must be 1 to 8";
  if (beyond(choices.speed, 0, kMostSpeed)) return "the speed must be 0 to 99999 rpm";
  if (beyond(choices.wavelength, 0, kMostWavelength)) return "the wavelength must be 0 to 999 nm";
  if (beyond(choices.temperature, 0, kMostTemperature)) {
    return "the temperature must be 0 to 99.9 deg C";
  }
  if (!choices.comment) return {};
  const std::string bytes = Utf8ToCp1252(*choices.comment);
  const bool control =
      std::any_of(bytes.begin(), bytes.end(), [](char c) { return c >= 0 && c < ' '; });
  if (control) return "the comment must be one line, without TABs";
  return bytes.size() > kMostComment ? "the comment must have at most 200 characters" : "";
}

TextImport UnderstandText(std::string_view bytes, const ImportChoices& choices,
                          const fs::path& source, const fs::path& target) {
  return Understanding(choices, source, target).Run(bytes);
}

TextImport UnderstandFile(const fs::path& source, const ImportChoices& choices,
                          const fs::path& target) {
  constexpr std::size_t kMostBytes = std::size_t{32} << 20U;
  try {
    return UnderstandText(ReadWholeFile(source, kMostBytes), choices, source, target);
  } catch (const FileFault& fault) {
    TextImport import;
    import.state = ImportState::kUnreadable;
    import.fault = fault.what();
    const std::string name = PathText(source) + ": ";
    if (import.fault.starts_with(name)) import.fault.erase(0, name.size());
    return import;
  }
}

std::string ScanFileOf(const TextImport& import) {
  std::string text = Utf8ToCp1252(import.comment);
  text.append(kLineBreak).append(HeaderLine(import.header)).append(kLineBreak);
  for (const ImportedRow& row : import.rows) {
    text.append(PointLine(row.r, row.c, row.err)).append(kLineBreak);
  }
  return text;
}

std::string FormText(const TextImport& import) {
  const ImportColumns& columns = import.columns;
  std::string text = std::string("separator ") + NameOf(import.form.separator) + ", decimal " +
                     NameOf(import.form.decimal) + "; radius from column " +
                     std::to_string(columns.radius) + ", signal from column " +
                     std::to_string(columns.signal);
  if (columns.error) text += ", standard deviation from column " + std::to_string(*columns.error);
  if (columns.reference) {
    text += ", signal = log10(reference / signal) with the reference from column " +
            std::to_string(*columns.reference);
  }
  if (import.skipped == 0) return text;
  return text + "; " + Counted(import.skipped, "line") + " before the first row";
}

std::vector<std::string> UnreadableTexts(const TextImport& import) {
  constexpr std::size_t kMost = 20;
  std::vector<std::pair<std::string, std::vector<std::size_t>>> reasons;
  std::size_t left = 0;
  for (const UnreadableRow& row : import.unreadable) {
    const auto same = std::find_if(reasons.begin(), reasons.end(),
                                   [&](const auto& reason) { return reason.first == row.reason; });
    if (same != reasons.end()) {
      same->second.push_back(row.line);
    } else if (reasons.size() < kMost) {
      reasons.push_back({row.reason, {row.line}});
    } else {
      ++left;
    }
  }
  std::vector<std::string> texts;
  texts.reserve(reasons.size() + 1);
  for (const auto& [reason, lines] : reasons) {
    texts.push_back((lines.size() == 1 ? "line " : "lines ") + RangesText(lines) + ": " + reason);
  }
  if (left > 0) texts.push_back("and " + Counted(left, "row") + " for other reasons");
  return texts;
}

}  // namespace quorvane
