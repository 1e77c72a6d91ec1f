// What frmImport shows of a text: its lines beside the rows and the curve understood, and what was
// remarked.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "scan/text_import.h"

class QListWidget;
class QPlainTextEdit;
class QTableWidget;

namespace quorvane {

class ChartWidget;

class ImportPreview : public QWidget {
  Q_OBJECT
 public:
  explicit ImportPreview(QWidget* parent = nullptr);

  // The first lines of `bytes`, and what was understood of all. `fault`, if there is one, stands
  // for the fault of the import.
  void Show(const std::string& bytes, const TextImport& import, const QString& fault);
  void Clear();

 private:
  void ShowLines(const std::string& bytes, const TextImport& import);
  void ShowRows(const TextImport& import);
  void ShowRemarks(const TextImport& import, const QString& fault);

  QPlainTextEdit* txtLines_;
  QTableWidget* gridRows_;
  ChartWidget* chart_;
  QListWidget* lstRemarks_;
};

}  // namespace quorvane
