// frmAbout: what the program is, and on what it runs.
#pragma once

#include <QDialog>
#include <filesystem>

class QPlainTextEdit;
class QPushButton;

namespace quorvane {

class AboutWindow : public QDialog {
  Q_OBJECT
 public:
  // `settingsFile` is only shown.
  explicit AboutWindow(const std::filesystem::path& settingsFile, QWidget* parent = nullptr);

 private:
  void BuildWidgets(const std::filesystem::path& settingsFile);
  void ConnectSignals();
  void ShowSystem(bool shown);

  QPlainTextEdit* txtSysInfo_;
  QPushButton* cmdSysInfo_;
  QPushButton* cmdCopySysInfo_;
  QPushButton* cmdOK_;
};

}  // namespace quorvane
