#include "rtf/rtf_writer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <variant>

#include "base/text.h"
#include "rtf/dib.h"
#include "rtf/picture_bytes.h"
#include "rtf/rtf_reader.h"

namespace quorvane {

namespace {

// A4 across with narrow margins: 128 columns of the log's font, enough for the tables of a report,
// and two rows of two pictures.
constexpr const char* kPage =
    "\\paperw16838\\paperh11906\\landscape\\margl720\\margr720\\margt450\\margb450\r\n";

constexpr std::size_t kHexLine = 64;  // picture bytes in a line

class RtfWriter {
 public:
  explicit RtfWriter(const RichText& text) : text_(text) {}
  std::string Write();

 private:
  template <typename Visitor>
  void ForEachFormat(Visitor visit) const;
  void CollectTables();
  void WriteHeader();
  void WriteParagraph(const Paragraph& paragraph);
  void WriteShape(const ParagraphFormat& shape);
  void WriteFormat(const CharFormat& format);
  void WriteText(std::string_view utf8);
  void WriteCharacter(char32_t c, std::string_view utf8);
  void WritePicture(const Picture& picture);
  void WriteHex(std::string_view bytes);
  void Word(std::string_view name) { (out_ += '\\') += name; }
  void Word(std::string_view name, int number) {
    Word(name);
    out_ += std::to_string(number);
  }
  void Toggle(std::string_view name, bool before, bool now);

