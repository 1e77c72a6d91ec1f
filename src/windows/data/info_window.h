// frmInfo: the comment lines of a dataset.
#pragma once

#include <QDialog>

namespace quorvane {

class InfoWindow : public QDialog {
  Q_OBJECT
 public:
  // Show it with open(); it deletes itself when it is closed.
  explicit InfoWindow(const QString& comments, QWidget* parent = nullptr);
};

}  // namespace quorvane
