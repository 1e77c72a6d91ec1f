// The choices of frmImport: how the texts are read, and what the header of their scans says.
#pragma once

#include <QWidget>

#include "scan/text_import.h"

class QComboBox;
class QGridLayout;
class QGroupBox;
class QLineEdit;
class QSpinBox;

namespace quorvane {

class ImportChoicesPane : public QWidget {
  Q_OBJECT
 public:
  explicit ImportChoicesPane(QWidget* parent = nullptr);

  // What is chosen; what stands "as found" is absent. A box whose text is no number is passed over:
  // see Fault.
  ImportChoices Choices() const;

  // Why a box cannot be read; empty if all can.
  QString Fault() const;

  // Offers the columns of a text and shows what was found in it.
  void ShowFound(const TextImport& found);

 signals:
  void Changed();

 private:
  QGroupBox* BuildReading();
  QGroupBox* BuildHeader();
  QComboBox* AddBox(QGridLayout& grid, const QString& label, const char* name);
  QLineEdit* AddEntry(QGridLayout& grid, const QString& label, const char* name,
                      const QString& unit);

  QComboBox* cmbSeparator_;
  QComboBox* cmbDecimal_;
  QComboBox* cmbRadius_;
  QComboBox* cmbSignal_;
  QComboBox* cmbError_;
  QComboBox* cmbReference_;
  QSpinBox* spnSkip_;
  QComboBox* cmbKind_;
  QComboBox* cmbCell_;
  QLineEdit* txtSpeed_;
  QLineEdit* txtWavelength_;
  QLineEdit* txtTemperature_;
  QLineEdit* txtComment_;
};

}  // namespace quorvane
