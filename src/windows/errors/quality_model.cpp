#include "windows/errors/quality_model.h"

#include <QBrush>
#include <QColor>
#include <array>

#include "base/number_format.h"

namespace quorvane {

namespace {

enum Column { kName, kPoints, kRms, kShare, kSigns, kRuns, kExpected, kZ, kDurbin, kFlags, kCount };

const std::array<const char*, kCount> kHeads = {
    QT_TRANSLATE_NOOP("QObject", "Dataset"),       QT_TRANSLATE_NOOP("QObject", "Points"),
    QT_TRANSLATE_NOOP("QObject", "rms"),           QT_TRANSLATE_NOOP("QObject", "Share"),
    QT_TRANSLATE_NOOP("QObject", "+ / -"),         QT_TRANSLATE_NOOP("QObject", "Runs"),
    QT_TRANSLATE_NOOP("QObject", "Expected"),      QT_TRANSLATE_NOOP("QObject", "Z"),
    QT_TRANSLATE_NOOP("QObject", "Durbin-Watson"), QT_TRANSLATE_NOOP("QObject", "Look at")};
const std::array<const char*, kCount> kTips = {
    QT_TRANSLATE_NOOP("QObject", "Name of the dataset; its number stands in front"),
    QT_TRANSLATE_NOOP("QObject", "Data points of the fit; mass conservation points do not count"),
    QT_TRANSLATE_NOOP(
        "QObject",
        "Root mean square of the residuals, signal units: to be compared with the noise"),
    QT_TRANSLATE_NOOP("QObject",
                      "Share of the sum of squares of all datasets, at the values of the fit"),
    QT_TRANSLATE_NOOP("QObject", "Residuals above and below the curve"),
    QT_TRANSLATE_NOOP("QObject",
                      "Runs: stretches of residuals with the same sign, along the radius"),
    QT_TRANSLATE_NOOP("QObject", "Runs to be expected of noise"),
    QT_TRANSLATE_NOOP(
        "QObject",
        "Deviation of the runs from noise in standard deviations.\nBelow -1.96: too few runs, the "
        "curve misses the shape of the data.\nAbove 1.96: too many."),
    QT_TRANSLATE_NOOP("QObject",
                      "Likeness of neighbouring residuals: 2 for noise.\nBelow 1.5 they are alike, "
                      "above 2.5 they "
                      "alternate."),
    QT_TRANSLATE_NOOP("QObject", "What lies outside its bounds")};

QString Text(double value, const char* pattern) {
  return QString::fromStdString(FormatNumber(value, pattern));
}

QString FlagsOf(const SetQuality& set) {
  QStringList flags;
  if (set.OutOfRandomRuns()) flags << QObject::tr("Z");
  if (set.OutOfRandomDurbin()) flags << QObject::tr("DW");
  return flags.join(QStringLiteral(", "));
}

QString CellText(const SetQuality& set, const QString& name, int column) {
  const auto optional = [](const std::optional<double>& value) {
    return value ? Text(*value, "0.00") : QStringLiteral("-");
  };
  switch (column) {
    case kName:
      return name;
    case kPoints:
      return QString::number(set.points);
    case kRms:
      return QString::fromStdString(FormatParam(set.rms));
    case kShare:
      return Text(100.0 * set.share, "0.0") + QStringLiteral(" %");
    case kSigns:
      return QStringLiteral("%1 / %2").arg(set.runs.positive).arg(set.runs.negative);
    case kRuns:
      return QString::number(set.runs.runs);
    case kExpected:
      return Text(set.runs.expected, "0.0");
    case kZ:
      return optional(set.runs.z);
    case kDurbin:
      return optional(set.durbinWatson);
    default:
      return FlagsOf(set);
  }
}

}  // namespace

void QualityModel::Show(FitQuality quality, std::vector<RowName> names) {
  beginResetModel();
  quality_ = std::move(quality);
  names_ = std::move(names);
  endResetModel();
}

int QualityModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(quality_.sets.size());
}

int QualityModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kCount;
}

QVariant QualityModel::data(const QModelIndex& cell, int role) const {
  if (!cell.isValid()) return {};
  const SetQuality& set = quality_.sets[static_cast<std::size_t>(cell.row())];
  const RowName& name = names_[static_cast<std::size_t>(cell.row())];
  const int column = cell.column();
  const bool text = column == kName || column == kFlags;
  const bool flagged =
      (column == kZ && set.OutOfRandomRuns()) || (column == kDurbin && set.OutOfRandomDurbin());
  switch (role) {
    case Qt::DisplayRole:
      return CellText(set, name.name, column);
    case Qt::TextAlignmentRole:
      return int((text ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    case Qt::ToolTipRole:
      return column == kName ? name.tip : QObject::tr(kTips[static_cast<std::size_t>(column)]);
    case Qt::BackgroundRole:
      return flagged ? QVariant(QBrush(QColor(255, 128, 32))) : QVariant();
    case Qt::ForegroundRole:
      return flagged ? QVariant(QBrush(Qt::black)) : QVariant();
    default:
      return {};
  }
}

QVariant QualityModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool columns = orientation == Qt::Horizontal;
  if (section < 0 || section >= (columns ? int(kCount) : rowCount())) return {};
  const auto place = static_cast<std::size_t>(section);
  if (role == Qt::DisplayRole) {
    if (columns) return QObject::tr(kHeads[place]);
    return QString::number(quality_.sets[place].dataset);
  }
  if (role == Qt::ToolTipRole && columns) return QObject::tr(kTips[place]);
  return {};
}

}  // namespace quorvane
