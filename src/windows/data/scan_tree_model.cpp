#include "windows/data/scan_tree_model.h"

#include <QFont>
#include <algorithm>
#include <array>
#include <set>

#include "base/files.h"
#include "base/number_format.h"

namespace quorvane {

namespace {

const std::array<const char*, ScanTreeModel::kColumns> kHeads = {
    QT_TRANSLATE_NOOP("QObject", "File"),   QT_TRANSLATE_NOOP("QObject", "Kind"),
    QT_TRANSLATE_NOOP("QObject", "Cell"),   QT_TRANSLATE_NOOP("QObject", "nm"),
    QT_TRANSLATE_NOOP("QObject", "rpm"),    QT_TRANSLATE_NOOP("QObject", "deg C"),
    QT_TRANSLATE_NOOP("QObject", "Hours"),  QT_TRANSLATE_NOOP("QObject", "\u03C9\u00B2t"),
    QT_TRANSLATE_NOOP("QObject", "Points"), QT_TRANSLATE_NOOP("QObject", "Change")};
const std::array<const char*, ScanTreeModel::kColumns> kTips = {
    QT_TRANSLATE_NOOP("QObject", "A check mark: the scan will be loaded"),
    QT_TRANSLATE_NOOP("QObject", "What the header says was measured"),
    QT_TRANSLATE_NOOP("QObject", "Number of the cell"),
    QT_TRANSLATE_NOOP("QObject", "Wavelength; up to 5 nm apart is one series"),
    QT_TRANSLATE_NOOP("QObject", "Rotor speed"),
    QT_TRANSLATE_NOOP("QObject", "Temperature"),
    QT_TRANSLATE_NOOP("QObject", "Time since the start of the run"),
    QT_TRANSLATE_NOOP("QObject", "Integral of the squared angular speed over time, rad^2/s"),
    QT_TRANSLATE_NOOP("QObject", "Rows of the file"),
    QT_TRANSLATE_NOOP("QObject",
                      "Root mean square of the difference from the scan before it in its series, "
                      "over all radii that both have; signal units")};

QString Number(double value, const char* pattern) {
  return QString::fromStdString(FormatNumber(value, pattern));
}

QString CellText(const ListedScan& scan, int column) {
  const ScanFacts& facts = scan.facts;
  switch (column) {
    case ScanTreeModel::kFile:
      return QString::fromStdString(PathText(facts.path.filename()));
    case ScanTreeModel::kKind:
      return QString::fromStdString(std::string(SignalOf(facts)));
    case ScanTreeModel::kCell:
      return QString::number(facts.cell);
    case ScanTreeModel::kWavelength:
      return QString::number(facts.wavelength);
    case ScanTreeModel::kSpeed:
      return QString::number(facts.speed);
    case ScanTreeModel::kTemperature:
      return Number(facts.temperature, "0.0");
    case ScanTreeModel::kHours:
      return Number(facts.hours, "0.00");
    case ScanTreeModel::kOmega2t:
      return Number(facts.omega2t, "0.000E+00");
    case ScanTreeModel::kPoints:
      return QString::number(facts.points);
    default:
      return scan.change ? Number(*scan.change, "0.00000") : QString();
  }
}

QVariant SortValue(const ListedScan& scan, int column) {
  const ScanFacts& facts = scan.facts;
  switch (column) {
    case ScanTreeModel::kCell:
      return facts.cell;
    case ScanTreeModel::kWavelength:
      return facts.wavelength;
    case ScanTreeModel::kSpeed:
      return facts.speed;
    case ScanTreeModel::kTemperature:
      return facts.temperature;
    case ScanTreeModel::kHours:
      return facts.hours;
    case ScanTreeModel::kOmega2t:
      return facts.omega2t;
    case ScanTreeModel::kPoints:
      return facts.points;
    case ScanTreeModel::kChange:
      return scan.change.value_or(-1.0);
    default:
      return CellText(scan, column);
  }
}

QString FilterText(const ListedScan& scan) {
  QStringList texts;
  for (int column = 0; column < ScanTreeModel::kColumns; ++column) texts << CellText(scan, column);
  return texts.join(' ');
}

QString SeriesText(const ScanSeries& series) {
  const QString title = QString::fromStdString(SeriesTitle(series));
  if (series.scans.size() == 1) return QObject::tr("%1: 1 scan").arg(title);
  return QObject::tr("%1: %2 scans").arg(title).arg(series.scans.size());
}

constexpr quintptr kSeriesId = 0;  // of a series' own row; a scan has its series' place + 1

}  // namespace

void ScanTreeModel::Show(std::vector<ScanSeries> series) {
  std::set<std::filesystem::path> checked;
  for (const ListedScan* scan : Checked()) checked.insert(scan->facts.path);
  beginResetModel();
  series_ = std::move(series);
  checks_.clear();
  for (const ScanSeries& one : series_) {
    std::vector<bool>& checks = checks_.emplace_back();
    for (const ListedScan& scan : one.scans) checks.push_back(checked.contains(scan.facts.path));
  }
  endResetModel();
  emit ChecksChanged();
}

void ScanTreeModel::ShowChanges(std::vector<ScanSeries> series) {
  series_ = std::move(series);
  for (int place = 0; place < rowCount(); ++place) {
    const QModelIndex parent = index(place, 0);
    emit dataChanged(index(0, kChange, parent), index(rowCount(parent) - 1, kChange, parent));
  }
}

void ScanTreeModel::CheckLastOfEach() {
  for (std::vector<bool>& checks : checks_) {
    std::fill(checks.begin(), checks.end(), false);
    checks.back() = true;
  }
  TellChecks();
}

void ScanTreeModel::CheckNone() {
  for (std::vector<bool>& checks : checks_) std::fill(checks.begin(), checks.end(), false);
  TellChecks();
}

void ScanTreeModel::Toggle(const QModelIndex& index) {
  const QModelIndex first = index.siblingAtColumn(kFile);
  const bool on = data(first, Qt::CheckStateRole).toInt() == Qt::Checked;
  setData(first, on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

void ScanTreeModel::TellChecks() {
  const QList<int> roles = {Qt::CheckStateRole};
  for (int place = 0; place < rowCount(); ++place) {
    const QModelIndex parent = index(place, kFile);
    emit dataChanged(parent, parent, roles);
    emit dataChanged(index(0, kFile, parent), index(rowCount(parent) - 1, kFile, parent), roles);
  }
  emit ChecksChanged();
}

std::vector<const ListedScan*> ScanTreeModel::Checked() const {
  std::vector<const ListedScan*> scans;
  for (std::size_t place = 0; place < series_.size(); ++place) {
    for (std::size_t k = 0; k < checks_[place].size(); ++k) {
      if (checks_[place][k]) scans.push_back(&series_[place].scans[k]);
    }
  }
  return scans;
}

const ScanSeries* ScanTreeModel::SeriesAt(const QModelIndex& index) const {
  if (!index.isValid()) return nullptr;
  const bool series = index.internalId() == kSeriesId;
  return &series_[series ? static_cast<std::size_t>(index.row()) : index.internalId() - 1];
}

const ListedScan* ScanTreeModel::ScanAt(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == kSeriesId) return nullptr;
  return &SeriesAt(index)->scans[static_cast<std::size_t>(index.row())];
}

QModelIndex ScanTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || row >= rowCount(parent) || column < 0 || column >= kColumns) return {};
  const auto place = static_cast<quintptr>(parent.row()) + 1;
  return createIndex(row, column, parent.isValid() ? place : kSeriesId);
}

