// Every box and dialog that asks the user something; tests answer in place of the user.
#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <QStringList>
#include <optional>

#include "base/host.h"

class QPrinter;
class QWidget;

namespace quorvane {

struct PrintJob;

struct FileRequest {
  QString title;
  QString folder;             // where the dialog starts; for saving if it can be written to
  QString filter;             // as of QFileDialog, ";;" between filters
  QString defaultName;        // for saving; may be empty
  QString chosenFilter = {};  // the one to begin with, as in `filter`; empty: the first
};

enum class WorkChoice { kOpen, kDelete, kLater };
enum class DiscardChoice { kYes, kNo, kSave };

class Dialogs {
 public:
  virtual ~Dialogs() = default;

  virtual void ShowMessage(QWidget* parent, const QString& title, const QString& text,
                           MessageIcon icon) = 0;

  // A question with Yes and No; true for Yes.
  virtual bool AskYesNo(QWidget* parent, const QString& title, const QString& text) = 0;

  // The same with a third button "Save..."; kNo also on Esc and when the box is closed.
  virtual DiscardChoice AskDiscard(QWidget* parent, const QString& title, const QString& text) = 0;

  // What to do with unsaved work; kLater also on Esc and when the box is closed.
  virtual WorkChoice OfferWork(QWidget* parent, const QString& title, const QString& text) = 0;

  // An entry box that starts from `value`; nothing on a cancel.
  virtual std::optional<QString> AskText(QWidget* parent, const QString& title,
                                         const QString& prompt, const QString& value) = 0;

  // Paths; empty on a cancel. SaveFile has asked before an existing file comes back.
  virtual QString OpenFile(QWidget* parent, const FileRequest& request) = 0;
  virtual QStringList OpenFiles(QWidget* parent, const FileRequest& request) = 0;
  virtual QString SaveFile(QWidget* parent, const FileRequest& request) = 0;
  virtual QString ChooseFolder(QWidget* parent, const QString& title, const QString& start) = 0;

  virtual std::optional<QColor> ChooseColor(QWidget* parent, const QColor& start) = 0;
  virtual std::optional<QFont> ChooseFont(QWidget* parent, const QFont& start) = 0;

  // The print dialog for `job`, with a preview; false on a cancel. `printer` is set up as chosen.
  virtual bool AskPrinter(QWidget* parent, QPrinter& printer, const PrintJob& job) = 0;
};

}  // namespace quorvane
