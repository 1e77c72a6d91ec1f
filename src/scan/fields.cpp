#include "scan/fields.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "base/arithmetic.h"
#include "base/text.h"

namespace quorvane {

namespace {

bool IsSkipped(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// A copy of `field` without what FieldVal skips.
std::string WithoutBlanks(std::string_view field) {
  std::string text;
  for (const char c : field) {
    if (!IsSkipped(c)) text += c;
  }
  return text;
}

// Digits of `base` from the front of `text` as a plain unsigned integer.
double UnsignedPrefix(std::string_view text, int base) {
  double value = 0.0;
  for (const char c : text) {
    int digit = base;
    if (IsDigit(c)) {
      digit = c - '0';
    } else if (c >= 'A' && c <= 'F') {
      digit = c - 'A' + 10;
    } else if (c >= 'a' && c <= 'f') {
      digit = c - 'a' + 10;
    }
    if (digit >= base) break;
    value = value * base + digit;
  }
  if (!std::isfinite(value)) throw ArithmeticFault(FaultKind::kOverflow);
  return value;
}

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

// Length of the exponent at the front of `text`, 0 if it is none.
std::size_t ExponentLength(std::string_view text) {
  if (text.empty() || (text[0] != 'E' && text[0] != 'e' && text[0] != 'D' && text[0] != 'd')) {
    return 0;
  }
  const std::size_t digits = text.size() > 1 && (text[1] == '+' || text[1] == '-') ? 2 : 1;
  const std::size_t end = SkipDigits(text, digits);
  return end > digits ? end : 0;
}

// The longest prefix of `text` that is a number, in the form that DoubleFromText reads.
std::string NumberPrefix(std::string_view text) {
  std::size_t at = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
  const std::size_t start = at;
  at = SkipDigits(text, at);
  std::size_t digits = at - start;
  if (at < text.size() && text[at] == '.') {
    const std::size_t behind = SkipDigits(text, at + 1);
    digits += behind - at - 1;
    at = behind;
  }
  if (digits == 0) return {};
  const std::size_t exponent = ExponentLength(text.substr(at));
  std::string number(text.substr(text[0] == '+' ? 1 : 0, at + exponent - (text[0] == '+' ? 1 : 0)));
  if (exponent > 0) number[number.size() - exponent] = 'e';
  return number;
}

// The number of a field that is nothing but one with blanks around, as nearly all are; nothing
// where the field needs the long way. The same value, without copies of the text.
std::optional<double> PlainNumber(std::string_view field) {
  field = Trim(field);
  const std::size_t start = field.starts_with('-') ? 1 : 0;
  if (start >= field.size() || !(IsDigit(field[start]) || field[start] == '.')) return std::nullopt;
  double value = 0.0;
  const char* const end = field.data() + field.size();
  const auto result = std::from_chars(field.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return value;
}

// A read that fails counts as the end of the file and leaves badbit.
int NextCharacter(std::istream& in) {
  try {
    return in.rdbuf()->sbumpc();
  } catch (const std::exception&) {
    in.setstate(std::ios::badbit);
    return std::istream::traits_type::eof();
  }
}

}  // namespace

LineBuffer::LineBuffer(std::string_view line) {
  bytes_.fill(' ');
  line.copy(bytes_.data(), kSize);
}

std::string_view LineBuffer::Columns(int first, int last) const {
  return View().substr(static_cast<std::size_t>(first - 1),
                       static_cast<std::size_t>(last - first + 1));
}

double FieldVal(std::string_view field) {
  if (const std::optional<double> plain = PlainNumber(field)) return *plain;
  const std::string text = WithoutBlanks(field);
  if (text.size() >= 2 && text[0] == '&') {
    if (text[1] == 'H' || text[1] == 'h') return UnsignedPrefix(text.substr(2), 16);
    if (text[1] == 'O' || text[1] == 'o') return UnsignedPrefix(text.substr(2), 8);
  }
  const std::string number = NumberPrefix(text);
  if (number.empty()) return 0.0;
  const double value = DoubleFromText(number);
  if (!std::isfinite(value)) throw ArithmeticFault(FaultKind::kOverflow);
  return value;
}

std::int16_t FieldInt16(std::string_view field) {
  return static_cast<std::int16_t>(RoundHalfEven(FieldVal(field),
                                                 std::numeric_limits<std::int16_t>::min(),
                                                 std::numeric_limits<std::int16_t>::max()));
}

std::int32_t FieldInt32(std::string_view field) {
  return static_cast<std::int32_t>(RoundHalfEven(FieldVal(field),
                                                 std::numeric_limits<std::int32_t>::min(),
                                                 std::numeric_limits<std::int32_t>::max()));
}

bool ReadLine(std::istream& in, std::string& line, std::size_t limit) {
  constexpr int kEnd = std::istream::traits_type::eof();
  line.clear();
  int c = NextCharacter(in);
  if (c == kEnd) {
    in.setstate(std::ios::eofbit | std::ios::failbit);
    return false;
  }
  bool carriageReturn = false;  // held back: it belongs to the line unless LF follows
  for (; c != kEnd && c != '\n'; c = NextCharacter(in)) {
    if (carriageReturn && line.size() < limit) line += '\r';
    carriageReturn = c == '\r';
    if (!carriageReturn && line.size() < limit) line += static_cast<char>(c);
  }
  return !in.bad();
}

}  // namespace quorvane
