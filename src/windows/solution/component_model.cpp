#include "windows/solution/component_model.h"

#include <QFont>
#include <QString>
#include <algorithm>

#include "solution/solution_fault.h"

namespace quorvane {

namespace {

auto PartOf(const BufferComponent& component) {
  return [&component](const BufferPart& part) { return part.component == &component; };
}

}  // namespace

void ComponentModel::SetRecipe(BufferRecipe recipe) {
  recipe_ = std::move(recipe);
  Arrange();
}

void ComponentModel::Search(const QString& text) {
  std::string typed = text.trimmed().toStdString();
  if (LengthOfAmount(typed) > 0) {
    typed = QString::fromStdString(typed.substr(typed.rfind(',') + 1)).trimmed().toStdString();
    typed.erase(0, LengthOfAmount(typed));
  }
  search_ = QString::fromStdString(typed);
  Arrange();
}

void ComponentModel::Add(const BufferRecipe& parts) {
  for (const BufferPart& part : parts) {
    const auto old = std::find_if(recipe_.begin(), recipe_.end(), PartOf(*part.component));
    if (old == recipe_.end()) {
      recipe_.push_back(part);
    } else {
      *old = part;
    }
  }
  Arrange();
  emit Changed();
}

void ComponentModel::Arrange() {
  beginResetModel();
  rows_.clear();
  for (const BufferPart& part : recipe_) rows_.push_back(part.component);
  for (const BufferComponent* component : ComponentsLike(search_.toStdString())) {
    if (std::none_of(recipe_.begin(), recipe_.end(), PartOf(*component))) {
      rows_.push_back(component);
    }
  }
  endResetModel();
}

int ComponentModel::FirstFound() const {
  const auto found = ComponentsLike(search_.toStdString());
  if (found.empty()) return -1;
  return static_cast<int>(std::find(rows_.begin(), rows_.end(), found.front()) - rows_.begin());
}

int ComponentModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ComponentModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QString ComponentModel::AmountOf(const BufferComponent& component) const {
  const auto part = std::find_if(recipe_.begin(), recipe_.end(), PartOf(component));
  return part == recipe_.end() ? QString() : QString::fromStdString(AmountText(*part));
}

QString ComponentModel::TextOf(const BufferComponent& component, int column) const {
  switch (column) {
    case kName:
      return QString::fromStdString(component.name);
    case kShortNames: {
      QStringList names;
      for (const std::string& name : component.otherNames) names << QString::fromStdString(name);
      return names.join(QStringLiteral(", "));
    }
    case kRange:
      return QString::fromStdString(RangeText(component));
    default:
      return AmountOf(component);
  }
}

QVariant ComponentModel::data(const QModelIndex& cell, int role) const {
  if (!cell.isValid()) return {};
  const BufferComponent& component = *rows_[static_cast<std::size_t>(cell.row())];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return TextOf(component, cell.column());
    case Qt::TextAlignmentRole:
      return QVariant::fromValue<Qt::Alignment>(
          (cell.column() >= kRange ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::ToolTipRole:
      return cell.column() == kAmount ? tr("An amount such as 20 mM, 0.1 M or 5 % w/v; empty: none")
                                      : TextOf(component, cell.column());
    case Qt::FontRole: {
      QFont font;
      font.setBold(!AmountOf(component).isEmpty());
      return font;
    }
    default:
      return {};
  }
}

bool ComponentModel::setData(const QModelIndex& cell, const QVariant& value, int role) {
  if (!cell.isValid() || role != Qt::EditRole || cell.column() != kAmount) return false;
  const BufferComponent& component = *rows_[static_cast<std::size_t>(cell.row())];
  const QString text = value.toString().trimmed();
  if (text == AmountOf(component)) return true;
  BufferRecipe recipe = recipe_;
  const auto old = std::find_if(recipe.begin(), recipe.end(), PartOf(component));
  try {
    if (text.isEmpty()) {
      recipe.erase(old);
    } else {
      const BufferPart part = ReadAmount(component, text.toStdString());
      if (old == recipe.end()) {
        recipe.push_back(part);
      } else {
        *old = part;
      }
    }
  } catch (const SolutionFault& fault) {
    emit Refused(QString::fromStdString(fault.what()));
    return false;
  }
  // The rows stay where they are until the next search, so that the eye does not lose them.
  recipe_ = std::move(recipe);
  emit dataChanged(index(cell.row(), 0), index(cell.row(), kAmount));
  emit Changed();
  return true;
}

Qt::ItemFlags ComponentModel::flags(const QModelIndex& cell) const {
  Qt::ItemFlags flags = QAbstractTableModel::flags(cell);
  if (cell.isValid() && cell.column() == kAmount) flags |= Qt::ItemIsEditable;
  return flags;
}

QVariant ComponentModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case kName:
      return tr("Component");
    case kShortNames:
      return tr("Also called");
    case kRange:
      return tr("Up to");
    default:
      return tr("Amount");
  }
}

}  // namespace quorvane