QModelIndex ScanTreeModel::parent(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == kSeriesId) return {};
  return createIndex(static_cast<int>(index.internalId()) - 1, 0, kSeriesId);
}

int ScanTreeModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(series_.size());
  if (parent.internalId() != kSeriesId || parent.column() != 0) return 0;
  return static_cast<int>(series_[static_cast<std::size_t>(parent.row())].scans.size());
}

int ScanTreeModel::columnCount(const QModelIndex&) const {
  return kColumns;
}

Qt::CheckState ScanTreeModel::StateOf(std::size_t place) const {
  const std::vector<bool>& checks = checks_[place];
  const auto on = std::count(checks.begin(), checks.end(), true);
  if (on == 0) return Qt::Unchecked;
  return on == static_cast<std::ptrdiff_t>(checks.size()) ? Qt::Checked : Qt::PartiallyChecked;
}

QVariant ScanTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto row = static_cast<std::size_t>(index.row());
  if (index.internalId() == kSeriesId) return SeriesData(row, index.column(), role);
  if (role == Qt::CheckStateRole) {
    if (index.column() != kFile) return {};
    return checks_[index.internalId() - 1][row] ? Qt::Checked : Qt::Unchecked;
  }
  return ScanData(*SeriesAt(index), row, index.column(), role);
}

