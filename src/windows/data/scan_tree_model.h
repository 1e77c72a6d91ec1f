// The scans of a folder as a tree: a row for each series, its scans with check boxes below it.
#pragma once

#include <QAbstractItemModel>
#include <QSortFilterProxyModel>
#include <filesystem>
#include <vector>

#include "scan/scan_series.h"

namespace quorvane {

class ScanTreeModel : public QAbstractItemModel {
  Q_OBJECT
 public:
  enum Column {
    kFile,
    kKind,
    kCell,
    kWavelength,
    kSpeed,
    kTemperature,
    kHours,
    kOmega2t,
    kPoints,
    kChange,
    kColumns
  };
  static constexpr int kSortRole = Qt::UserRole;  // numbers as numbers
  static constexpr int kFilterRole = Qt::UserRole + 1;

  using QAbstractItemModel::QAbstractItemModel;

  // Replaces all. Files that were checked stay so as far as they are there.
  void Show(std::vector<ScanSeries> series);

  // The same series in the same order, with their changes.
  void ShowChanges(std::vector<ScanSeries> series);

  void CheckLastOfEach();  // these and no others
  void CheckNone();
  void Toggle(const QModelIndex& index);  // a scan, or all of a series

  // In the order of the series, whatever the view's.
  std::vector<const ListedScan*> Checked() const;

  // That of a scan, or the series itself; null for an invalid index.
  const ScanSeries* SeriesAt(const QModelIndex& index) const;
  const ListedScan* ScanAt(const QModelIndex& index) const;  // null for a series
  const std::vector<ScanSeries>& Series() const { return series_; }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  void ChecksChanged();

 private:
  QVariant SeriesData(std::size_t place, int column, int role) const;
  QVariant ScanData(const ScanSeries& series, std::size_t k, int column, int role) const;
  Qt::CheckState StateOf(std::size_t place) const;
  void TellChecks();

  std::vector<ScanSeries> series_;
  std::vector<std::vector<bool>> checks_;  // [series][scan]
};

// The tree as it is sorted and filtered: a row stays if each word of the filter stands in it.
class ScanTreeFilter : public QSortFilterProxyModel {
  Q_OBJECT
 public:
  explicit ScanTreeFilter(QObject* parent = nullptr);
  void SetWords(const QString& text);

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  QStringList words_;
};

}  // namespace quorvane
