// The finished fits of a session as the rows of a grid.
#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <vector>

#include "core/program_state.h"

namespace quorvane {

// Places count from 0 in module.Fits. Names can be changed; the row of the last fit is bold.
class FitsModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column { kTime, kName, kModel, kFitted, kPoints, kSum, kRms, kAICc, kBIC, kRunsZ, kRest };
  static constexpr int kColumns = kRest + 1;

  explicit FitsModel(QuorvaneModule& module, QObject* parent = nullptr);

  // The fits have changed.
  void Refresh();

  // What finds the fit of a row again in a changed list.
  std::uint64_t IdOf(int row) const;

  // Of the fit of a row in the list as it is now; nothing if it is gone: a name that is being typed
  // may be stored after a new experiment has emptied the list, and before that is shown.
  std::optional<std::size_t> PlaceOf(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& cell, int role) const override;
  bool setData(const QModelIndex& cell, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& cell) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 signals:
  void Renamed();
  void NameRefused();

 private:
  QString TextOf(const HistoryEntry& entry, int column) const;
  void Arrange();

  QuorvaneModule& module_;
  // As the list was when it was shown.
  struct Row {
    HistoryEntry entry;  // shares the fit
    bool last;           // it is the last fit of the session
  };
  std::vector<Row> rows_;
  int column_ = kTime;
  Qt::SortOrder order_ = Qt::DescendingOrder;
};

}  // namespace quorvane
