#include "base/number_format.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "base/arithmetic.h"

namespace quorvane {

namespace {

constexpr int kSignificantDigits = 15;

// A magnitude as 0.d1 d2 d3 ... times 10^pointAt, d1 not '0'; no digits for zero.
struct Decimal {
  std::string digits;
  int pointAt = 0;

  bool IsZero() const { return digits.empty(); }

  // The digit that counts 10^power.
  char DigitAt(int power) const {
    const int k = pointAt - 1 - power;
    return k >= 0 && k < static_cast<int>(digits.size()) ? digits[static_cast<std::size_t>(k)]
                                                         : '0';
  }

  // Rounds half away from zero, keeping the digits from 10^power up.
  void RoundTo(int power) {
    const int keep = pointAt - power;
    if (keep >= static_cast<int>(digits.size())) return;
    const bool up = keep >= 0 && digits[static_cast<std::size_t>(keep)] >= '5';
    digits.resize(keep > 0 ? static_cast<std::size_t>(keep) : 0);
    if (up) AddOneAtEnd(power);
    while (!digits.empty() && digits.back() == '0') digits.pop_back();
    if (digits.empty()) pointAt = 0;
  }

 private:
  void AddOneAtEnd(int power) {
    std::size_t k = digits.size();
    while (k > 0 && digits[k - 1] == '9') digits[--k] = '0';
    if (k > 0) {
      ++digits[k - 1];
      return;
    }
    digits.insert(digits.begin(), '1');
    pointAt = digits.size() == 1 ? power + 1 : pointAt + 1;
  }
};

// The 15 significant decimal digits of |value|, value finite.
Decimal DecimalOf(double value) {
  Decimal decimal;
  if (value == 0.0) return decimal;
  std::array<char, 40> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                 std::chars_format::scientific, kSignificantDigits - 1);
  const std::string_view written(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
  const std::size_t e = written.find('e');
  for (const char c : written.substr(0, e)) {
    if (c != '.') decimal.digits += c;
  }
  while (decimal.digits.back() == '0') decimal.digits.pop_back();
  const char* exponent = written.data() + e + (written[e + 1] == '+' ? 2 : 1);
  std::from_chars(exponent, end.ptr, decimal.pointAt);
  ++decimal.pointAt;
  return decimal;
}

// One section of a pattern, taken apart.
struct Pattern {
  std::string before;     // literals in front of the number
  std::string after;      // literals behind it
  int integerPlaces = 0;  // 0 and # before the point
  int integerLeast = 0;   // digits shown at least before the point
  int decimalPlaces = 0;  // 0 and # behind the point
  int decimalLeast = 0;   // digits shown at least behind the point
  bool point = false;
  bool grouped = false;
  bool scientific = false;
  bool exponentPlus = false;  // shows "+" for an exponent of 0 or more
  int exponentLeast = 1;
  char exponentLetter = 'E';
};

bool IsPlace(char c) {
  return c == '0' || c == '#';
}

bool IsExponent(std::string_view text) {
  return text.size() >= 3 && (text[0] == 'E' || text[0] == 'e') &&
         (text[1] == '+' || text[1] == '-') && IsPlace(text[2]);
}

// Takes the exponent part at the front of `text` and returns its length.
std::size_t TakeExponent(std::string_view text, Pattern& pattern) {
  pattern.scientific = true;
  pattern.exponentLetter = text[0];
  pattern.exponentPlus = text[1] == '+';
  std::size_t length = 2;
  int zeros = 0;
  while (length < text.size() && IsPlace(text[length])) zeros += text[length++] == '0';
  if (zeros > 1) pattern.exponentLeast = zeros;
  return length;
}

void TakePlace(char c, Pattern& pattern) {
  if (pattern.point) {
    ++pattern.decimalPlaces;
    if (c == '0') pattern.decimalLeast = pattern.decimalPlaces;
  } else {
    ++pattern.integerPlaces;
    if (c == '0' || pattern.integerLeast > 0) ++pattern.integerLeast;
  }
}

Pattern ParseSection(std::string_view text) {
  Pattern pattern;
  bool numberSeen = false;
  for (std::size_t k = 0; k < text.size(); ++k) {
    const char c = text[k];
    if (IsPlace(c)) {
      TakePlace(c, pattern);
      numberSeen = true;
    } else if (c == '.' && !pattern.point) {
      pattern.point = true;
      numberSeen = true;
    } else if (c == ',' && numberSeen && !pattern.point) {
      pattern.grouped = true;
    } else if (numberSeen && !pattern.scientific && IsExponent(text.substr(k))) {
      k += TakeExponent(text.substr(k), pattern) - 1;
    } else {
      (numberSeen ? pattern.after : pattern.before) += c;
    }
  }
  return pattern;
}

std::string IntegerText(const Decimal& decimal, const Pattern& pattern) {
  int places = decimal.pointAt > 0 ? decimal.pointAt : 0;
  if (places < pattern.integerLeast) places = pattern.integerLeast;
  std::string text;
  for (int power = places - 1; power >= 0; --power) {
    text += decimal.DigitAt(power);
    if (pattern.grouped && power > 0 && power % 3 == 0) text += ',';
  }
  return text;
}

std::string DecimalsText(const Decimal& decimal, const Pattern& pattern) {
  std::string text;
  for (int place = 1; place <= pattern.decimalPlaces; ++place) text += decimal.DigitAt(-place);
  while (static_cast<int>(text.size()) > pattern.decimalLeast && text.back() == '0') {
    text.pop_back();
  }
  return text;
}

std::string ExponentText(int exponent, const Pattern& pattern) {
  std::string digits = std::to_string(exponent < 0 ? -exponent : exponent);
  while (static_cast<int>(digits.size()) < pattern.exponentLeast) digits.insert(0, "0");
  std::string text(1, pattern.exponentLetter);
  if (exponent < 0) {
    text += '-';
  } else if (pattern.exponentPlus) {
    text += '+';
  }
  return text + digits;
}

// Moves the point so that as many digits as the pattern has places stand before it, rounds, and
// returns the exponent that makes up for it.
int Normalise(Decimal& decimal, const Pattern& pattern) {
  if (decimal.IsZero()) return 0;
  const int places = pattern.integerPlaces;
  int exponent = decimal.pointAt - places;
  decimal.pointAt = places;
  decimal.RoundTo(-pattern.decimalPlaces);
  if (decimal.pointAt > places) {  // 9.99 went up to 10
    ++exponent;
    decimal.pointAt = places;
  }
  return exponent;
}

std::string Write(Decimal decimal, const Pattern& pattern, bool minus) {
  std::string text = minus ? "-" : "";
  int exponent = 0;
  if (pattern.scientific) exponent = Normalise(decimal, pattern);
  text += pattern.before + IntegerText(decimal, pattern);
  if (pattern.point) text += '.' + DecimalsText(decimal, pattern);
  if (pattern.scientific) text += ExponentText(exponent, pattern);
  return text + pattern.after;
}

}  // namespace

std::string FormatNumber(double value, std::string_view pattern) {
  if (std::isnan(value)) throw ArithmeticFault(FaultKind::kInvalidOperation);
  if (std::isinf(value)) throw ArithmeticFault(FaultKind::kOverflow);
  const std::size_t semicolon = pattern.find(';');
  const Pattern positive = ParseSection(pattern.substr(0, semicolon));
  Decimal decimal = DecimalOf(value);
  if (!positive.scientific) decimal.RoundTo(-positive.decimalPlaces);
  if (value >= 0.0 || decimal.IsZero()) return Write(decimal, positive, false);
  if (semicolon == std::string_view::npos) return Write(decimal, positive, true);
  const Pattern negative = ParseSection(pattern.substr(semicolon + 1));
  decimal = DecimalOf(value);
  if (!negative.scientific) decimal.RoundTo(-negative.decimalPlaces);
  return Write(decimal, negative, false);
}

std::string FormatParam(double value) {
  const double magnitude = std::fabs(value);
  const bool fixed = value == 0.0 || (magnitude >= 0.05 && magnitude < 100.0);
  return FormatNumber(value, fixed ? "0.0000" : "0.000E+##");
}

}  // namespace quorvane
