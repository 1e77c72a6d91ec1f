// Formatted text with pictures as a plain value: what the log holds. All text is UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quorvane {

inline constexpr int kTwipsPerInch = 1440;
inline constexpr int kTwipsPerPixel = 15;  // at 96 pixels an inch
inline constexpr int kMaxTwips = 31680;    // 22 inches, the largest paper of word processors
inline constexpr int kMaxHalfPoints = 3276;

// The line break inside a paragraph, U+2028.
inline constexpr std::string_view kLineSeparator = "\xE2\x80\xA8";

enum class ScriptPosition : std::uint8_t { kNormal, kSuperscript, kSubscript };

// The look of characters; by default the log's.
struct CharFormat {
  std::string family = "Courier New";
  int halfPoints = 20;  // size in half points, 1 to kMaxHalfPoints
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeout = false;
  ScriptPosition script = ScriptPosition::kNormal;
  std::optional<std::uint32_t> color;  // 0x00BBGGRR; nothing: the reader's own text colour
  bool operator==(const CharFormat&) const = default;
};

// Characters of one format. Holds tabs and kLineSeparator but no other control character.
struct TextRun {
  std::string text;
  CharFormat format;
  bool operator==(const TextRun&) const = default;
};

enum class PictureKind : std::uint8_t { kPng, kJpeg, kBmp };

struct Picture {
  PictureKind kind = PictureKind::kPng;
  std::string bytes;    // a whole file of that kind
  int pixelWidth = 0;   // as the bytes say
  int pixelHeight = 0;  // as the bytes say
  int widthTwips = 0;   // as shown, 1 to kMaxTwips
  int heightTwips = 0;  // as shown, 1 to kMaxTwips
  bool operator==(const Picture&) const = default;
};

using InlineItem = std::variant<TextRun, Picture>;

enum class Alignment : std::uint8_t { kLeft, kCenter, kRight, kJustified };

struct ParagraphFormat {
  Alignment alignment = Alignment::kLeft;
  int leftIndent = 0;         // twips
  int firstIndent = 0;        // twips, added to leftIndent in the first line; may be negative
  std::vector<int> tabStops;  // twips from the margin
  bool operator==(const ParagraphFormat&) const = default;
};

struct Paragraph {
  std::vector<InlineItem> items;
  ParagraphFormat format;
  CharFormat markFormat;  // of the paragraph's end: the height of an empty line
  bool operator==(const Paragraph&) const = default;
};

// A document: one paragraph at least, an empty one when there is no text.
struct RichText {
  std::vector<Paragraph> paragraphs = std::vector<Paragraph>(1);
  std::string defaultFamily = "Courier New";  // font of characters that name none
  bool operator==(const RichText&) const = default;
};

// The text alone, LF between paragraphs; a line break inside a paragraph stays U+2028 and a picture
// gives nothing.
std::string PlainText(const RichText& text);

// Appends to the last paragraph of `text`. Every CR LF, LF or CR in `added` ends a paragraph, so a
// line with its end leaves an empty paragraph for the next, of the same shape.
void AppendText(RichText& text, std::string_view added, const CharFormat& format);

// Appends a picture to the last paragraph.
void AppendPicture(RichText& text, Picture picture);

// Appends `added` as if it were inserted at the end: its first paragraph goes on where the last one
// of `text` ends, and shapes that one if it was empty.
void AppendRichText(RichText& text, const RichText& added);

// Appends characters of one format to a paragraph, to its last run if the formats are equal.
// Control characters other than tab are left out.
void AppendRun(Paragraph& paragraph, std::string_view characters, const CharFormat& format);

}  // namespace quorvane
