// frmDocument: the record of a session, which the user may edit, and the stop button of a
// calculation.
#pragma once

#include <QTimer>
#include <QWidget>
#include <string>
#include <string_view>

#include "rtf/rich_text.h"
#include "windows/session/printable.h"
#include "windows/session/session.h"
#include "windows/session/session_log.h"

class QAction;
class QLabel;
class QMenu;
class QTextEdit;

namespace quorvane {

class LogEdit;

// Any change of the text sets ExperimentOpen: whoever fills the log with what is saved already
// clears it afterwards.
class LogWindow : public QWidget, public Printable, public SessionLog {
  Q_OBJECT
 public:
  // kDocument: a text beside the log, which can be closed and is no part of the experiment.
  enum class Role { kLog, kDocument };

  explicit LogWindow(Session& session, Role role = Role::kLog,
                     QWidget* parent = nullptr);  // outlived by `session`

  void AppendLogText(const QString& text) override;
  void MoveToEnd() override;
  void TakeFocus() override;
  void InsertPictureAtEnd(const std::string& png) override;
  std::string ToRtf() const override;
  bool LoadRtf(std::string_view bytes) override;
  void SetStatus(const QString& text) override;
  std::unique_ptr<LogFollower> Follow() override;

  // Empties the log; its default font stays.
  void Clear();

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

}  // namespace quorvane
