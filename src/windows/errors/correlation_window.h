// frmCCCs: the cross-correlation coefficients of the last fit.
#pragma once

#include <QWidget>

#include "windows/errors/correlation_model.h"
#include "windows/session/printable.h"

class QAction;
class QPushButton;
class QTableView;

namespace quorvane {

class CorrelationWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  explicit CorrelationWindow(QWidget* parent = nullptr);

  // Fills the grid. Throws ArithmeticFault where the fit has no coefficients; then it stays.
  void ShowFit(std::shared_ptr<const FinishedFit> fit, double critical);

  // The fit that the grid shows, whatever was fitted since; null before the first.
  const FinishedFit* Fit() const { return cells_.Fit(); }

  PrintContent Printed() const override;

 signals:
  void LogRequested();
  void PrintRequested();

 private:
  void BuildWidgets();
  void ConnectSignals();
  void CopyCells() const;

  CorrelationModel cells_;
  QTableView* gridCCC_;
  QAction* mnuCopyCells_;
  QPushButton* cmdCopyMe_;
  QPushButton* cmdPrintMe_;
};

}  // namespace quorvane
