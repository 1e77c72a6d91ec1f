#include "windows/log/log_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTextBlock>
#include <QTextCursor>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <optional>

#include "core/settings/settings.h"
#include "rtf/log_text.h"
#include "rtf/picture_file.h"
#include "rtf/rtf_writer.h"
#include "windows/controls/busy_pointer.h"
#include "windows/log/log_copy.h"
#include "windows/log/log_edit.h"
#include "windows/log/rich_text_document.h"

namespace quorvane {

namespace {

CharFormat LookOf(const LogFont& font) {
  CharFormat look;
  look.family = font.Font;
  look.halfPoints = std::clamp(static_cast<int>(std::lround(2.0F * font.Size)), 1, kMaxHalfPoints);
  look.bold = font.Bold;
  look.italic = font.Italic;
  return look;
}

// The family that letters of `font` are drawn in.
QString StandInFor(const QFont& font) {
  const QFontInfo drawn(font);
  const bool mono = font.styleHint() == QFont::TypeWriter;
  if (!mono || drawn.exactMatch() || drawn.fixedPitch()) return drawn.family();
  return QFontInfo(QFontDatabase::systemFont(QFontDatabase::FixedFont)).family();
}

}  // namespace

LogWindow::LogWindow(Session& session, Role role, QWidget* parent)
    : QWidget(parent), session_(session), role_(role) {
  BuildWidgets();
  BuildMenu();
  SetDefaultLook(LookOf(LoadLogFont(session_.Settings, LogFont())));
  Clear();
  ConnectSignals();
}

void LogWindow::BuildWidgets() {
  setObjectName("frmDocument");
  setWindowTitle(tr("Log"));
  // The editor asks until its own end, when this window is no LogWindow any more.
  logFile_ = new LogEdit([&session = session_] { return session.Calculating; });
  logFile_->setObjectName("logFile");
  logFile_->setAccessibleName(tr("Log"));
  sbDocument_ = new QLabel;
  sbDocument_->setObjectName("sbDocument");
  sbDocument_->setTextFormat(Qt::PlainText);
  // A long text does not widen the window, and no text does not make the line vanish.
  sbDocument_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  sbDocument_->setText(" ");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 4);
  layout->setSpacing(4);
  layout->addWidget(logFile_, 1);
  layout->addWidget(sbDocument_);
}

void LogWindow::BuildMenu() {
  mnuRTBcontext_ = new QMenu(this);
  mnuRTBcontext_->setObjectName("mnuRTBcontext");
  const auto add = [this](const char* name, const QString& caption, const QKeySequence& keys) {
    QAction* action = mnuRTBcontext_->addAction(caption);
    action->setObjectName(name);
    action->setShortcut(keys);  // only shown: the editor itself takes these keys
    action->setShortcutContext(Qt::WidgetShortcut);
    return action;
  };
  mnuRTBcopy_ = add("mnuRTBcopy", tr("Copy"), QKeySequence::Copy);
  mnuRTBcut_ = add("mnuRTBcut", tr("Cut"), QKeySequence::Cut);
  mnuRTBdelete_ = add("mnuRTBdelete", tr("Delete"), QKeySequence::Delete);
  mnuRTBpaste_ = add("mnuRTBpaste", tr("Paste"), QKeySequence::Paste);
  mnuRTBcontext_->addSeparator();
  mnuRTBselectall_ = add("mnuRTBselectall", tr("Select All"), QKeySequence::SelectAll);
  mnuRTBcontext_->addSeparator();
  mnuRTBfont_ = add("mnuRTBfont", tr("Change Font"), {});
}

void LogWindow::ConnectSignals() {
  connect(mnuRTBcopy_, &QAction::triggered, logFile_, &QTextEdit::copy);
  connect(mnuRTBcut_, &QAction::triggered, logFile_, &QTextEdit::cut);
  connect(mnuRTBdelete_, &QAction::triggered, this,
          [this] { logFile_->textCursor().removeSelectedText(); });
  connect(mnuRTBpaste_, &QAction::triggered, logFile_, &QTextEdit::paste);
  connect(mnuRTBselectall_, &QAction::triggered, logFile_, &QTextEdit::selectAll);
  connect(mnuRTBfont_, &QAction::triggered, this, &LogWindow::ChangeFont);
  connect(logFile_, &LogEdit::MenuWanted, this, &LogWindow::ShowMenu);
  connect(logFile_, &LogEdit::Clicked, this, &LogWindow::Clicked);
  connect(logFile_, &QTextEdit::textChanged, this, [this] {
    if (role_ == Role::kLog) session_.Module.ExperimentOpen = true;
    emit Changed();
  });
  follow_.setSingleShot(true);
  connect(&follow_, &QTimer::timeout, logFile_, &QTextEdit::ensureCursorVisible);
}

void LogWindow::ShowMenu(const QPoint& globalPosition) {
  const bool selected = logFile_->textCursor().hasSelection();
  const bool editable = !session_.Calculating;
  mnuRTBcopy_->setEnabled(selected);
  mnuRTBcut_->setEnabled(selected && editable);
  mnuRTBdelete_->setEnabled(selected && editable);
  mnuRTBpaste_->setEnabled(editable);
  mnuRTBfont_->setEnabled(editable);
  mnuRTBcontext_->popup(globalPosition);
}

