// frmInfo: the comment lines of a dataset.
#pragma once

#include <QDialog>

namespace quorvane {

class frmInfo : public QDialog {
  Q_OBJECT
 public:
  // Show it with open(); it deletes itself when it is closed.
  explicit frmInfo(const QString& comments, QWidget* parent = nullptr);
};

}  // namespace quorvane
