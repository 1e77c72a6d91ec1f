#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace quorvane {

namespace {

// What the codes 0x80 to 0x9F stand for; 0 for the five unused ones.
constexpr std::array<std::uint16_t, 32> kHighControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char Cp1252Of(char32_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<char>(c);
  for (std::size_t k = 0; k < kHighControls.size(); ++k) {
    if (kHighControls[k] != 0 && kHighControls[k] == c) return static_cast<char>(0x80 + k);
  }
  return '?';
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// sign? digits? (point digits?)? with at least one digit, (E sign? digits)?
bool HasNumericForm(std::string_view text) {
  std::size_t at = 0;
  const auto take = [&](auto&& wanted) {
    std::size_t count = 0;
    while (at < text.size() && wanted(text[at])) {
      ++at;
      ++count;
    }
    return count;
  };
  const auto takeSign = [&] {
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  };
  takeSign();
  std::size_t digits = take(IsDigit);
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += take(IsDigit);
  }
  if (digits == 0) return false;
  if (at < text.size() && (text[at] == 'E' || text[at] == 'e')) {
    ++at;
    takeSign();
    if (take(IsDigit) == 0) return false;
  }
  return at == text.size();
}

// About the power of ten of a number that from_chars found out of range; only its sign is wanted.
long long LeadingPowerOfTen(std::string_view number) {
  const std::size_t e = number.find_first_of("eE");
  long long exponent = 0;
  if (e != std::string_view::npos) {
    std::string_view digits = number.substr(e + 1);
    const bool negative = digits.starts_with('-');
    if (digits.starts_with('-') || digits.starts_with('+')) digits.remove_prefix(1);
    for (const char c : digits) {
      if (exponent < 1'000'000'000) exponent = exponent * 10 + (c - '0');
    }
    if (negative) exponent = -exponent;
  }
  const std::string_view mantissa = number.substr(0, e);
  const std::size_t first = mantissa.find_first_of("123456789");
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  return exponent + static_cast<long long>(point) - static_cast<long long>(first);
}

}  // namespace

std::string_view Trim(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::string ToLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string WithUnixLines(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t k = 0; k < text.size(); ++k) {
    if (text[k] != '\r') {
      out += text[k];
    } else if (k + 1 >= text.size() || text[k + 1] != '\n') {
      out += '\n';
    }
  }
  return out;
}

char32_t NextUtf8(std::string_view& text) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char first = byte(0);
  std::size_t length = 1;
  char32_t c = first;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2;
    c = first & 0x1F;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3;
    c = first & 0x0F;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    c = first & 0x07;
  } else if (first >= 0x80) {
    text.remove_prefix(1);
    return kReplacement;
  }
  for (std::size_t k = 1; k < length; ++k) {
    if (k >= text.size() || (byte(k) & 0xC0) != 0x80) {
      text.remove_prefix(1);
      return kReplacement;
    }
    c = c << 6 | (byte(k) & 0x3F);
  }
  constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};  // by length
  const bool surrogate = c >= 0xD800 && c <= 0xDFFF;
  if (c < kLeast[length] || surrogate || c > 0x10FFFF) c = kReplacement;
  text.remove_prefix(length);
  return c;
}

bool IsUtf8(std::string_view text) {
  constexpr std::string_view kKnown =
      "\xEF\xBF\xBD";  // kReplacement itself, which may stand in a text
  while (!text.empty()) {
    const std::string_view here = text;
    if (NextUtf8(text) == kReplacement && !here.starts_with(kKnown)) return false;
  }
  return true;
}

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | c >> 18);
    out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

std::string Utf8ToCp1252(std::string_view utf8) {
  std::string out;
  while (!utf8.empty()) out += Cp1252Of(NextUtf8(utf8));
  return out;
}

std::string Cp1252ToUtf8(std::string_view bytes) {
  std::string out;
  for (const char raw : bytes) {
    const auto code = static_cast<unsigned char>(raw);
    char32_t c = code;
    if (code >= 0x80 && code < 0xA0) {
      c = kHighControls[code - 0x80u];
      if (c == 0) c = kReplacement;
    }
    AppendUtf8(out, c);
  }
  return out;
}

double DoubleFromText(std::string_view number) {
  double value = 0.0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec != std::errc::result_out_of_range) return value;
  return LeadingPowerOfTen(number) > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

std::optional<double> ParseNumeric(std::string_view text) {
  text = Trim(text);
  if (!HasNumericForm(text)) return std::nullopt;
  if (text.front() == '+') text.remove_prefix(1);
  const double value = DoubleFromText(text);
  if (!std::isfinite(value)) return std::nullopt;
  return value;
}

std::string ShortestText(double value) {
  std::array<char, 40> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

}  // namespace quorvane
