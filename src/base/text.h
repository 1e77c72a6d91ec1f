// Small text helpers, and the border between UTF-8 in memory and one byte a character
// (Windows-1252) in records and scan files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

inline constexpr std::string_view kLineBreak = "\r\n";

// The plus-minus sign, character 177 of Latin-1.
inline constexpr std::string_view kPlusMinus = "\xC2\xB1";

// `text` without the blanks (character 32 only) at both ends.
std::string_view Trim(std::string_view text);

// ASCII letters in lower case; other bytes as they are.
std::string ToLower(std::string_view text);

// `text` with every CR LF, LF and lone CR turned into a single LF.
std::string WithUnixLines(std::string_view text);

// What stands for a character that is not known.
inline constexpr char32_t kReplacement = 0xFFFD;

// Takes one character off the front of `text`, which must not be empty; kReplacement for a
// malformed one.
char32_t NextUtf8(std::string_view& text);

// Whether no character of the text is malformed.
bool IsUtf8(std::string_view text);

// Appends a character, at most U+10FFFF and no surrogate, as UTF-8.
void AppendUtf8(std::string& out, char32_t c);

// UTF-8 to Windows-1252; a character that has no place there, or a malformed byte, becomes '?'.
std::string Utf8ToCp1252(std::string_view utf8);

// Windows-1252 to UTF-8; the five unused codes become U+FFFD.
std::string Cp1252ToUtf8(std::string_view bytes);

// The double nearest to `number`: sign (- only), digits with an optional point, exponent introduced
// by e or E. Beyond the range of double an infinity, below it 0. Independent of the locale.
double DoubleFromText(std::string_view number);

// The shortest text that DoubleFromText turns back into `value`, such as "60000" or "1e-06".
std::string ShortestText(double value);

// The number that an entry box accepts: blanks around, a sign, digits with an optional point, an
// exponent E. The whole text must match and the value be finite; otherwise nothing.
std::optional<double> ParseNumeric(std::string_view text);

}  // namespace quorvane
