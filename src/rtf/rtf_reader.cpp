#include "rtf/rtf_reader.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <variant>

#include "base/text.h"
#include "rtf/code_page.h"
#include "rtf/picture_bytes.h"
#include "rtf/rich_text_builder.h"
#include "rtf/rtf_format.h"
#include "rtf/rtf_lexer.h"
#include "rtf/rtf_picture.h"
#include "rtf/rtf_tables.h"

namespace quorvane {

namespace {

// Where the texts and words of a group go.
enum Destination : unsigned {
  kBody = 1,
  kSkipped = 2,
  kFonts = 4,
  kColors = 8,
  kPicture = 16,
  kShape = 32,     // a drawing object: its pictures and text box only
  kAnsiTwin = 64,  // text that a \ud group repeats in Unicode
};
constexpr unsigned kAnywhere = ~unsigned{kSkipped};

// What braces save and restore.
struct Group {
  Destination destination = kBody;
  RtfFormat format;
  CodePage codePage = CodePage::kWestern;
  int unicodeSkip = 1;  // characters that stand for a \u in readers without Unicode
};

class RtfReader {
 public:
  // `bytes` begin with the brace of the outermost group.
  explicit RtfReader(std::string_view bytes) : lexer_(bytes) {
    lexer_.Next();
    groups_.emplace_back().format.characters.halfPoints = kRtfPlainHalfPoints;
  }
  RtfDocument Read();

 private:
  using Action = void (RtfReader::*)(const RtfToken&);
  // What a word does (a character stands for itself) and in which destinations.
  struct Meaning {
    unsigned where = kBody;
    std::variant<char32_t, Destination, Action> effect;
  };
  using Vocabulary = std::unordered_map<std::string_view, Meaning>;

  static const Vocabulary& Words();
  static void AddCharacters(Vocabulary& words);
  static void AddDestinations(Vocabulary& words);
  static void AddActions(Vocabulary& words);

  void Take(RtfToken token);
  bool StandsForUnicode(RtfToken& token);
  void OpenGroup(const RtfToken& token);
  void CloseGroup(const RtfToken& token);
  void TakeWord(const RtfToken& token);
  void TakeSymbol(const RtfToken& token);
  void TakeBytes(std::string_view bytes);
  void Apply(const RtfToken& token, char32_t character);
  void Apply(const RtfToken& token, Destination destination);
  void Apply(const RtfToken& token, Action action) { (this->*action)(token); }

  void Unicode(const RtfToken& token);
  void UnicodeSkip(const RtfToken& token) { Top().unicodeSkip = std::max(Number(token, 1), 0); }
  void AnsiCodePage(const RtfToken& token);
  void DefaultFont(const RtfToken& token) { defaultFont_ = Number(token, 0); }
  void Font(const RtfToken& token);
  void Charset(const RtfToken& token) { fonts_.SetCharset(token.number, ansi_); }
  void FontCodePage(const RtfToken& token) { fonts_.SetCodePage(token.number); }
  void ColorPart(const RtfToken& token);
  void Color(const RtfToken& token) { Top().format.characters.color = colors_.Find(token.number); }
  void Plain(const RtfToken& token);
  void EndParagraph(const RtfToken&) {
    builder_.EndParagraph(Top().format.paragraph, Top().format.characters);
  }
  void Break(const RtfToken&) {
    builder_.EndOpenParagraph(Top().format.paragraph, Top().format.characters);
  }
  void Cell(const RtfToken&) { builder_.EndCell(Top().format.characters); }
  void Row(const RtfToken&) { builder_.EndRow(Top().format.paragraph, Top().format.characters); }
  void PictureWord(const RtfToken& token) { picture_.SetWord(token.text, Number(token, 1)); }

  Group& Top() { return groups_.back(); }
  static int Number(const RtfToken& token, int missing) {
    return token.hasNumber ? token.number : missing;
  }
  bool InPicture() const {
    return std::any_of(groups_.begin(), groups_.end(),
                       [](const Group& group) { return group.destination == kPicture; });
  }
  void SelectFont(int number);
  void AddText(std::string_view utf8);
  void FinishPicture(std::size_t offset);
  void CountPicture(const Picture& picture);
  void Warn(const std::string& what, std::size_t offset);

