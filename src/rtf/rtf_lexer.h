// Cuts RTF into tokens. Knows its syntax only: no word's meaning but that of \bin.
#pragma once

#include <cstddef>
#include <string_view>

namespace quorvane {

enum class RtfTokenKind {
  kGroupStart,
  kGroupEnd,
  kWord,    // \name or \nameN
  kSymbol,  // a backslash and one character that is no letter; \' only when its digits are wrong
  kByte,    // \'hh
  kText,    // characters without a backslash, brace or line end among them; line ends are dropped
  kBinary,  // the bytes of \binN
  kEnd,
};

struct RtfToken {
  RtfTokenKind kind = RtfTokenKind::kEnd;
  std::string_view text;   // name, character, text or bytes: a part of the input
  bool hasNumber = false;  // a word with a number behind it
  int number = 0;          // that number, held within 32 bits; the value of a kByte
  std::size_t offset = 0;  // where the token begins, in bytes
};

class RtfLexer {
 public:
  // `bytes` must outlive the lexer and its tokens.
  explicit RtfLexer(std::string_view bytes) : bytes_(bytes) {}

  // The next token; kEnd again and again at the end. Never throws.
  RtfToken Next();

  // Whether a \bin promised more bytes than there are.
  bool BinaryCutOff() const { return binaryCutOff_; }

 private:
  RtfToken Control();
  RtfToken HexByte();
  void TakeNumber(RtfToken& word);
  RtfToken Binary(RtfToken word);

  std::string_view bytes_;
  std::size_t at_ = 0;
  bool binaryCutOff_ = false;
};

}  // namespace quorvane
