#include "rtf/rich_text.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace quorvane {

namespace {

bool IsStrayControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return (code < 0x20 && c != '\t') || code == 0x7F;
}

}  // namespace

std::string PlainText(const RichText& text) {
  std::string plain;
  for (const Paragraph& paragraph : text.paragraphs) {
    if (&paragraph != &text.paragraphs.front()) plain += '\n';
    for (const InlineItem& item : paragraph.items) {
      if (const auto* run = std::get_if<TextRun>(&item)) plain += run->text;
    }
  }
  return plain;
}

void AppendRun(Paragraph& paragraph, std::string_view characters, const CharFormat& format) {
  if (std::any_of(characters.begin(), characters.end(), IsStrayControl)) {
    std::string kept(characters);
    std::erase_if(kept, IsStrayControl);
    return AppendRun(paragraph, kept, format);
  }
  if (characters.empty()) return;
  if (!paragraph.items.empty()) {
    auto* last = std::get_if<TextRun>(&paragraph.items.back());
    if (last != nullptr && last->format == format) {
      last->text += characters;
      return;
    }
  }
  paragraph.items.emplace_back(TextRun{std::string(characters), format});
}

void AppendText(RichText& text, std::string_view added, const CharFormat& format) {
  const std::string lines = WithUnixLines(added);
  std::string_view rest = lines;
  while (true) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    Paragraph& paragraph = text.paragraphs.back();
    AppendRun(paragraph, rest.substr(0, end), format);
    paragraph.markFormat = format;
    if (end == rest.size()) return;
    rest.remove_prefix(end + 1);
    ParagraphFormat shape = paragraph.format;  // a new line looks like the one before it
    text.paragraphs.push_back({{}, std::move(shape), format});
  }
}

void AppendPicture(RichText& text, Picture picture) {
  text.paragraphs.back().items.emplace_back(std::move(picture));
}

void AppendRichText(RichText& text, const RichText& added) {
  const std::vector<Paragraph> source = added.paragraphs;  // `added` may be `text` itself
  for (const Paragraph& paragraph : source) {
    if (&paragraph != &source.front()) {
      text.paragraphs.push_back(paragraph);
      continue;
    }
    Paragraph& last = text.paragraphs.back();
    if (last.items.empty()) last.format = paragraph.format;
    last.markFormat = paragraph.markFormat;
    for (const InlineItem& item : paragraph.items) {
      if (const auto* run = std::get_if<TextRun>(&item)) {
        AppendRun(last, run->text, run->format);
      } else {
        last.items.push_back(item);
      }
    }
  }
}

}  // namespace quorvane
