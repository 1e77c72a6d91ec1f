// Rich texts in and out of a QTextDocument. Pictures are image resources of the document that hold
// the bytes of their files, named by their content.
#pragma once

#include <QByteArray>
#include <QList>
#include <QTextCharFormat>

#include "rtf/rich_text.h"

class QFont;
class QTextBlock;
class QTextCursor;
class QTextDocument;

namespace quorvane {

// Replaces all of `document`; its default font and page stay. There is nothing to undo afterwards.
void ShowRichText(const RichText& text, QTextDocument& document);

// Puts `text` in place of the selection: its first paragraph goes on where the cursor stands, and
// shapes that paragraph if it was empty. One step to undo.
void InsertRichText(const RichText& text, QTextCursor& cursor);

// Puts a picture at the cursor.
void InsertPicture(const Picture& picture, QTextCursor& cursor);

// All of `document`. What names no font, or no size, has those of the document's default font; of
// tables and lists the paragraphs stay; an image that is no picture file becomes "[picture]".
RichText RichTextOf(const QTextDocument& document);

// The same of what is selected.
RichText SelectedRichText(const QTextCursor& cursor);

// A paragraph of a document whose pictures are still the bytes of their files, shared with the
// document: quick to take, and any thread can finish it.
struct DocumentParagraph {
  Paragraph paragraph;         // its pictures without bytes
  QList<QByteArray> pictures;  // theirs, in order
};

// The paragraph of one block, as RichTextOf takes it.
DocumentParagraph ParagraphOf(const QTextBlock& block);

// The paragraph with its pictures; what is no picture file becomes "[picture]" in the format
// `plain`.
Paragraph WithPictures(const DocumentParagraph& read, const CharFormat& plain);

// One character format as the other.
QTextCharFormat ToTextFormat(const CharFormat& format);
CharFormat FromTextFormat(const QTextCharFormat& format, const QFont& defaultFont);

// A font by its name; a missing typewriter font is replaced by another of fixed width.
QFont FontOf(const CharFormat& format);

}  // namespace quorvane
