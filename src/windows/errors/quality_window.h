// frmFitQuality: whether the last finished fit can be believed.
#pragma once

#include <QWidget>

#include "windows/errors/quality_model.h"
#include "windows/session/printable.h"

class QAction;
class QPlainTextEdit;
class QTableView;

namespace quorvane {

struct QuorvaneModule;

class QualityWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  explicit QualityWindow(QWidget* parent = nullptr);

  // Shows the last fit of `module` with what is known of the constants now; it is empty where there
  // is none, or none with a quality.
  void ShowFit(const QuorvaneModule& module);

  // There is no finished fit.
  void Clear();
  bool HasFit() const { return hasFit_; }

  PrintContent Printed() const override;
  QSize sizeHint() const override;

 private:
  void BuildWidgets();
  void ConnectSignals();
  void CopyRows() const;

  bool hasFit_ = false;
  QualityModel rows_;
  QTableView* gridQuality_;
  QPlainTextEdit* txtQualityRemarks_;
  QAction* mnuCopyQuality_;
};

}  // namespace quorvane
