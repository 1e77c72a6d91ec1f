#include "rtf/code_page.h"

#include "base/text.h"

namespace quorvane {

namespace {

// What the codes 80 to FF stand for.
constexpr std::u32string_view kCentralEuropean =
    U"€\uFFFD‚\uFFFD„…†‡\uFFFD‰Š‹ŚŤŽŹ\uFFFD‘’“”•–—\uFFFD™š›śťžź"
    U"\u00A0ˇ˘Ł¤Ą¦§¨©Ş«¬\u00AD®Ż°±˛ł´µ¶·¸ąş»Ľ˝ľż"
    U"ŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢß"
    U"ŕáâăäĺćçčéęëěíîďđńňóôőö÷řůúűüýţ˙";
constexpr std::u32string_view kCyrillic =
    U"ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏђ‘’“”•–—\uFFFD™љ›њќћџ"
    U"\u00A0ЎўЈ¤Ґ¦§Ё©Є«¬\u00AD®Ї°±Ііґµ¶·ё№є»јЅѕї"
    U"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"
    U"абвгдежзийклмнопрстуфхцчшщъыьэюя";
constexpr std::u32string_view kGreek =
    U"€\uFFFD‚ƒ„…†‡\uFFFD‰\uFFFD‹\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD‘’“”•–—\uFFFD™\uFFFD›\uFFFD\uFFFD"
    U"\uFFFD\uFFFD"
    U"\u00A0΅Ά£¤¥¦§¨©\uFFFD«¬\u00AD®―°±²³΄µ¶·ΈΉΊ»Ό½ΎΏ"
    U"ΐΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡ\uFFFDΣΤΥΦΧΨΩΪΫάέήί"
    U"ΰαβγδεζηθικλμνξοπρςστυφχψωϊϋόύώ\uFFFD";

// The Symbol font: codes 20 to 7F, and A0 to FF.
constexpr std::u32string_view kSymbolLow =
    U" !∀#∃%&∋()∗+,−./0123456789:;<=>?"
    U"≅ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ[∴]⊥_"
    U"‾αβχδεφγηιϕκλμνοπθρστυϖωξψζ{|}∼\uFFFD";
constexpr std::u32string_view kSymbolHigh =
    U"€ϒ′≤⁄∞ƒ♣♦♥♠↔←↑→↓°±″≥×∝∂•÷≠≡≈…⏐⎯↵"
    U"ℵℑℜ℘⊗⊕∅∩∪⊃⊇⊄⊂⊆∈∉∠∇®©™∏√⋅¬∧∨⇔⇐⇑⇒⇓"
    U"◊〈®©™∑⎛⎜⎝⎡⎢⎣⎧⎨⎩⎪\uFFFD〉∫⌠⎮⌡⎞⎟⎠⎤⎥⎦⎫⎬⎭\uFFFD";

char32_t FromTable(std::u32string_view table, unsigned char code, unsigned char first) {
  return code < first ? kReplacement : table[static_cast<std::size_t>(code - first)];
}

char32_t SymbolCharacter(unsigned char code) {
  if (code < 0x20) return code;
  return code < 0x80 ? FromTable(kSymbolLow, code, 0x20) : FromTable(kSymbolHigh, code, 0xA0);
}

// A character from 80 on in a code page other than Windows-1252.
char32_t HighCharacter(CodePage page, unsigned char code) {
  switch (page) {
    case CodePage::kCentralEuropean:
      return FromTable(kCentralEuropean, code, 0x80);
    case CodePage::kCyrillic:
      return FromTable(kCyrillic, code, 0x80);
    case CodePage::kGreek:
      return FromTable(kGreek, code, 0x80);
    default:
      return kReplacement;
  }
}

}  // namespace

CodePage CodePageOfNumber(int number) {
  switch (number) {
    case 1250:
      return CodePage::kCentralEuropean;
    case 1251:
      return CodePage::kCyrillic;
    case 1252:
      return CodePage::kWestern;
    case 1253:
      return CodePage::kGreek;
    default:
      return CodePage::kUnknown;
  }
}

CodePage CodePageOfCharset(int charset, CodePage document) {
  switch (charset) {
    case 0:
      return CodePage::kWestern;
    case 1:
      return document;
    case 2:
      return CodePage::kDingbats;
    case 161:
      return CodePage::kGreek;
    case 204:
      return CodePage::kCyrillic;
    case 238:
      return CodePage::kCentralEuropean;
    default:
      return CodePage::kUnknown;
  }
}

std::string DecodedText(std::string_view bytes, CodePage page) {
  if (page == CodePage::kWestern) return Cp1252ToUtf8(bytes);
  std::string out;
  for (const char raw : bytes) {
    const auto code = static_cast<unsigned char>(raw);
    if (page == CodePage::kSymbol) {
      AppendUtf8(out, SymbolCharacter(code));
    } else if (page == CodePage::kDingbats && code > 0x20) {
      AppendUtf8(out, kReplacement);
    } else {
      AppendUtf8(out, code < 0x80 ? code : HighCharacter(page, code));
    }
  }
  return out;
}

}  // namespace quorvane
