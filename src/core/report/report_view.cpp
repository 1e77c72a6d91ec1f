#include "core/report/report_view.h"

#include "base/number_format.h"
#include "fit/levmarq.h"
#include "fit/models.h"

namespace quorvane {

ReportView::ReportView(const QuorvaneModule& shownModule)
    : module(shownModule),
      record(*module.LastFit),
      fit(record.state),
      statistics(CalcFitStatistics(fit, AcceptedSum(fit))) {}

std::string ReportView::ModelName() const {
  return std::string(fit.FitModel->name);
}

const Dataset& ReportView::DatasetOf(int d) const {
  const auto place = static_cast<std::size_t>(d - 1);
  return record.datasets[static_cast<std::size_t>(fit.FitSetList[place])];
}

int ReportView::LinkOf(int d) const {
  return fit.RefLink[static_cast<std::size_t>(d - 1)] + 1;
}

std::string ReportNumber(double value, const char* pattern) {
  return WrittenOrNa([&] { return FormatNumber(value, pattern); });
}

std::string NumberList(const std::vector<int>& numbers) {
  std::string text;
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    std::size_t last = k;
    while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) ++last;
    if (!text.empty()) text += ", ";
    text += std::to_string(numbers[k]);
    if (last > k) text += (last > k + 1 ? "\u2013" : ", ") + std::to_string(numbers[last]);
    k = last;
  }
  return text;
}

}  // namespace quorvane
