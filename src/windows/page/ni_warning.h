// frmNIWarn: what the nonideal model needs before its result means anything.
#pragma once

#include <QDialog>

class QCheckBox;

namespace quorvane {

class NIWarning : public QDialog {
  Q_OBJECT
 public:
  // cmdOK clears `showAgain` if the user asked for that.
  explicit NIWarning(bool& showAgain, QWidget* parent = nullptr);

 private:
  void Confirm();

  bool& showAgain_;
  QCheckBox* chkDontShow_;
};

}  // namespace quorvane
