// A copy of the log for another thread, kept up to date a little at a time.
#pragma once

#include <QObject>
#include <memory>
#include <vector>

#include "windows/log/rich_text_document.h"
#include "windows/session/session_log.h"

class QTextDocument;

namespace quorvane {

// The paragraphs of a document at one moment. They are shared with later copies and hold the
// pictures as the document does, so that a copy of a long log is small.
struct DocumentCopy {
  std::vector<std::shared_ptr<const DocumentParagraph>> paragraphs;
  CharFormat plain;  // of what names no font
};

// What RichTextOf would have given at that moment. Any thread may call it.
RichText RichTextOf(const DocumentCopy& copy);

// Follows a document and reads again only the blocks that have changed: it keeps what it read as
// the user data of the blocks, which belongs to it.
class DocumentReader : public QObject, public LogFollower {
  Q_OBJECT
 public:
  // `document` outlives this.
  explicit DocumentReader(QTextDocument& document);

  int Edits() const override { return edits_; }
  bool Read(std::chrono::milliseconds most) override;
  std::function<std::string()> RtfOfNow() override;

  // The document as it is; what Read has not read yet is read now.
  DocumentCopy Copy();

 private:
  void Forget(int from, int length);

  QTextDocument& document_;
  CharFormat plain_;  // at the last reading
  int edits_ = 0;
};

}  // namespace quorvane
