// The ticks of a chart's axes and the numbers at them. For the sources of plot/ only.
#pragma once

#include <qcustomplot.h>

#include <string>

namespace quorvane {

// Writes the numbers by a pattern of base/number_format.h if it tells them apart, else with as few
// digits as do, equally many at each.
class NumberTicker : public QCPAxisTicker {
 public:
  explicit NumberTicker(std::string pattern);  // empty: none

 protected:
  QVector<QString> createLabelVector(const QVector<double>& ticks, const QLocale&, QChar,
                                     int) override;

 private:
  QVector<QString> PatternLabels(const QVector<double>& ticks) const;

  std::string pattern_;
};

}  // namespace quorvane