CharFormat LogWindow::DefaultLook() const {
  return FromTextFormat({}, logFile_->font());
}

void LogWindow::SetDefaultLook(const CharFormat& look) {
  logFile_->setFont(FontOf(look));
}

// Without a selection the font is that of what comes next, at the caret or at the end. A font that
// the machine lacks keeps its name unless the user takes another than the one that stands in.
void LogWindow::ChangeFont() {
  QFont shown = logFile_->font();
  const QString family = shown.family();
  shown.setFamily(StandInFor(shown));
  std::optional<QFont> font = session_.Ask.ChooseFont(this, shown);
  if (!font) return;
  if (font->family() == shown.family()) font->setFamily(family);
  CharFormat look = FromTextFormat({}, *font);
  logFile_->mergeCurrentCharFormat(ToTextFormat(look));
  QTextCursor end(logFile_->document());
  end.movePosition(QTextCursor::End);
  if (end.block().length() == 1) end.setBlockCharFormat(ToTextFormat(look));
  look.underline = false;
  look.strikeout = false;
  SetDefaultLook(look);
}

void LogWindow::AppendLogText(const QString& text) {
  QTextCursor caret = logFile_->textCursor();
  if (caret.hasSelection()) {
    caret.clearSelection();
    logFile_->setTextCursor(caret);
  }
  QString line = text + '\n';
  line.replace(QChar::ParagraphSeparator, QChar::LineSeparator);
  caret.beginEditBlock();
  const int from = caret.position();
  caret.insertText(line);
  logFile_->KeepTablesWhole(from, caret.position() - 1);
  caret.endEditBlock();
  follow_.start(0);
}

void LogWindow::TakeFocus() {
  auto* child = qobject_cast<QMdiSubWindow*>(parentWidget());
  if (!isVisible() || (child != nullptr && child->isMinimized())) return;
  if (QApplication::activeModalWidget() != nullptr) return;
  if (child != nullptr) child->mdiArea()->setActiveSubWindow(child);
  logFile_->setFocus();
}

std::unique_ptr<LogFollower> LogWindow::Follow() {
  return std::make_unique<DocumentReader>(*logFile_->document());
}

void LogWindow::MoveToEnd() {
  QTextCursor caret = logFile_->textCursor();
  caret.movePosition(QTextCursor::End);
  logFile_->setTextCursor(caret);
}

void LogWindow::InsertPictureAtEnd(const std::string& png) {
  const Picture picture = PictureFromFile(png);
  QTextCursor caret = logFile_->textCursor();
  caret.movePosition(QTextCursor::End);
  caret.beginEditBlock();
  InsertPicture(picture, caret);
  logFile_->KeepTablesWhole(caret.position(), caret.position());
  caret.endEditBlock();
  logFile_->setTextCursor(caret);
  follow_.start(0);
}

std::string LogWindow::ToRtf() const {
  return WriteRtf(RichTextOf(*logFile_->document()));
}

bool LogWindow::LoadRtf(std::string_view bytes) {
  if (bytes.empty()) {
    Clear();
    return true;
  }
  const LoadedLog log = ReadLog(bytes, DefaultLook());
  QTextDocument& document = *logFile_->document();
  ShowRichText(log.text, document);
  document.setUndoRedoEnabled(false);
  logFile_->KeepTablesWhole(0, document.characterCount());
  document.setUndoRedoEnabled(true);
  MoveToEnd();
  return log.understood;
}

void LogWindow::Clear() {
  RichText empty;
  empty.paragraphs.back().markFormat = DefaultLook();
  ShowRichText(empty, *logFile_->document());
}

void LogWindow::SetStatus(const QString& text) {
  sbDocument_->setText(text.isEmpty() ? QStringLiteral(" ") : text);
  sbDocument_->setToolTip(text.trimmed());
}

bool LogWindow::SaveLog() {
  if (!session_.Module.ExperimentOpen) {
    session_.Ask.ShowMessage(this, "", tr("There is nothing more to save!"), MessageIcon::kStop);
    return false;
  }
  const QString name = session_.Ask.SaveFile(
      this, {tr("Save"), ToQString(session_.CurrentFolder), tr("Rich Text File (*.rtf)"), ""});
  if (name.isEmpty()) return false;
  try {
    const BusyPointer busy;
    WriteWholeFile(ToPath(name), ToRtf());
  } catch (const FileFault& fault) {
    session_.Ask.ShowMessage(this, "", QString::fromUtf8(fault.what()), MessageIcon::kExclamation);
    return false;
  }
  session_.CurrentFolder = ToPath(name).parent_path();
  session_.Module.ExperimentOpen = false;
  return true;
}

void LogWindow::SaveFont(Host& host) const {
  const CharFormat look = DefaultLook();
  const LogFont font = {look.family, look.bold, look.italic,
                        static_cast<float>(look.halfPoints) / 2.0F};
  SaveLogFont(font, session_.Settings, host);
}

QTextEdit* LogWindow::Editor() {
  return logFile_;
}

PrintContent LogWindow::Printed() const {
  return logFile_;
}

void LogWindow::closeEvent(QCloseEvent* event) {
  if (role_ == Role::kLog) event->ignore();
}

}  // namespace quorvane
