// The table of the parameter page: a row a dataset under heads that stay in place.
#pragma once

#include <QScrollArea>
#include <functional>
#include <vector>

#include "windows/page/fit_row.h"

class QGridLayout;

namespace quorvane {

class AllRowsLine;
class FocusMarker;
class RowHeads;
class RowKeys;
struct Session;

class FitRows : public QScrollArea {
  Q_OBJECT
 public:
  FitRows(Session& session, FocusMarker& marker, QWidget* parent = nullptr);

  // Makes the rows that the session's FitSetup asks for.
  void Rebuild();

  // Whether the rows show the session's FitSetup and its datasets are still loaded.
  bool AreCurrent() const;

  // Records and switches into the rows, if they are current.
  void ShowValues();

  // The same for row `row` (from 0).
  void ShowRow(int row);

  // Stores the texts of all rows. False if one was refused; its box has the focus then.
  bool CommitRows();

  // Shows and hides what follows from chkUseMC and chkCalcConcs.
  void ShowParts();

  // The last control that takes the focus; null without rows.
  QWidget* LastInTabOrder() const;

  void SetContentEnabled(bool on);

 signals:
  void RefConcRequested(int row);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ReserveHeads();
  void PlaceHeads();
  void ShowColumn(const QRect& control);
  void AddRow();
  void RemoveLastRow();
  void BindRow(ValueBox& box, int row, std::function<Refusal(Dataset&, const std::string&)> enter,
               std::function<std::string(const Dataset&)> shown, std::string taken);
  QString NameOfBox(QWidget& box, int row) const;
  void ConnectBoxes(int row);
  void ConnectRefConc(ValueBox& box, int row);
  void ConnectChecks(int row);
  void ConnectCheck(PageCheckBox& box, const RowCheck& check, int row);
  void ConnectLink(int row);
  void ChainTabOrder();
  void AskLink(int row);
  void Link(int row, int target);
  void AskGeometry(int row, Qt::KeyboardModifiers modifiers);

  Session& session_;
  FocusMarker& marker_;
  QWidget* content_;
  QGridLayout* grid_;
  RowHeads* heads_;
  AllRowsLine* all_;
  RowKeys* keys_;
  std::vector<FitRow> rows_;
};

}  // namespace quorvane
