#include "windows/frame/qt_dialogs.h"

#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include "windows/print/print_dialog.h"
#include "windows/session/save_folder.h"

namespace quorvane {

namespace {

const QString kProgram = QStringLiteral("Quorvane");

QMessageBox::Icon IconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kInformation:
      return QMessageBox::Information;
    case MessageIcon::kQuestion:
      return QMessageBox::Question;
    case MessageIcon::kExclamation:
      return QMessageBox::Warning;
    case MessageIcon::kStop:
      return QMessageBox::Critical;
    case MessageIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

// The suffix of the first pattern of a filter, such as ".exz"; empty if it has none.
QString SuffixOf(const QString& filter) {
  const qsizetype star = filter.indexOf(QStringLiteral("(*."));
  if (star < 0) return {};
  QString suffix;
  for (qsizetype k = star + 2;
       k < filter.size() && (filter[k] == '.' || filter[k].isLetterOrNumber()); ++k) {
    suffix += filter[k];
  }
  return suffix.size() > 1 ? suffix : QString();
}

// "*.*" means all files, but to Qt only those with a point in their names.
QString WithAllNames(QString filter) {
  return filter.replace(QStringLiteral("(*.*)"), QStringLiteral("(*)"));
}

}  // namespace

void QtDialogs::ShowMessage(QWidget* parent, const QString& title, const QString& text,
                            MessageIcon icon) {
  QMessageBox box(IconOf(icon), title.isEmpty() ? kProgram : title, text, QMessageBox::Ok, parent);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

bool QtDialogs::AskYesNo(QWidget* parent, const QString& title, const QString& text) {
  QMessageBox box(QMessageBox::Question, title.isEmpty() ? kProgram : title, text,
                  QMessageBox::Yes | QMessageBox::No, parent);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(QMessageBox::Yes);
  return box.exec() == QMessageBox::Yes;
}

DiscardChoice QtDialogs::AskDiscard(QWidget* parent, const QString& title, const QString& text) {
  QMessageBox box(QMessageBox::Question, title.isEmpty() ? kProgram : title, text,
                  QMessageBox::Yes | QMessageBox::No, parent);
  box.setTextFormat(Qt::PlainText);
  const QPushButton* save = box.addButton(QObject::tr("&Save..."), QMessageBox::ActionRole);
  box.setDefaultButton(QMessageBox::Yes);
  box.setEscapeButton(QMessageBox::No);
  const int answer = box.exec();
  if (box.clickedButton() == save) return DiscardChoice::kSave;
  return answer == QMessageBox::Yes ? DiscardChoice::kYes : DiscardChoice::kNo;
}

WorkChoice QtDialogs::OfferWork(QWidget* parent, const QString& title, const QString& text) {
  QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
  box.setTextFormat(Qt::PlainText);
  QPushButton* open = box.addButton(QObject::tr("&Open"), QMessageBox::AcceptRole);
  const QPushButton* remove = box.addButton(QObject::tr("&Delete"), QMessageBox::DestructiveRole);
  QPushButton* later = box.addButton(QObject::tr("&Later"), QMessageBox::RejectRole);
  box.setDefaultButton(open);
  box.setEscapeButton(later);
  box.exec();
  if (box.clickedButton() == open) return WorkChoice::kOpen;
  return box.clickedButton() == remove ? WorkChoice::kDelete : WorkChoice::kLater;
}

std::optional<QString> QtDialogs::AskText(QWidget* parent, const QString& title,
                                          const QString& prompt, const QString& value) {
  QInputDialog dialog(parent);
  dialog.setWindowTitle(title);
  dialog.setLabelText(prompt);
  dialog.setTextValue(value);
  // Room for the title beside the buttons of the frame.
  constexpr int kFrameButtons = 25;  // average characters
  const QFontMetrics metrics = dialog.fontMetrics();
  const int titled = metrics.horizontalAdvance(title) + kFrameButtons * metrics.averageCharWidth();
  dialog.resize(dialog.sizeHint().expandedTo({titled, 0}));
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.textValue();
}

QString QtDialogs::OpenFile(QWidget* parent, const FileRequest& request) {
  return QFileDialog::getOpenFileName(parent, request.title, request.folder, request.filter);
}

QStringList QtDialogs::OpenFiles(QWidget* parent, const FileRequest& request) {
  QString chosen = WithAllNames(request.chosenFilter);
  return QFileDialog::getOpenFileNames(parent, request.title, request.folder,
                                       WithAllNames(request.filter), &chosen);
}

QString QtDialogs::SaveFile(QWidget* parent, const FileRequest& request) {
  QFileDialog dialog(parent, request.title, SaveFolder(request.folder), request.filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  // With a default suffix the dialog asks about the file that will really be written.
  dialog.setDefaultSuffix(SuffixOf(request.filter));
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                   [&dialog](const QString& filter) { dialog.setDefaultSuffix(SuffixOf(filter)); });
  dialog.selectFile(request.defaultName);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().constFirst();
}

QString QtDialogs::ChooseFolder(QWidget* parent, const QString& title, const QString& start) {
  return QFileDialog::getExistingDirectory(parent, title, start);
}

std::optional<QColor> QtDialogs::ChooseColor(QWidget* parent, const QColor& start) {
  const QColor color = QColorDialog::getColor(start, parent);
  if (!color.isValid()) return std::nullopt;
  return color;
}

std::optional<QFont> QtDialogs::ChooseFont(QWidget* parent, const QFont& start) {
  bool accepted = false;
  const QFont font = QFontDialog::getFont(&accepted, start, parent);
  if (!accepted) return std::nullopt;
  return font;
}

bool QtDialogs::AskPrinter(QWidget* parent, QPrinter& printer, const PrintJob& job) {
  return RunPrintDialog(*this, parent, printer, job);
}

}  // namespace quorvane
