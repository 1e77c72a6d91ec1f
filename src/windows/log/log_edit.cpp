#include "windows/log/log_edit.h"

#include <QAbstractTextDocumentLayout>
#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "windows/log/log_clipboard.h"
#include "windows/log/picture_object.h"
#include "windows/log/rich_text_document.h"

namespace quorvane {

namespace {

constexpr double kTabPixels = 48.0;  // half an inch, as RTF has it

// Columns that are set apart by blanks, or a rule.
bool IsTable(const QString& paragraph) {
  constexpr int kFewestGaps = 2;
  const QString line = paragraph.trimmed();
  if (line.contains(QChar::ObjectReplacementCharacter)) return false;
  const auto isText = [](QChar c) { return c.isLetterOrNumber(); };
  return line.count(QLatin1String("   ")) >= kFewestGaps ||
         (!line.isEmpty() && std::none_of(line.begin(), line.end(), isText));
}

}  // namespace

LogEdit::LogEdit(std::function<bool()> locked, QWidget* parent)
    : QTextEdit(parent), locked_(std::move(locked)) {
  PictureObject::Install(*document());
  setTabStopDistance(kTabPixels);
  QPalette paper = palette();
  paper.setColor(QPalette::Base, Qt::white);
  paper.setColor(QPalette::Text, Qt::black);
  setPalette(paper);
}

QSize LogEdit::sizeHint() const {
  const double columns = QFontMetricsF(font()).horizontalAdvance('0') * (kTableColumns + 2);
  const double margins = 2.0 * document()->documentMargin();
  return {static_cast<int>(std::ceil(columns + margins)), 40 * fontMetrics().lineSpacing()};
}

void LogEdit::KeepTablesWhole(int from, int to) {
  QTextCursor all(document());
  all.beginEditBlock();  // laid out once
  for (QTextBlock block = document()->findBlock(from); block.isValid() && block.position() <= to;
       block = block.next()) {
    QTextBlockFormat format = block.blockFormat();
    if (format.nonBreakableLines() == IsTable(block.text())) continue;
    format.setNonBreakableLines(!format.nonBreakableLines());
    QTextCursor(block).setBlockFormat(format);
  }
  all.endEditBlock();
}

// The lock is a plain flag that tells nobody when it changes: each event looks at it first.
void LogEdit::FollowLock() {
  if (isReadOnly() != locked_()) setReadOnly(locked_());
}

bool LogEdit::event(QEvent* event) {
  FollowLock();
  return QTextEdit::event(event);
}

bool LogEdit::viewportEvent(QEvent* event) {
  FollowLock();
  return QTextEdit::viewportEvent(event);
}

void LogEdit::mousePressEvent(QMouseEvent* event) {
  QTextEdit::mousePressEvent(event);
  emit Clicked();
}

void LogEdit::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    emit Clicked();
    return;
  }
  QTextEdit::keyPressEvent(event);
}

// Ctrl and the wheel would change the font, which goes to the settings, while the text is locked.
void LogEdit::wheelEvent(QWheelEvent* event) {
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    event->ignore();
    return;
  }
  QTextEdit::wheelEvent(event);
}

void LogEdit::contextMenuEvent(QContextMenuEvent* event) {
  emit MenuWanted(event->globalPos());
}

// The lines that were looked at stay in sight, wherever the new width breaks those before them.
void LogEdit::resizeEvent(QResizeEvent* event) {
  QScrollBar* bar = verticalScrollBar();
  const bool atEnd = bar->maximum() - bar->value() < fontMetrics().lineSpacing();
  const QTextCursor top = cursorForPosition(QPoint());
  const int above = cursorRect(top).top();
  QTextEdit::resizeEvent(event);
  if (atEnd) document()->documentLayout()->documentSize();  // or the end is not yet known
  bar->setValue(atEnd ? bar->maximum() : bar->value() + cursorRect(top).top() - above);
}

QMimeData* LogEdit::createMimeDataFromSelection() const {
  return MimeOfSelection(textCursor()).release();
}

bool LogEdit::canInsertFromMimeData(const QMimeData* source) const {
  return HasPastable(*source);
}

void LogEdit::insertFromMimeData(const QMimeData* source) {
  if (isReadOnly()) return;
  QTextCursor caret = textCursor();
  const QFont font = caret.charFormat().font().resolve(document()->defaultFont());
  if (const auto text = RichTextOnClipboard(*source, font)) {
    InsertRichText(*text, caret);
  } else {
    caret.insertText(source->text());
  }
  setTextCursor(caret);
}

}  // namespace quorvane