QVariant ScanTreeModel::SeriesData(std::size_t place, int column, int role) const {
  const ScanSeries& series = series_[place];
  if (role == kSortRole) {  // by what all of its scans share, else as they come
    return column == kCell         ? series.cell
           : column == kWavelength ? series.wavelength
           : column == kSpeed      ? series.speed
                                   : static_cast<int>(place);
  }
  if (column != kFile) return {};
  switch (role) {
    case Qt::DisplayRole:
      return SeriesText(series);
    case Qt::CheckStateRole:
      return StateOf(place);
    case Qt::FontRole: {
      QFont bold;
      bold.setBold(true);
      return bold;
    }
    default:
      return {};
  }
}

QVariant ScanTreeModel::ScanData(const ScanSeries& series, std::size_t k, int column,
                                 int role) const {
  const ListedScan& scan = series.scans[k];
  switch (role) {
    case Qt::DisplayRole:
      return CellText(scan, column);
    case kSortRole:
      return SortValue(scan, column);
    case kFilterRole:
      return FilterText(scan);
    case Qt::ToolTipRole:
      return column == kFile ? QString::fromStdString(PathText(scan.facts.path)) : QString();
    case Qt::TextAlignmentRole:
      return int((column <= kKind ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    default:
      return {};
  }
}

bool ScanTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::CheckStateRole || index.column() != kFile) return false;
  const bool on = value.toInt() == Qt::Checked;
  if (index.internalId() == kSeriesId) {
    std::vector<bool>& checks = checks_[static_cast<std::size_t>(index.row())];
    std::fill(checks.begin(), checks.end(), on);
  } else {
    checks_[index.internalId() - 1][static_cast<std::size_t>(index.row())] = on;
  }
  TellChecks();
  return true;
}

Qt::ItemFlags ScanTreeModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractItemModel::flags(index);
  return index.isValid() && index.column() == kFile ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant ScanTreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kColumns) return {};
  const auto column = static_cast<std::size_t>(section);
  switch (role) {
    case Qt::DisplayRole:
      return QObject::tr(kHeads[column]);
    case Qt::ToolTipRole:
      return QObject::tr(kTips[column]);
    case Qt::TextAlignmentRole:
      return int((section <= kKind ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    default:
      return {};
  }
}

ScanTreeFilter::ScanTreeFilter(QObject* parent) : QSortFilterProxyModel(parent) {
  setSortRole(ScanTreeModel::kSortRole);
  setRecursiveFilteringEnabled(true);
}

void ScanTreeFilter::SetWords(const QString& text) {
  words_ = text.split(' ', Qt::SkipEmptyParts);
  invalidateFilter();
}

// A series stays while one of its scans does.
bool ScanTreeFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
  if (words_.isEmpty()) return true;
  if (!parent.isValid()) return false;
  const QString text =
      sourceModel()->index(row, 0, parent).data(ScanTreeModel::kFilterRole).toString();
  return std::all_of(words_.begin(), words_.end(), [&text](const QString& word) {
    return text.contains(word, Qt::CaseInsensitive);
  });
}

}  // namespace quorvane
