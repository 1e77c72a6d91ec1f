// Delimited text: its lines, the fields of a line, and which separator and decimal sign read it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

enum class Separator { kComma, kSemicolon, kTab, kBlanks };
enum class DecimalSign { kPoint, kComma };

inline constexpr int kSeparators = 4;
inline constexpr int kDecimalSigns = 2;

// "comma", "semicolon", "TAB", "blanks"; "point", "comma".
const char* NameOf(Separator separator);
const char* NameOf(DecimalSign decimal);
std::optional<Separator> SeparatorOf(std::string_view name);  // in any case
std::optional<DecimalSign> DecimalSignOf(std::string_view name);

struct TextForm {
  Separator separator = Separator::kComma;
  DecimalSign decimal = DecimalSign::kPoint;
  bool operator==(const TextForm&) const = default;
};

// The lines of a text whose lines end in LF, CR LF or CR; one without a mark of UTF-8 at its
// start, and without empty lines at its end.
std::vector<std::string> TextLines(std::string_view bytes);

// Whether a line is a row that may be: not empty, and no remark that begins with #, % or //.
bool IsRow(std::string_view line);

// The fields of a line without blanks around them, and without the quotes that a field may stand
// in; empty ones at the end are left out. Blanks and TABs in any number are one separator
// kBlanks.
std::vector<std::string> FieldsOf(std::string_view line, Separator separator);

// The finite number that a whole field is.
std::optional<double> NumberOf(std::string field, DecimalSign decimal);

// What may be known of the form of a text beforehand.
struct KnownForm {
  std::optional<Separator> separator;
  std::optional<DecimalSign> decimal;
};

struct FoundForm {
  std::optional<TextForm> form;
  std::string why = {};  // more than one form is possible, in a sentence; empty: none reads a row
};

// The form that reads the most of `lines`: rows that have a number in each of `columns` (from 1).
// Two forms that read as many rows, and other numbers, leave it open, and so do commas alone that
// may be separators or decimal signs.
FoundForm FindForm(const std::vector<std::string>& lines, const std::vector<int>& columns,
                   const KnownForm& known);

}  // namespace quorvane
