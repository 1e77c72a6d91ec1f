// The log's text on the clipboard and off it.
#pragma once

#include <QFont>
#include <memory>
#include <optional>

#include "rtf/rich_text.h"

class QMimeData;
class QTextCursor;

namespace quorvane {

// The selection as RTF with its pictures, as HTML and as plain text.
std::unique_ptr<QMimeData> MimeOfSelection(const QTextCursor& selection);

// Whether there is anything to paste.
bool HasPastable(const QMimeData& data);

// What to paste, the richest first: RTF, HTML, a picture. Nothing if there is only plain text,
// which takes the format at the caret. HTML is reduced to what the log can save; what it says
// nothing about has `plainFont`.
std::optional<RichText> RichTextOnClipboard(const QMimeData& data, const QFont& plainFont);

}  // namespace quorvane
