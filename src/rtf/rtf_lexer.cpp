#include "rtf/rtf_lexer.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

namespace quorvane {

namespace {

constexpr std::string_view kTextEnds("\\{}\r\n\0", 6);

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

RtfToken RtfLexer::Next() {
  at_ = std::min(bytes_.find_first_not_of(std::string_view("\r\n\0", 3), at_), bytes_.size());
  RtfToken token;
  token.offset = at_;
  if (at_ == bytes_.size()) return token;
  const char c = bytes_[at_];
  if (c == '\\') return Control();
  if (c == '{' || c == '}') {
    token.kind = c == '{' ? RtfTokenKind::kGroupStart : RtfTokenKind::kGroupEnd;
    ++at_;
    return token;
  }
  const std::size_t end = std::min(bytes_.find_first_of(kTextEnds, at_), bytes_.size());
  token.kind = RtfTokenKind::kText;
  token.text = bytes_.substr(at_, end - at_);
  at_ = end;
  return token;
}

RtfToken RtfLexer::Control() {
  RtfToken token;
  token.offset = at_++;
  if (at_ == bytes_.size()) return token;
  if (bytes_[at_] == '\'') return HexByte();
  if (!IsLetter(bytes_[at_])) {
    token.kind = RtfTokenKind::kSymbol;
    token.text = bytes_.substr(at_++, 1);
    return token;
  }
  std::size_t end = at_;
  while (end < bytes_.size() && IsLetter(bytes_[end])) ++end;
  token.kind = RtfTokenKind::kWord;
  token.text = bytes_.substr(at_, end - at_);
  at_ = end;
  TakeNumber(token);
  if (at_ < bytes_.size() && bytes_[at_] == ' ') ++at_;
  return token.text == "bin" ? Binary(token) : token;
}

RtfToken RtfLexer::HexByte() {
  RtfToken token;
  token.offset = at_ - 1;
  const std::string_view digits = bytes_.substr(at_ + 1, 2);
  const auto result =
      std::from_chars(digits.data(), digits.data() + digits.size(), token.number, 16);
  const bool good = result.ptr == digits.data() + 2 && token.number >= 0;
  token.kind = good ? RtfTokenKind::kByte : RtfTokenKind::kSymbol;
  token.text = bytes_.substr(at_, 1);
  at_ += good ? 3 : 1;
  return token;
}

void RtfLexer::TakeNumber(RtfToken& word) {
  std::size_t end = at_;
  if (end < bytes_.size() && bytes_[end] == '-') ++end;
  if (end == bytes_.size() || !IsDigit(bytes_[end])) return;
  const bool negative = end != at_;
  std::int64_t value = 0;
  for (; end < bytes_.size() && IsDigit(bytes_[end]); ++end) {
    value =
        std::min<std::int64_t>(value * 10 + (bytes_[end] - '0'), std::numeric_limits<int>::max());
  }
  word.hasNumber = true;
  word.number = static_cast<int>(negative ? -value : value);
  at_ = end;
}

RtfToken RtfLexer::Binary(RtfToken word) {
  const auto wanted = static_cast<std::size_t>(std::max(word.number, 0));
  binaryCutOff_ = binaryCutOff_ || wanted > bytes_.size() - at_;
  word.kind = RtfTokenKind::kBinary;
  word.text = bytes_.substr(at_, wanted);
  at_ += word.text.size();
  return word;
}

}  // namespace quorvane
