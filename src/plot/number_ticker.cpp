#include "plot/number_ticker.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number_format.h"

namespace quorvane {

namespace {

qsizetype Longest(const QVector<QString>& labels) {
  qsizetype longest = 0;
  for (const QString& label : labels) longest = std::max(longest, label.size());
  return longest;
}

QVector<QString> Labels(const QVector<double>& ticks, char format) {
  constexpr int kMostDecimals = 17;
  const double step = ticks.size() > 1 ? ticks[1] - ticks[0] : 0.0;
  QVector<QString> labels;
  for (int decimals = 0; decimals <= kMostDecimals; ++decimals) {
    labels.clear();
    bool exact = true;
    for (const double tick : ticks) {
      const bool zero = std::abs(tick) < 1e-6 * step;
      labels += QString::number(zero ? 0.0 : tick, format, zero && format == 'e' ? 0 : decimals);
      exact = exact && std::abs(labels.back().toDouble() - tick) <= 1e-3 * step;
      if (zero && format == 'e') labels.back() = QStringLiteral("0");
    }
    if (exact) break;
  }
  return labels;
}

}  // namespace

NumberTicker::NumberTicker(std::string pattern) : pattern_(std::move(pattern)) {}

QVector<QString> NumberTicker::createLabelVector(const QVector<double>& ticks, const QLocale&,
                                                 QChar, int) {
  const QVector<QString> patterned = PatternLabels(ticks);
  if (!patterned.isEmpty()) return patterned;
  constexpr qsizetype kPlainLength = 7;  // "-0.0005", "1000000"
  QVector<QString> plain = Labels(ticks, 'f');
  if (Longest(plain) <= kPlainLength) return plain;
  QVector<QString> powers = Labels(ticks, 'e');
  return Longest(plain) <= Longest(powers) ? plain : powers;
}

// Empty without a pattern, or if two ticks would read alike or one would be very long.
QVector<QString> NumberTicker::PatternLabels(const QVector<double>& ticks) const {
  constexpr qsizetype kLongest = 12;  // "1,000,000.00"
  QVector<QString> labels;
  if (pattern_.empty()) return labels;
  for (const double tick : ticks) {
    labels += QString::fromStdString(FormatNumber(tick, pattern_));
    const bool twice = labels.indexOf(labels.back()) + 1 < labels.size();
    if (twice || labels.back().size() > kLongest) return {};
  }
  return labels;
}

}  // namespace quorvane
