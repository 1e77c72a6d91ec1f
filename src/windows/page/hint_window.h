// frmGraphicalRefC: the hint that reference concentrations can be set by eye.
#pragma once

#include <QDialog>

class QCheckBox;

namespace quorvane {

class Host;
struct Session;

// Blocks nothing and leaves the focus where it is.
class HintWindow : public QDialog {
  Q_OBJECT
 public:
  HintWindow(Session& session, Host& host, QWidget* parent = nullptr);

 private:
  void Confirm();

  Session& session_;
  Host& host_;
  QCheckBox* Check1_;
};

}  // namespace quorvane
