// The components of buffers as the rows of a grid, with the amounts that a buffer has of them.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "solution/buffer_recipe.h"

namespace quorvane {

// Rows are those of the buffer, then those that are searched for. Amounts can be typed; an empty
// one takes the component out.
class ComponentModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column { kName, kShortNames, kRange, kAmount };
  static constexpr int kColumns = kAmount + 1;

  using QAbstractTableModel::QAbstractTableModel;

  void SetRecipe(BufferRecipe recipe);
  const BufferRecipe& Recipe() const { return recipe_; }

  // Shows the components with `text` in one of their names; of a recipe such as "20 mM Tris, 5 mM
  // K" the name that stands last.
  void Search(const QString& text);

  // Puts these into the buffer; the amount of a component that it has is replaced.
  void Add(const BufferRecipe& parts);

  // The row of the first component that is searched for; -1 if none was found.
  int FirstFound() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& cell, int role) const override;
  bool setData(const QModelIndex& cell, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& cell) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  void Changed();
  void Refused(const QString& why);  // an amount that cannot be; the old one stands

 private:
  void Arrange();
  QString AmountOf(const BufferComponent& component) const;
  QString TextOf(const BufferComponent& component, int column) const;

  BufferRecipe recipe_;
  QString search_;
  std::vector<const BufferComponent*> rows_;
};

}  // namespace quorvane
