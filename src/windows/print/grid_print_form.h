// P001: prints a grid, with title, margins, page range and scaling.
#pragma once

#include <QDialog>
#include <QPrinter>

#include "windows/print/grid_printing.h"
#include "windows/print/printing.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;

namespace quorvane {

class Dialogs;
class PreviewPane;

class P001 : public QDialog {
  Q_OBJECT
 public:
  // `ask` and the cells of `grid` outlive the window.
  P001(Dialogs& ask, PrintedGrid grid, const PrinterStart& start, QWidget* parent = nullptr);

 signals:
  // The user printed: what the next job should start from.
  void PrinterChosen(const QPrinter& printer);

 private:
  void BuildWidgets();
  QWidget* BuildPage();
  QWidget* BuildRange();
  QDoubleSpinBox* AddMargin(const char* name);
  void ConnectSignals();
  void TakePage();  // orientation and margins
  void TakeGrid();  // title, scaling, range
  void ShowMargins();
  void Print();
  GridPrintOptions Options() const;

  Dialogs& ask_;
  PrintedGrid grid_;
  QPrinter printer_;
  QLineEdit* txtTitle_;
  QComboBox* cboOrientation_;
  QDoubleSpinBox* txtMarginLeft_;
  QDoubleSpinBox* txtMarginTop_;
  QDoubleSpinBox* txtMarginRight_;
  QDoubleSpinBox* txtMarginBottom_;
  QSpinBox* txtScale_;
  QCheckBox* chkFitWidth_;
  QRadioButton* optAllPages_;
  QRadioButton* optPages_;
  QSpinBox* txtFromPage_;
  QSpinBox* txtToPage_;
  QLabel* lblPages_;
  PreviewPane* preview_;
};

}  // namespace quorvane
