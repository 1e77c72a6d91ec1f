#include "windows/log_edit.h"

#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QTextBlock>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "windows/log_clipboard.h"
#include "windows/picture_object.h"
#include "windows/rich_text_document.h"

namespace {

constexpr double kTabPixels = 48.0;  // half an inch, as RTF has it

// Columns that are set apart by blanks.
bool IsWideTable(const QString& line) {
  constexpr int kFewestGaps = 5;
  return line.size() > kTableColumns && !line.contains(QChar::ObjectReplacementCharacter) &&
         line.count(QLatin1String("   ")) >= kFewestGaps;
}

}  // namespace

LogEdit::LogEdit(std::function<bool()> locked, QWidget* parent)
    : QTextEdit(parent), locked_(std::move(locked)) {
  PictureObject::Install(*document());
  setTabStopDistance(kTabPixels);
  setLineWrapMode(QTextEdit::FixedPixelWidth);
  QPalette paper = palette();
  paper.setColor(QPalette::Base, Qt::white);
  paper.setColor(QPalette::Text, Qt::black);
  setPalette(paper);
  FitWrapWidth();
}

QSize LogEdit::sizeHint() const {
  return {lineWrapColumnOrWidth() + 2 * fontMetrics().averageCharWidth(),
          40 * fontMetrics().lineSpacing()};
}

void LogEdit::KeepTablesWhole(int from, int to) {
  QTextBlockFormat whole;
  whole.setNonBreakableLines(true);
  for (QTextBlock block = document()->findBlock(from); block.isValid() && block.position() <= to;
       block = block.next()) {
    if (IsWideTable(block.text())) QTextCursor(block).mergeBlockFormat(whole);
  }
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

void LogEdit::resizeEvent(QResizeEvent* event) {
  FitWrapWidth();
  QTextEdit::resizeEvent(event);
}

void LogEdit::changeEvent(QEvent* event) {
  QTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange) FitWrapWidth();
}

void LogEdit::FitWrapWidth() {
  const double columns = QFontMetricsF(font()).horizontalAdvance('0') * kTableColumns;
  const int width = static_cast<int>(std::ceil(columns + 2.0 * document()->documentMargin()));
  const int wrap = std::max(width, viewport()->width());
  if (wrap != lineWrapColumnOrWidth()) setLineWrapColumnOrWidth(wrap);
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
