#include "windows/log/log_copy.h"

#include <QTextBlock>
#include <QTextDocument>

#include "base/clock.h"
#include "rtf/rtf_writer.h"

namespace quorvane {

namespace {

struct BlockCopy : public QTextBlockUserData {
  explicit BlockCopy(const QTextBlock& block)
      : paragraph(std::make_shared<DocumentParagraph>(ParagraphOf(block))) {}

  std::shared_ptr<const DocumentParagraph> paragraph;
};

}  // namespace

RichText RichTextOf(const DocumentCopy& copy) {
  RichText text;
  text.defaultFamily = copy.plain.family;
  text.paragraphs.clear();
  text.paragraphs.reserve(copy.paragraphs.size());
  for (const auto& read : copy.paragraphs) {
    text.paragraphs.push_back(WithPictures(*read, copy.plain));
  }
  if (text.paragraphs.empty()) text.paragraphs.emplace_back();
  return text;
}

DocumentReader::DocumentReader(QTextDocument& document) : document_(document) {
  connect(&document, &QTextDocument::contentsChange, this, [this](int from, int, int added) {
    ++edits_;
    Forget(from, added);
  });
}

// Removed blocks take what was read along; the block in which they began is the first one here.
void DocumentReader::Forget(int from, int length) {
  QTextBlock block = document_.findBlock(from);
  for (; block.isValid() && block.position() <= from + length; block = block.next()) {
    if (block.userData() != nullptr) block.setUserData(nullptr);
  }
}

bool DocumentReader::Read(std::chrono::milliseconds most) {
  const CharFormat plain = FromTextFormat({}, document_.defaultFont());
  if (plain != plain_) Forget(0, document_.characterCount());
  plain_ = plain;
  const Stopwatch watch;
  const double seconds = std::chrono::duration<double>(most).count();
  for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
    if (block.userData() != nullptr) continue;
    if (watch.Seconds() >= seconds) return false;
    block.setUserData(new BlockCopy(block));
  }
  return true;
}

DocumentCopy DocumentReader::Copy() {
  Read(std::chrono::hours(1));
  DocumentCopy copy;
  copy.plain = plain_;
  copy.paragraphs.reserve(static_cast<std::size_t>(document_.blockCount()));
  for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
    copy.paragraphs.push_back(static_cast<const BlockCopy*>(block.userData())->paragraph);
  }
  return copy;
}

std::function<std::string()> DocumentReader::RtfOfNow() {
  return [copy = Copy()] { return WriteRtf(RichTextOf(copy)); };
}

}  // namespace quorvane
