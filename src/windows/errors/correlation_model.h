// The cross-correlation coefficients of a fit as the cells of a grid.
#pragma once

#include <QAbstractTableModel>
#include <memory>

#include "core/finished_fit.h"

namespace quorvane {

// Parameter names are the headers. Rows and columns of held parameters have the colour of grey
// text, coefficients above the critical value RGB(255, 128, 32); each such cell says its ink too,
// so that it can be read in every palette and on paper.
class CorrelationModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  using QAbstractTableModel::QAbstractTableModel;

  // Shows the coefficients of `fit`. Throws ArithmeticFault where there are none; then what was
  // shown stays.
  void Show(std::shared_ptr<const FinishedFit> fit, double critical);
  const FinishedFit* Fit() const { return fit_.get(); }  // null before the first

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& cell, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  bool IsHeld(int parameter) const { return fit_->state.FitIA(parameter) == 0; }

  std::shared_ptr<const FinishedFit> fit_;  // null: there are no cells
  Matrix1<double> coefficients_;
  double critical_ = 1.0;
};

}  // namespace quorvane