  const RichText& text_;
  std::map<std::string, int> fonts_;     // family: number
  std::vector<std::string> families_;    // by number
  std::map<std::uint32_t, int> colors_;  // colour: number, from 1
  std::vector<std::uint32_t> palette_;   // from number 1
  CharFormat format_;                    // in force where the output ends
  ParagraphFormat shape_;
  std::string out_;
};

template <typename Visitor>
void RtfWriter::ForEachFormat(Visitor visit) const {
  for (const Paragraph& paragraph : text_.paragraphs) {
    for (const InlineItem& item : paragraph.items) {
      if (const auto* run = std::get_if<TextRun>(&item)) visit(run->format);
    }
    visit(paragraph.markFormat);
  }
}

void RtfWriter::CollectTables() {
  const auto addFont = [this](const std::string& family) {
    if (fonts_.emplace(family, static_cast<int>(families_.size())).second) {
      families_.push_back(family);
    }
  };
  addFont(text_.defaultFamily);
  ForEachFormat([&](const CharFormat& format) {
    addFont(format.family);
    if (!format.color) return;
    const int number = static_cast<int>(palette_.size()) + 1;
    if (colors_.emplace(*format.color, number).second) palette_.push_back(*format.color);
  });
}

void RtfWriter::WriteHeader() {
  out_ += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1{\\fonttbl";
  for (std::size_t k = 0; k < families_.size(); ++k) {
    out_ += '{';
    Word("f", static_cast<int>(k));
    out_ += "\\fnil\\fcharset0 ";
    std::string family = families_[k];
    std::replace(family.begin(), family.end(), ';', ' ');  // it ends the name
    WriteText(family);
    out_ += ";}";
  }
  out_ += "}\r\n{\\colortbl ;";
  for (const std::uint32_t color : palette_) {
    Word("red", static_cast<int>(color & 0xFF));
    Word("green", static_cast<int>(color >> 8 & 0xFF));
    Word("blue", static_cast<int>(color >> 16 & 0xFF));
    out_ += ';';
  }
  out_ += "}\r\n";
  out_ += kPage;
  out_ += "\\pard\\plain\\f0\\fs20\r\n";
  format_.family = text_.defaultFamily;
}

void RtfWriter::Toggle(std::string_view name, bool before, bool now) {
  if (before == now) return;
  Word(name);
  if (!now) out_ += '0';
}

void RtfWriter::WriteFormat(const CharFormat& format) {
  if (format == format_) return;
  if (format.family != format_.family) Word("f", fonts_.at(format.family));
  if (format.halfPoints != format_.halfPoints) Word("fs", format.halfPoints);
  Toggle("b", format_.bold, format.bold);
  Toggle("i", format_.italic, format.italic);
  Toggle("ul", format_.underline, format.underline);
  Toggle("strike", format_.strikeout, format.strikeout);
  if (format.script != format_.script) {
    constexpr std::string_view kWords[] = {"nosupersub", "super", "sub"};
    Word(kWords[static_cast<std::size_t>(format.script)]);
  }
  if (format.color != format_.color) Word("cf", format.color ? colors_.at(*format.color) : 0);
  out_ += ' ';
  format_ = format;
}

void RtfWriter::WriteShape(const ParagraphFormat& shape) {
  if (shape == shape_) return;
  constexpr std::string_view kWords[] = {"ql", "qc", "qr", "qj"};
  Word("pard");
  Word(kWords[static_cast<std::size_t>(shape.alignment)]);
  Word("li", shape.leftIndent);
  Word("fi", shape.firstIndent);
  for (const int stop : shape.tabStops) Word("tx", stop);
  out_ += ' ';
  shape_ = shape;
}

void RtfWriter::WriteParagraph(const Paragraph& paragraph) {
  WriteShape(paragraph.format);
  for (const InlineItem& item : paragraph.items) {
    if (const auto* run = std::get_if<TextRun>(&item)) {
      WriteFormat(run->format);
      WriteText(run->text);
    } else {
      WritePicture(std::get<Picture>(item));
    }
  }
  WriteFormat(paragraph.markFormat);
  out_ += "\\par\r\n";
}

void RtfWriter::WriteText(std::string_view utf8) {
  while (!utf8.empty()) {
    const std::string_view before = utf8;
    const char32_t c = NextUtf8(utf8);
    WriteCharacter(c, before.substr(0, before.size() - utf8.size()));
  }
}

void RtfWriter::WriteCharacter(char32_t c, std::string_view utf8) {
  if (c == U'\\' || c == U'{' || c == U'}') {
    (out_ += '\\') += static_cast<char>(c);
  } else if (c == U'\t') {
    out_ += "\\tab ";
  } else if (c == U'\u2028' || c == U'\n') {
    out_ += "\\line ";
  } else if (c >= 0x20 && c < 0x7F) {
    out_ += static_cast<char>(c);
  } else if (const std::string byte = Utf8ToCp1252(utf8); c > 0x7F && byte != "?") {
    out_ += "\\'";
    WriteHex(byte);
  } else if (c > 0xFFFF) {
    Word("u", static_cast<std::int16_t>(0xD800 + ((c - 0x10000) >> 10)));
    out_ += '?';
    Word("u", static_cast<std::int16_t>(0xDC00 + (c & 0x3FF)));
    out_ += '?';
  } else if (c > 0x7F) {
    Word("u", static_cast<std::int16_t>(c));
    out_ += '?';
  }
}

void RtfWriter::WriteHex(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    out_ += kDigits[code >> 4];
    out_ += kDigits[code & 15];
  }
}

void RtfWriter::WritePicture(const Picture& picture) {
  std::string dib;
  if (picture.kind == PictureKind::kBmp) {
    try {
      dib = DibFromBmp(picture.bytes);
    } catch (const PictureFault&) {
      out_ += kPicturePlaceholder;
      return;
    }
  }
  constexpr std::string_view kWords[] = {"pngblip", "jpegblip", "dibitmap0"};
  // Old readers take a plain bitmap but no \shppict; PNG and JPEG are beyond them anyway.
  out_ += picture.kind == PictureKind::kBmp ? "{\\pict" : "{\\*\\shppict{\\pict";
  Word(kWords[static_cast<std::size_t>(picture.kind)]);
  Word("picw", picture.pixelWidth);
  Word("pich", picture.pixelHeight);
  Word("picwgoal", picture.widthTwips);
  Word("pichgoal", picture.heightTwips);
  const std::string_view data =
      picture.kind == PictureKind::kBmp ? std::string_view(dib) : picture.bytes;
  for (std::size_t at = 0; at < data.size(); at += kHexLine) {
    out_ += "\r\n";
    WriteHex(data.substr(at, kHexLine));
  }
  out_ += picture.kind == PictureKind::kBmp ? "}" : "}}";
}

std::string RtfWriter::Write() {
  CollectTables();
  WriteHeader();
  for (const Paragraph& paragraph : text_.paragraphs) WriteParagraph(paragraph);
  out_ += "}\r\n";
  return std::move(out_);
}

}  // namespace

std::string WriteRtf(const RichText& text) {
  return RtfWriter(text).Write();
}

}  // namespace quorvane
