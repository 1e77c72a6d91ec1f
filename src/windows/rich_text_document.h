// Rich texts in and out of a QTextDocument. Pictures are image resources of the document that hold
// the bytes of their files, named by their content.
#pragma once

#include <QTextCharFormat>

#include "rtf/rich_text.h"

class QFont;
class QTextCursor;
class QTextDocument;

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

// One character format as the other.
QTextCharFormat ToTextFormat(const CharFormat& format);
CharFormat FromTextFormat(const QTextCharFormat& format, const QFont& defaultFont);

// A font by its name; a missing typewriter font is replaced by another of fixed width.
QFont FontOf(const CharFormat& format);
