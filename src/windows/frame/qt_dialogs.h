// The boxes and dialogs of the desktop.
#pragma once

#include "windows/session/dialogs.h"

namespace quorvane {

class QtDialogs : public Dialogs {
 public:
  void ShowMessage(QWidget* parent, const QString& title, const QString& text,
                   MessageIcon icon) override;
  bool AskYesNo(QWidget* parent, const QString& title, const QString& text) override;
  DiscardChoice AskDiscard(QWidget* parent, const QString& title, const QString& text) override;
  WorkChoice OfferWork(QWidget* parent, const QString& title, const QString& text) override;
  std::optional<QString> AskText(QWidget* parent, const QString& title, const QString& prompt,
                                 const QString& value) override;
  QString OpenFile(QWidget* parent, const FileRequest& request) override;
  QStringList OpenFiles(QWidget* parent, const FileRequest& request) override;
  QString SaveFile(QWidget* parent, const FileRequest& request) override;
  QString ChooseFolder(QWidget* parent, const QString& title, const QString& start) override;
  std::optional<QColor> ChooseColor(QWidget* parent, const QColor& start) override;
  std::optional<QFont> ChooseFont(QWidget* parent, const QFont& start) override;
  bool AskPrinter(QWidget* parent, QPrinter& printer, const PrintJob& job) override;
};

}  // namespace quorvane
