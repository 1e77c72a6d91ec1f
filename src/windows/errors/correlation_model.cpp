#include "windows/errors/correlation_model.h"

#include <QBrush>
#include <QGuiApplication>
#include <QPalette>
#include <optional>

#include "stats/correlation.h"

namespace quorvane {

namespace {

const QColor kCriticalColor(255, 128, 32);

QColor HeldColor() {
  return QGuiApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
}

QColor InkOn(const QColor& ground) {
  constexpr int kMiddle = 128;
  return qGray(ground.rgb()) < kMiddle ? Qt::white : Qt::black;
}

// The part of a coloured cell or header that `role` asks for; nothing for other roles.
QVariant ColorPart(const std::optional<QColor>& ground, int role) {
  if (!ground) return {};
  if (role == Qt::BackgroundRole) return QBrush(*ground);
  if (role == Qt::ForegroundRole) return QBrush(InkOn(*ground));
  return {};
}

}  // namespace

void CorrelationModel::Show(std::shared_ptr<const FinishedFit> fit, double critical) {
  Matrix1<double> coefficients = CrossCorrelation(fit->state);
  beginResetModel();
  fit_ = std::move(fit);
  coefficients_ = std::move(coefficients);
  critical_ = critical;
  endResetModel();
}

int CorrelationModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : coefficients_.rows();
}

int CorrelationModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : coefficients_.cols();
}

QVariant CorrelationModel::data(const QModelIndex& cell, int role) const {
  if (!cell.isValid()) return {};
  const int i = cell.row() + 1;
  const int j = cell.column() + 1;
  if (role == Qt::DisplayRole) return QString::fromStdString(CoefficientText(coefficients_(i, j)));
  if (role == Qt::TextAlignmentRole) return int(Qt::AlignRight | Qt::AlignVCenter);
  std::optional<QColor> ground;
  if (IsHeld(i) || IsHeld(j)) ground = HeldColor();
  if (IsCritical(coefficients_, i, j, critical_)) ground = kCriticalColor;
  return ColorPart(ground, role);
}

QVariant CorrelationModel::headerData(int section, Qt::Orientation, int role) const {
  const int parameter = section + 1;
  if (section < 0 || parameter > coefficients_.rows()) return {};
  if (role == Qt::DisplayRole) {
    return QString::fromStdString(ParameterName(fit_->state, parameter));
  }
  return ColorPart(IsHeld(parameter) ? std::optional(HeldColor()) : std::nullopt, role);
}

}  // namespace quorvane
