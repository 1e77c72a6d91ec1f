#include "sim/plan_series.h"

#include <cmath>

#include "base/number_format.h"
#include "base/text.h"

namespace quorvane {

namespace {

// The box that takes a shared parameter.
SimBox BoxOf(const SharedParameter& shared) {
  switch (shared.kind) {
    case ParameterKind::kWeight:
      return shared.place == 1 ? SimBox::kMW : SimBox::kMWB;
    case ParameterKind::kVirial:
      return SimBox::kNonId;
    case ParameterKind::kStoichiometry:
      return shared.place == 1 ? SimBox::kN1mer : SimBox::kN2mer;
    case ParameterKind::kFraction:
      return SimBox::kAlpha;
    case ParameterKind::kLnK:
      break;
  }
  if (shared.place == 1) return SimBox::kLnK1;
  return shared.place == 2 ? SimBox::kLnK2 : SimBox::kLnK3;
}

std::map<SimBox, std::string> EntriesOf(const ExperimentPlan& plan, std::size_t wavelength) {
  const double buoyancy = 1.0 - plan.truth.Vbar * plan.truth.Density;
  const SolutionColumn column = ColumnOf(plan, 0);
  std::map<SimBox, double> values = {{SimBox::kVbar, plan.truth.Vbar},
                                     {SimBox::kVbarB, plan.truth.Vbar},
                                     {SimBox::kDensity, plan.truth.Density},
                                     {SimBox::kTemp, plan.temperature},
                                     {SimBox::kRmen, column.meniscus},
                                     {SimBox::kRbase, column.base},
                                     {SimBox::kRMS, plan.noise},
                                     {SimBox::kExtCoeff, plan.extCoeff[wavelength]}};
  if (plan.TwoComponents()) values[SimBox::kExtCoeffB] = plan.extCoeffB[wavelength];
  for (const ModelParameter& parameter : plan.model->parameters) {
    const SharedParameter& shared = *parameter.shared;
    const double value = plan.truth.*shared.field;
    values[BoxOf(shared)] = shared.kind == ParameterKind::kWeight ? value / buoyancy : value;
  }
  std::map<SimBox, std::string> entries;
  for (const auto& [box, value] : values) entries[box] = ShortestText(value);
  return entries;
}

std::vector<std::string> Texts(const std::vector<double>& values) {
  std::vector<std::string> texts;
  texts.reserve(values.size());
  for (const double value : values) texts.push_back(ShortestText(value));
  return texts;
}

}  // namespace

PlannedSeries SeriesOf(const ExperimentPlan& plan, const std::vector<double>& speeds,
                       std::size_t wavelength) {
  PlannedSeries series{DefaultInputs(), {Texts(speeds), Texts(plan.loads), Texts(plan.loadsB)}};
  SimInputs& inputs = series.inputs;
  inputs.model = plan.model->index;
  inputs.saveAs = SimFileKind::kRA8;
  SetKDisplay(inputs, KDisplay::kLn);
  if (SimModelOf(inputs.model).k2ReplacesK1 && plan.truth.ModelLnK1 != plan.truth.ModelLnK2) {
    series.refusal = "The simulator has one constant for both sites of this model.";
    return series;
  }
  const auto refusal = StoreEntries(inputs, EntriesOf(plan, wavelength));
  if (refusal) {
    series.refusal = std::string(refusal->message);
    return series;
  }
  if (plan.centerpiece && plan.loads.size() > 1 && ChannelCount(*plan.centerpiece) > 1) {
    series.remark = "The simulator fills a cell for each load: all columns stand as the first.";
  }
  if (std::isfinite(plan.mostSignal)) {
    series.remark += std::string(series.remark.empty() ? "" : " ") +
                     "It loses nothing to the detector: delete the points above " +
                     FormatParam(plan.mostSignal) + ".";
  }
  return series;
}

}  // namespace quorvane
