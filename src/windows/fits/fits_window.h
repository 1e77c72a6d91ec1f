// frmFits: the finished fits of the session, to go back to, to compare and to keep.
#pragma once

#include <QWidget>
#include <vector>

#include "windows/fits/fits_model.h"
#include "windows/session/printable.h"
#include "windows/session/session.h"

class QAction;
class QLabel;
class QPushButton;
class QTableView;

namespace quorvane {

class FitsWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  explicit FitsWindow(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // The fits, or the last one among them, have changed. Selected fits stay selected.
  void Refresh();

  PrintContent Printed() const override;
  QSize sizeHint() const override;

 signals:
  void RestoreRequested(std::size_t place);
  void CompareRequested(const std::vector<std::size_t>& places);
  void Deleted();

 private:
  void BuildWidgets();
  void ConnectSignals();
  void UpdateButtons();
  std::vector<std::size_t> Selected() const;  // places, the newest first
  void Restore();
  void Delete();
  void Copy() const;
  void Save();

  Session& session_;
  FitsModel rows_;
  QTableView* gridFits_;
  QLabel* lblFits_;
  QPushButton* cmdRestoreFit_;
  QPushButton* cmdCompareFits_;
  QPushButton* cmdDeleteFits_;
  QPushButton* cmdSaveFits_;
  QAction* mnuCopyFits_;
};

}  // namespace quorvane
