// Dialogs that answer from lists and keep what was said; an unexpected question fails the test.
#pragma once

#include <QColor>
#include <QFont>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "windows/print/print_job.h"
#include "windows/session/dialogs.h"

inline void PrintTo(const QString& text, std::ostream* out) {
  *out << text.toStdString();
}

namespace quorvane {

class ScriptedDialogs : public Dialogs {
 public:
  // Sets the printer up as a user would; false cancels.
  using PrinterSetUp = std::function<bool(QPrinter& printer)>;

  struct Said {
    QString title;
    QString text;
    MessageIcon icon = MessageIcon::kNone;
  };

  void ShowMessage(QWidget*, const QString& title, const QString& text, MessageIcon icon) override {
    messages.push_back({title, text, icon});
  }
  bool AskYesNo(QWidget*, const QString& title, const QString& text) override {
    questions.push_back({title, text, MessageIcon::kQuestion});
    return Next(yesNo, false, text);
  }
  // Takes a plain Yes or No too.
  DiscardChoice AskDiscard(QWidget* parent, const QString& title, const QString& text) override {
    if (discards.empty()) {
      return AskYesNo(parent, title, text) ? DiscardChoice::kYes : DiscardChoice::kNo;
    }
    questions.push_back({title, text, MessageIcon::kQuestion});
    return Next(discards, DiscardChoice::kNo, text);
  }
  WorkChoice OfferWork(QWidget*, const QString& title, const QString& text) override {
    questions.push_back({title, text, MessageIcon::kQuestion});
    return Next(works, WorkChoice::kLater, text);
  }
  std::optional<QString> AskText(QWidget*, const QString& title, const QString& prompt,
                                 const QString& value) override {
    questions.push_back({title, prompt + "|" + value, MessageIcon::kQuestion});
    return Next(texts, std::optional<QString>(), prompt);
  }
  QString OpenFile(QWidget*, const FileRequest& request) override { return File(request); }
  QStringList OpenFiles(QWidget*, const FileRequest& request) override {
    requests.push_back(request);
    return Next(fileLists, QStringList(), request.title);
  }
  QString SaveFile(QWidget*, const FileRequest& request) override { return File(request); }
  QString ChooseFolder(QWidget*, const QString& title, const QString& start) override {
    return File({title, start, "", ""});
  }
  std::optional<QColor> ChooseColor(QWidget*, const QColor&) override {
    return Next(colors, std::optional<QColor>(), "a colour");
  }
  std::optional<QFont> ChooseFont(QWidget*, const QFont& start) override {
    fontOffered = start;
    return Next(fonts, std::optional<QFont>(), "a font");
  }
  bool AskPrinter(QWidget*, QPrinter& printer, const PrintJob& job) override {
    const auto setUp = Next(printers, PrinterSetUp(), job.title);
    return setUp && setUp(printer);
  }

  std::vector<Said> messages;
  std::vector<Said> questions;
  std::vector<FileRequest> requests;
  std::deque<bool> yesNo;
  std::deque<DiscardChoice> discards;
  std::deque<WorkChoice> works;
  std::deque<std::optional<QString>> texts;
  std::deque<QString> files;
  std::deque<QStringList> fileLists;
  std::deque<std::optional<QColor>> colors;
  std::deque<std::optional<QFont>> fonts;
  QFont fontOffered;
  std::deque<PrinterSetUp> printers;

 private:
  QString File(const FileRequest& request) {
    requests.push_back(request);
    return Next(files, QString(), request.title);
  }

  template <class Answer>
  Answer Next(std::deque<Answer>& answers, Answer otherwise, const QString& asked) {
    if (answers.empty()) {
      ADD_FAILURE() << "unexpected question: " << asked.toStdString();
      return otherwise;
    }
    otherwise = std::move(answers.front());
    answers.pop_front();
    return otherwise;
  }
};

}  // namespace quorvane
