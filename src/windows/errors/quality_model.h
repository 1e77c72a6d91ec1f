// The quality of a fit as the rows of a grid.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <vector>

#include "stats/fit_quality.h"

namespace quorvane {

struct RowName {
  QString name;
  QString tip;  // the name in full, and what belongs to it
};

// A row for each dataset of the fit, its number as the header. Z and Durbin-Watson outside their
// bounds are orange and named in the last column; such a cell says its ink too, so that it can be
// read in every palette and on paper.
class QualityModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  using QAbstractTableModel::QAbstractTableModel;

  // `names` are those of the datasets, row by row.
  void Show(FitQuality quality, std::vector<RowName> names);
  void Clear() { Show({}, {}); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& cell, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  FitQuality quality_;
  std::vector<RowName> names_;
};

}  // namespace quorvane
