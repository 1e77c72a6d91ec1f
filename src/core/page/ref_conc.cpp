#include "core/page/ref_conc.h"

#include <cmath>
#include <string>

#include "base/arithmetic.h"
#include "base/host.h"
#include "base/quiet_host.h"
#include "core/page/row_values.h"
#include "fit/assembly.h"
#include "fit/fit_plots.h"
#include "fit/model_pass.h"

namespace quorvane {

namespace {

// Assembles with `assemble` and evaluates; `caller` is what a failure is titled with.
template <class Assemble>
ModelCurves EvaluateModels(const QuorvaneModule& module, const char* caller, Assemble&& assemble) {
  FitState fit;
  fit.CurrentProc = caller;
  std::string description;
  try {
    assemble(fit);
    CalcModelValues(fit);
    ModelCurves curves;
    for (int set = 0; set < fit.NumFitSets; ++set) {
      curves.charts.push_back(PlotDataCurve(fit, module.Store.Datasets, set));
      curves.deviations.push_back(PlotDeviations(fit, module.Store.Datasets, set));
    }
    return curves;
  } catch (const ArithmeticFault& fault) {
    description = fault.what();
  } catch (const SubscriptFault& fault) {
    description = fault.what();
  }
  return {
      {},
      {},
      Notice{std::string("Fitting Error in ") + caller, FittingErrorText(fit, description), kRule}};
}

}  // namespace

void TellFault(const Notice& fault, Host& host) {
  host.ShowMessage(fault.title, fault.text, MessageIcon::kNone);
  if (!fault.logLine.empty()) host.PrintIt(fault.logLine);
}

ModelCurves PreviewFit(const QuorvaneModule& module, Host& host) {
  if (CheckCellEnds(module, 0, module.Setup.NumFitSets, host)) return {};
  return EvaluateModels(module, "cmdPreviewFit", [&](FitState& fit) {
    SetupDataArrays(fit, FitSourceOf(module), host);
    bool anyFitted = false;
    SetupParameterArray(fit, module.Setup, module.FitPage, module.Store.Datasets, anyFitted);
  });
}

double RefConcAtBar(double saved, int bar) {
  constexpr double kLn10 = 2.302585093;  // as many digits as the rule of the bars has
  constexpr double kStepsADecade = 1000.0;
  double value = 0.0;
  CheckArithmetic([&] { value = saved * std::exp(bar * kLn10 / kStepsADecade); });
  CheckedLog(value);  // the fit works on it: 0 will not do
  return value;
}

RefConcAdjustment::RefConcAdjustment(QuorvaneModule& module, int row)
    : module_(module),
      row_(row),
      dataset_(module.Setup.FitSetList.at(static_cast<std::size_t>(row))),
      RefConc_(DatasetOfRow(module, row).RefConc),
      RefConc2_(DatasetOfRow(module, row).RefConc2) {}

ModelCurves RefConcAdjustment::Begin(Host& host) const {
  if (CheckCellEnds(module_, row_, 1, host)) return {};
  return EvaluateModels(module_, "SetRefC", [&](FitState& fit) { Assemble(fit, host); });
}

ModelCurves RefConcAdjustment::Evaluate() const {
  QuietHost quiet;
  return EvaluateModels(module_, "SetRefC", [&](FitState& fit) { Assemble(fit, quiet); });
}

ModelCurves RefConcAdjustment::Move(Component component, int bar) {
  Dataset& dataset = DatasetOfRow(module_, row_);
  const ModelCurves curves = EvaluateModels(module_, "SetRefC", [&](FitState& fit) {
    if (component == Component::kA) {
      dataset.RefConc = RefConcAtBar(RefConc_, bar);
    } else {
      dataset.RefConc2 = RefConcAtBar(RefConc2_, bar);
    }
    QuietHost quiet;  // what the assembly logs was logged as the adjustment began
    Assemble(fit, quiet);
  });
  const std::optional<Notice> fault = FaultOfCellEnds(module_, row_, 1);
  return fault ? ModelCurves{{}, {}, fault} : curves;
}

void RefConcAdjustment::Assemble(FitState& fit, Host& host) const {
  SetupSingleDatasetArray(fit, FitSourceOf(module_), row_, host);
  SetupSingleParameterArray(fit, module_.Setup, module_.FitPage, row_, module_.Store.Datasets);
}

void RefConcAdjustment::Restore() {
  if (dataset_ >= module_.Store.NumDatasets()) return;
  Dataset& dataset = module_.Store.Datasets[static_cast<std::size_t>(dataset_)];
  dataset.RefConc = RefConc_;
  dataset.RefConc2 = RefConc2_;
}

}  // namespace quorvane
