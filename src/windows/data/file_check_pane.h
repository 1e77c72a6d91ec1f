// paneFileCheck: what loading will make of the selected file beside what its words say.
#pragma once

#include <QWidget>

#include "scan/file_check.h"

class QListWidget;
class QTableWidget;

namespace quorvane {

class FileCheckPane : public QWidget {
  Q_OBJECT
 public:
  explicit FileCheckPane(QWidget* parent = nullptr);

  // Shows a check; `drift` is a warning about the loaded scans, or empty.
  void ShowCheck(FileCheck check, std::string drift);
  void Clear();

 protected:
  void changeEvent(QEvent* event) override;  // another palette

 private:
  void BuildWidgets();
  void ShowRows();
  void ShowWarnings();
  void AddLine(int icon, const QString& text, const QBrush& ink);

  bool shown_ = false;
  FileCheck check_;
  std::string drift_;
  QTableWidget* gridFileCheck_;
  QListWidget* lstFileWarnings_;
};

}  // namespace quorvane
