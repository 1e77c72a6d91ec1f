// frmDocument: the record of a session, which the user may edit, and the stop button of a
// calculation.
#pragma once

#include <QTimer>
#include <QWidget>
#include <string>
#include <string_view>

#include "rtf/rich_text.h"
#include "windows/printable.h"
#include "windows/session.h"

class LogEdit;
class QAction;
class QLabel;
class QMenu;
class QTextEdit;

// Any change of the text sets ExperimentOpen: whoever fills the log with what is saved already
// clears it afterwards.
class LogWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  // kDocument: a text beside the log, which can be closed and is no part of the experiment.
  enum class Role { kLog, kDocument };

  explicit LogWindow(Session& session, Role role = Role::kLog,
                     QWidget* parent = nullptr);  // outlived by `session`

  // Puts `text` and a line end at the caret, in the caret's format. A selection stays, unselected.
  void AppendLogText(const QString& text);

  // The caret goes to the end, and the view with it.
  void MoveToEnd();

  // What is typed in the frame comes here. Another program, or a dialog that is open, keeps the
  // keys as long as it is in front.
  void TakeFocus();

  // A picture file behind all text; the caret goes there too. Throws PictureFault for other bytes.
  void InsertPictureAtEnd(const std::string& png);

  std::string ToRtf() const;

  // Replaces the log. False if `bytes` were no RTF: then they came in as plain text.
  bool LoadRtf(std::string_view bytes);

  // Empties the log; its default font stays.
  void Clear();

  // The line at the foot.
  void SetStatus(const QString& text);

  // mnuSaveLog: asks for a file and saves the log as RTF. True if it is saved; a failure is told.
  bool SaveLog();

  // Writes the default font to the settings.
  void SaveFont(Host& host) const;

  QTextEdit* Editor();

  PrintContent Printed() const override;

 signals:
  void Clicked();  // any click in the log, or Esc
  void Changed();  // of the text, by the user or the program

 protected:
  void closeEvent(QCloseEvent* event) override;  // the log stays until the program ends

 private:
  void BuildWidgets();
  void BuildMenu();
  void ConnectSignals();
  void ShowMenu(const QPoint& globalPosition);
  void ChangeFont();
  void SetDefaultLook(const CharFormat& look);
  CharFormat DefaultLook() const;

  Session& session_;
  Role role_;
  LogEdit* logFile_;
  QLabel* sbDocument_;
  QMenu* mnuRTBcontext_;
  QAction* mnuRTBcopy_;
  QAction* mnuRTBcut_;
  QAction* mnuRTBdelete_;
  QAction* mnuRTBpaste_;
  QAction* mnuRTBselectall_;
  QAction* mnuRTBfont_;
  QTimer follow_;  // brings the caret into view once, after all lines that come together
};
