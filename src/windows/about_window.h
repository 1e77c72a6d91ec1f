// frmAbout: what the program is, and on what it runs.
#pragma once

#include <QDialog>

class AboutWindow : public QDialog {
  Q_OBJECT
 public:
  explicit AboutWindow(QWidget* parent = nullptr);
};
