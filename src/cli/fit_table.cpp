#include "cli/fit_table.h"

#include "base/csv.h"

namespace quorvane {

std::string FitTable(const FitState& fit, const std::vector<Dataset>& datasets) {
  std::string table = "dataset,name,radius,signal,fitted,residual\r\n";
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    if (fit.PointKind(i) != 0) continue;
    const auto place =
        static_cast<std::size_t>(fit.FitSetList[static_cast<std::size_t>(fit.FitSet(i) - 1)]);
    table += std::to_string(place + 1) + ',' + CsvText(NameOf(datasets[place])) + ',' +
             CsvNumber(fit.FitR(i)) + ',' + CsvNumber(fit.FitY(i)) + ',' +
             CsvNumber(fit.FitYCalc(i)) + ',' + CsvNumber(fit.FitY(i) - fit.FitYCalc(i)) + "\r\n";
  }
  return table;
}

}  // namespace quorvane