  RtfLexer lexer_;
  std::vector<Group> groups_;
  std::size_t tooDeep_ = 0;  // groups open past kMaxRtfDepth
  bool ended_ = false;       // the outermost group is closed
  bool ignorable_ = false;   // \* came just before
  int skip_ = 0;             // characters still to skip behind a \u
  CodePage ansi_ = CodePage::kWestern;
  int defaultFont_ = 0;
  RtfFontTable fonts_;
  RtfColorTable colors_;
  RtfPicture picture_;
  std::size_t pictures_ = 0;
  std::size_t pictureBytes_ = 0;
  std::size_t picturePixels_ = 0;
  RichTextBuilder builder_;
  std::vector<std::string> warnings_;
};

void RtfReader::AddCharacters(Vocabulary& words) {
  const std::pair<std::string_view, char32_t> characters[] = {
      {"tab", U'\t'},           {"line", U'\u2028'},    {"lbr", U'\u2028'},
      {"emdash", U'\u2014'},    {"endash", U'\u2013'},  {"emspace", U'\u2003'},
      {"enspace", U'\u2002'},   {"qmspace", U'\u2005'}, {"bullet", U'\u2022'},
      {"lquote", U'\u2018'},    {"rquote", U'\u2019'},  {"ldblquote", U'\u201C'},
      {"rdblquote", U'\u201D'}, {"zwj", U'\u200D'},     {"zwnj", U'\u200C'},
      {"ltrmark", U'\u200E'},   {"rtlmark", U'\u200F'}};
  for (const auto& [name, character] : characters) words[name] = {kBody, character};
}

void RtfReader::AddDestinations(Vocabulary& words) {
  // Those that begin with \* need no place here: an unknown one is skipped.
  for (const std::string_view name :
       {"stylesheet", "info",         "filetbl", "header",  "headerl",  "headerr",    "headerf",
        "footer",     "footerl",      "footerr", "footerf", "footnote", "annotation", "fldinst",
        "nonshppict", "nonesttables", "shprslt", "xe",      "tc",       "objdata"}) {
    words[name] = {kAnywhere, kSkipped};
  }
  words["fonttbl"] = {kBody, kFonts};
  words["colortbl"] = {kBody, kColors};
  words["pict"] = {kBody | kShape, kPicture};
  words["shppict"] = {kBody | kShape, kBody};
  words["shpinst"] = {kBody, kShape};
  words["shptxt"] = {kShape, kBody};
  words["upr"] = {kBody, kAnsiTwin};
  words["ud"] = {kAnsiTwin, kBody};
}

void RtfReader::AddActions(Vocabulary& words) {
  words["par"] = {kBody, &RtfReader::EndParagraph};
  for (const std::string_view name : {"sect", "page"}) words[name] = {kBody, &RtfReader::Break};
  for (const std::string_view name : {"cell", "nestcell"}) words[name] = {kBody, &RtfReader::Cell};
  for (const std::string_view name : {"row", "nestrow"}) words[name] = {kBody, &RtfReader::Row};
  words["ansicpg"] = {kBody, &RtfReader::AnsiCodePage};
  words["deff"] = {kBody, &RtfReader::DefaultFont};
  words["f"] = {kBody | kFonts, &RtfReader::Font};
  words["cf"] = {kBody, &RtfReader::Color};
  words["plain"] = {kBody, &RtfReader::Plain};
  words["u"] = {kBody | kFonts, &RtfReader::Unicode};
  words["uc"] = {kAnywhere, &RtfReader::UnicodeSkip};
  words["fcharset"] = {kFonts, &RtfReader::Charset};
  words["cpg"] = {kFonts, &RtfReader::FontCodePage};
  for (const std::string_view name : {"red", "green", "blue"}) {
    words[name] = {kColors, &RtfReader::ColorPart};
  }
  for (const std::string_view name :
       {"picw", "pich", "picwgoal", "pichgoal", "picscalex", "picscaley", "pngblip", "jpegblip",
        "dibitmap", "wmetafile", "emfblip", "wbitmap", "macpict", "pmmetafile"}) {
    words[name] = {kPicture, &RtfReader::PictureWord};
  }
}

const RtfReader::Vocabulary& RtfReader::Words() {
  static const Vocabulary kWords = [] {
    Vocabulary words;
    AddCharacters(words);
    AddDestinations(words);
    AddActions(words);
    return words;
  }();
  return kWords;
}

RtfDocument RtfReader::Read() {
  RtfToken token;
  while (!ended_ && !builder_.Full()) {
    token = lexer_.Next();
    if (token.kind == RtfTokenKind::kEnd) {
      Warn("the text ends before its last group does", token.offset);
      if (InPicture()) AddText(kPicturePlaceholder);
      break;
    }
    Take(token);
  }
  if (builder_.Full()) Warn("the text is too long, its end is left out", token.offset);
  if (lexer_.BinaryCutOff()) Warn("binary data are cut off", token.offset);
  RtfDocument document{builder_.Take(Top().format.paragraph, Top().format.characters),
                       std::move(warnings_)};
  const RtfFont* font = fonts_.Find(defaultFont_);
  if (font != nullptr && !font->family.empty()) document.text.defaultFamily = font->family;
  return document;
}

void RtfReader::Take(RtfToken token) {
  if (StandsForUnicode(token)) return;
  if (token.kind != RtfTokenKind::kWord) ignorable_ = false;
  switch (token.kind) {
    case RtfTokenKind::kGroupStart:
      return OpenGroup(token);
    case RtfTokenKind::kGroupEnd:
      return CloseGroup(token);
    case RtfTokenKind::kWord:
      return TakeWord(token);
    case RtfTokenKind::kSymbol:
      return TakeSymbol(token);
    case RtfTokenKind::kBinary:
      if (tooDeep_ == 0 && Top().destination == kPicture) picture_.AddBinary(token.text);
      return;
    case RtfTokenKind::kByte: {
      const char byte = static_cast<char>(token.number);
      return TakeBytes({&byte, 1});
    }
    default:
      return TakeBytes(token.text);
  }
}

// Whether the token is one of the characters behind a \u for readers without Unicode; takes them
// off a longer text. A word counts as one character, a brace ends them.
bool RtfReader::StandsForUnicode(RtfToken& token) {
  if (skip_ == 0) return false;
  const bool brace =
      token.kind == RtfTokenKind::kGroupStart || token.kind == RtfTokenKind::kGroupEnd;
  if (brace || (token.kind == RtfTokenKind::kWord && token.text == "u")) {
    skip_ = 0;
    return false;
  }
  if (token.kind != RtfTokenKind::kText) {
    --skip_;
    return true;
  }
  const std::size_t count = std::min(static_cast<std::size_t>(skip_), token.text.size());
  skip_ -= static_cast<int>(count);
  token.text.remove_prefix(count);
  return token.text.empty();
}

void RtfReader::OpenGroup(const RtfToken& token) {
  if (groups_.size() >= kMaxRtfDepth) {
    if (tooDeep_++ == 0) Warn("groups are nested too deep", token.offset);
    return;
  }
  groups_.push_back(Top());
  if (Top().destination == kPicture) Top().destination = kSkipped;  // names and properties
}

void RtfReader::CloseGroup(const RtfToken& token) {
  if (tooDeep_ > 0) {
    --tooDeep_;
    return;
  }
  const Destination closed = Top().destination;
  if (closed == kFonts) fonts_.EndEntry();
  if (groups_.size() == 1) {
    ended_ = true;
    return;
  }
  groups_.pop_back();
  if (closed == kPicture) FinishPicture(token.offset);
  if (closed == kFonts && Top().destination != kFonts) SelectFont(defaultFont_);
}

void RtfReader::TakeWord(const RtfToken& token) {
  const bool ignorable = std::exchange(ignorable_, false);
  Group& group = Top();
  if (tooDeep_ > 0 || group.destination == kSkipped) return;
  const auto found = Words().find(token.text);
  const bool known = found != Words().end();
  if (ignorable && !(known && std::holds_alternative<Destination>(found->second.effect))) {
    group.destination = kSkipped;
  } else if (known && (found->second.where & group.destination) != 0) {
    std::visit([&](const auto& effect) { Apply(token, effect); }, found->second.effect);
  } else if (!known && group.destination == kBody) {
    ApplyFormatWord(token, group.format);
  }
}

void RtfReader::TakeSymbol(const RtfToken& token) {
  const char symbol = token.text.front();
  switch (symbol) {
    case '*':
      ignorable_ = true;
      return;
    case '\\':
    case '{':
    case '}':
      return TakeBytes(token.text);
    case '~':
      return Apply(token, U'\u00A0');
    case '_':
      return Apply(token, U'\u2011');
    case '-':
      return Apply(token, U'\u00AD');
    case '\t':
      return Apply(token, U'\t');
    case '\r':
    case '\n':
      if (tooDeep_ == 0 && Top().destination == kBody) EndParagraph(token);
      return;
    case '\'':
      return Warn("a byte without its two hexadecimal digits", token.offset);
    default:
      return;
  }
}

void RtfReader::TakeBytes(std::string_view bytes) {
  if (tooDeep_ > 0) return;
  switch (Top().destination) {
    case kBody:
      return AddText(DecodedText(bytes, Top().codePage));
    case kFonts:
      return fonts_.AddName(bytes);
    case kColors:
      return colors_.AddText(bytes);
    case kPicture:
      return picture_.AddHex(bytes);
    default:
      return;
  }
}

void RtfReader::Apply(const RtfToken&, char32_t character) {
  if (tooDeep_ > 0 || Top().destination != kBody) return;
  std::string utf8;
  AppendUtf8(utf8, character);
  AddText(utf8);
}

void RtfReader::Apply(const RtfToken&, Destination destination) {
  Top().destination = destination;
  if (destination == kPicture) picture_ = {};
}

void RtfReader::Unicode(const RtfToken& token) {
  skip_ = Top().unicodeSkip;
  const auto unit = static_cast<char16_t>(token.number & 0xFFFF);  // often written as a negative
  if (Top().destination == kFonts) return fonts_.AddUnit(unit);
  if (Top().format.hidden) return;
  const bool symbol = unit >= 0xF000 && unit <= 0xF0FF;  // where symbol fonts keep their codes
  if (symbol && Top().codePage == CodePage::kSymbol) {
    const char code = static_cast<char>(unit & 0xFF);
    return AddText(DecodedText({&code, 1}, CodePage::kSymbol));
  }
  builder_.AddUnit(unit, Top().format.characters);
}

void RtfReader::AnsiCodePage(const RtfToken& token) {
  ansi_ = CodePageOfNumber(Number(token, 1252));
  Top().codePage = ansi_;
}

void RtfReader::Font(const RtfToken& token) {
  if (Top().destination == kFonts) return fonts_.Begin(token.number, ansi_);
  SelectFont(token.number);
}

void RtfReader::SelectFont(int number) {
  const RtfFont* font = fonts_.Find(number);
  Top().codePage = font == nullptr ? ansi_ : font->codePage;
  if (font == nullptr || font->family.empty()) font = fonts_.Find(defaultFont_);
  Top().format.characters.family =
      font == nullptr || font->family.empty() ? CharFormat{}.family : font->family;
}

void RtfReader::ColorPart(const RtfToken& token) {
  colors_.SetPart(token.text == "red" ? 0 : token.text == "green" ? 8 : 16, token.number);
}

void RtfReader::Plain(const RtfToken&) {
  Top().format.characters = {};
  Top().format.characters.halfPoints = kRtfPlainHalfPoints;
  Top().format.hidden = false;
  SelectFont(defaultFont_);
}

void RtfReader::AddText(std::string_view utf8) {
  if (Top().format.hidden) return;
  builder_.AddText(utf8, Top().format.characters);
}

void RtfReader::FinishPicture(std::size_t offset) {
  if (Top().format.hidden) return;
  try {
    Picture picture = std::exchange(picture_, {}).Finish();
    CountPicture(picture);
    builder_.AddPicture(std::move(picture));
  } catch (const PictureFault& fault) {
    Warn(fault.what(), offset);
    AddText(kPicturePlaceholder);
  }
}

void RtfReader::CountPicture(const Picture& picture) {
  const std::size_t bytes = pictureBytes_ + picture.bytes.size();
  const std::size_t pixels = picturePixels_ + static_cast<std::size_t>(picture.pixelWidth) *
                                                  static_cast<std::size_t>(picture.pixelHeight);
  if (pictures_ >= kMaxRtfPictures || bytes > kMaxRtfPictureTotal || pixels > kMaxRtfPixelTotal) {
    throw PictureFault("too many pictures");
  }
  ++pictures_;
  pictureBytes_ = bytes;
  picturePixels_ = pixels;
}

void RtfReader::Warn(const std::string& what, std::size_t offset) {
  if (warnings_.size() >= kMaxRtfWarnings) return;
  warnings_.push_back("RTF: " + what + " at byte " + std::to_string(offset));
}

}  // namespace

RtfDocument ReadRtf(std::string_view bytes) {
  constexpr std::string_view kStart = "{\\rtf";
  if (!bytes.starts_with(kStart)) {
    const auto mismatch = std::mismatch(bytes.begin(), bytes.end(), kStart.begin(), kStart.end());
    throw RtfFault("no RTF: \"{\\rtf\" is not at its beginning, first difference at byte " +
                   std::to_string(mismatch.first - bytes.begin()));
  }
  return RtfReader(bytes).Read();
}

}  // namespace quorvane
