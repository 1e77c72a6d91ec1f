// frmCompareFits: two or more finished fits side by side.
#pragma once

#include <QStandardItemModel>
#include <QWidget>
#include <vector>

#include "core/fit_history.h"
#include "stats/comparison_plot.h"
#include "windows/session/printable.h"
#include "windows/session/session.h"

class QAction;
class QComboBox;
class QPlainTextEdit;
class QTableView;

namespace quorvane {

class ChartWidget;

class ComparisonWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  explicit ComparisonWindow(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // Shows the fits at these places of the session's list; they stay as they were when it changes.
  void Compare(const std::vector<std::size_t>& places);

  PrintContent Printed() const override;
  QSize sizeHint() const override;

 private:
  void BuildWidgets();
  void ConnectSignals();
  void ShowTable();
  void ListDatasets();
  void ShowResiduals();

  Session& session_;
  std::vector<HistoryEntry> entries_;
  std::vector<std::vector<FittedCurve>> curves_;  // by entry; none of one without arrays
  QStandardItemModel rows_;
  QTableView* gridComparison_;
  QPlainTextEdit* txtComparison_;
  QComboBox* cmbComparedSet_;
  ChartWidget* chart_;
  QAction* mnuCopyComparison_;
};

}  // namespace quorvane
