#include "core/page/fit_checks.h"

#include "base/host.h"
#include "fit/assembly.h"
#include "fit/models.h"

namespace quorvane {

namespace {

const Dataset& DatasetAt(const QuorvaneModule& module, int position) {
  const std::int16_t place = module.Setup.FitSetList[static_cast<std::size_t>(position)];
  return module.Store.Datasets[static_cast<std::size_t>(place)];
}

// Whether meniscus or base still is where the load put it.
bool HasDefaultEnds(const Dataset& dataset) {
  return dataset.Rmen == dataset.R.front() || dataset.Rbase == LastRadius(dataset);
}

}  // namespace

FitSource FitSourceOf(const QuorvaneModule& module) {
  return {module.Setup, module.Store.Datasets, module.CellGeometries,
          module.Preferences.MCTolerance};
}

std::optional<Notice> FaultOfCellEnds(const QuorvaneModule& module, int first, int count) {
  if (!module.Setup.FitModel->cellEnds) return std::nullopt;
  for (int k = first; k < first + count; ++k) {
    const Dataset& dataset = DatasetAt(module, k);
    if (dataset.Rmen < dataset.Rbase) continue;
    return Notice{"Parameter Value Error",
                  "The values of R(Meniscus) must be < R(Base)\r\nfor each data set!"};
  }
  return std::nullopt;
}

std::optional<Notice> CheckCellEnds(const QuorvaneModule& module, int first, int count,
                                    Host& host) {
  if (!module.Setup.FitModel->cellEnds) return std::nullopt;
  bool defaults = false;
  for (int k = first; k < first + count; ++k) {
    defaults = defaults || HasDefaultEnds(DatasetAt(module, k));
  }
  const Notice question = {
      "Possible Parameter Value Error",
      "One or more of the R(Meniscus) and R(Base)\r\nvalues have not been changed from the "
      "default values!\r\nDo you want to change any of these values?"};
  if (defaults && host.AskYesNo(question.title, question.text)) return question;
  const std::optional<Notice> fault = FaultOfCellEnds(module, first, count);
  if (fault) host.ShowMessage(fault->title, fault->text, MessageIcon::kExclamation);
  return fault;
}

std::string FittingErrorText(const FitState& fit, const std::string& description) {
  return "Error while Fitting Data!  Error in " + fit.CurrentProc + ".  " + description;
}

}  // namespace quorvane
