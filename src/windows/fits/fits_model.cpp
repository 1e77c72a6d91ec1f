#include "windows/fits/fits_model.h"

#include <QDateTime>
#include <QFont>
#include <algorithm>
#include <array>

#include "stats/comparison_table.h"

namespace quorvane {

namespace {

struct ColumnFacts {
  const char* title;
  std::optional<HistoryKey> key;
  bool number;
};

constexpr std::array<ColumnFacts, FitsModel::kColumns> kFacts = {{
    {QT_TRANSLATE_NOOP("QObject", "Time"), HistoryKey::kTime, false},
    {QT_TRANSLATE_NOOP("QObject", "Name"), HistoryKey::kName, false},
    {QT_TRANSLATE_NOOP("QObject", "Model"), HistoryKey::kModel, false},
    {QT_TRANSLATE_NOOP("QObject", "Fitted"), HistoryKey::kFitted, false},
    {QT_TRANSLATE_NOOP("QObject", "Points"), HistoryKey::kPoints, true},
    {QT_TRANSLATE_NOOP("QObject", "Sum of squares"), HistoryKey::kSum, true},
    {QT_TRANSLATE_NOOP("QObject", "RMS"), HistoryKey::kRms, true},
    {QT_TRANSLATE_NOOP("QObject", "AICc"), HistoryKey::kAICc, true},
    {QT_TRANSLATE_NOOP("QObject", "BIC"), HistoryKey::kBIC, true},
    {QT_TRANSLATE_NOOP("QObject", "Runs Z"), HistoryKey::kRunsZ, true},
    {QT_TRANSLATE_NOOP("QObject", "At rest"), std::nullopt, false},
}};

const ColumnFacts& FactsOf(int column) {
  return kFacts[static_cast<std::size_t>(column)];
}

QString TimeText(std::chrono::system_clock::time_point time) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch());
  return QDateTime::fromSecsSinceEpoch(seconds.count()).toString(Qt::ISODate).replace('T', ' ');
}

QFont BoldFont() {
  QFont font;
  font.setBold(true);
  return font;
}

}  // namespace

FitsModel::FitsModel(QuorvaneModule& module, QObject* parent)
    : QAbstractTableModel(parent), module_(module) {
  Arrange();
}

void FitsModel::Refresh() {
  beginResetModel();
  Arrange();
  endResetModel();
}

// The list itself has the newest first.
void FitsModel::Arrange() {
  rows_.clear();
  for (const std::size_t place :
       module_.Fits.Sorted(FactsOf(column_).key.value_or(HistoryKey::kTime))) {
    rows_.push_back({module_.Fits.Entries()[place], module_.Fits.Holds(place, module_.LastFit)});
  }
  if (order_ == Qt::DescendingOrder) std::reverse(rows_.begin(), rows_.end());
}

std::optional<std::size_t> FitsModel::PlaceOf(int row) const {
  const auto at = static_cast<std::size_t>(row);
  if (row < 0 || at >= rows_.size()) return std::nullopt;
  const std::vector<HistoryEntry>& entries = module_.Fits.Entries();
  const auto found = std::find_if(entries.begin(), entries.end(), [&](const HistoryEntry& entry) {
    return entry.id == rows_[at].entry.id;
  });
  if (found == entries.end()) return std::nullopt;
  return static_cast<std::size_t>(found - entries.begin());
}

std::uint64_t FitsModel::IdOf(int row) const {
  return rows_[static_cast<std::size_t>(row)].entry.id;
}

int FitsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int FitsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QString FitsModel::TextOf(const HistoryEntry& entry, int column) const {
  if (column == kTime) return TimeText(entry.time);
  if (column == kName) return QString::fromStdString(entry.name);
  static constexpr std::array<std::string FitTexts::*, kColumns> kFields = {
      nullptr,           nullptr,          &FitTexts::model, &FitTexts::varied,
      &FitTexts::points, &FitTexts::sum,   &FitTexts::rms,   &FitTexts::aicc,
      &FitTexts::bic,    &FitTexts::runsZ, &FitTexts::rest};
  const FitTexts texts = TextsOf(entry.kept->summary);
  return QString::fromStdString(texts.*kFields[static_cast<std::size_t>(column)]);
}

QVariant FitsModel::data(const QModelIndex& cell, int role) const {
  if (!cell.isValid() || cell.row() >= rowCount()) return {};
  const auto& [entry, last] = rows_[static_cast<std::size_t>(cell.row())];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return TextOf(entry, cell.column());
    case Qt::TextAlignmentRole:
      return FactsOf(cell.column()).number ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                           : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::FontRole:
      return last ? QVariant(BoldFont()) : QVariant();
    case Qt::ToolTipRole:
      return entry.packed != nullptr
                 ? TextOf(entry, cell.column())
                 : tr("Kept with the experiment: its values can be the start of a fit");
    default:
      return {};
  }
}

bool FitsModel::setData(const QModelIndex& cell, const QVariant& value, int role) {
  const std::optional<std::size_t> place = PlaceOf(cell.row());
  if (!place || role != Qt::EditRole || cell.column() != kName) return false;
  if (!module_.Fits.Rename(*place, value.toString().toStdString())) {
    emit NameRefused();
    return false;
  }
  rows_[static_cast<std::size_t>(cell.row())].entry = module_.Fits.Entries()[*place];
  emit dataChanged(cell, cell);
  emit Renamed();
  return true;
}

Qt::ItemFlags FitsModel::flags(const QModelIndex& cell) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(cell);
  return cell.column() == kName ? flags | Qt::ItemIsEditable : flags;
}

QVariant FitsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  return QObject::tr(FactsOf(section).title);
}

void FitsModel::sort(int column, Qt::SortOrder order) {
  if (column < 0 || !FactsOf(column).key) return;
  column_ = column;
  order_ = order;
  Refresh();
}

}  // namespace quorvane
