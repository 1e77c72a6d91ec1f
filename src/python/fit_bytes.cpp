// The bytes of a finished fit: what it was made from, and what it found; the arrays between are
// assembled anew.
#include <array>
#include <cmath>

#include "base/arithmetic.h"
#include "base/quiet_host.h"
#include "base/text.h"
#include "core/page/fit_checks.h"
#include "fit/assembly.h"
#include "fit/models.h"
#include "job/page_setup.h"
#include "python/fit_record.h"
#include "python/scan_record.h"
#include "python/search_bytes.h"

namespace quorvane {

namespace {

constexpr const char* kKind = "fit";

// The numbers of the page, in the order of the bytes.
constexpr std::array kPageNumbers = {
    &FitPage::ModelMW,   &FitPage::ModelMWB,  &FitPage::ModelVirial, &FitPage::ModelN1,
    &FitPage::ModelN2,   &FitPage::ModelLnK1, &FitPage::ModelLnK2,   &FitPage::ModelAlpha,
    &FitPage::ModelLnK3, &FitPage::Vbar,      &FitPage::VbarB,       &FitPage::Density};

void WriteLongText(std::string_view text, ByteWriter& out) {
  out.Unsigned32(static_cast<std::uint32_t>(text.size()));
  out.Raw(text);
}

std::string LongTextIn(ByteReader& in) {
  const std::uint32_t count = in.Count(1, "text");
  return std::string(TextOf(in.Raw(count, "text")));
}

double FiniteIn(ByteReader& in) {
  const double value = in.Double("number of a fit");
  if (!std::isfinite(value)) in.Fail("number, which is not finite,");
  return value;
}

// The first `count` numbers; `values` may have more places.
void Write(const Array1<double>& values, int count, ByteWriter& out) {
  out.Int32(count);
  out.Doubles({values.data(), static_cast<std::size_t>(count)});
}

void Read(Array1<double>& values, int count, ByteReader& in) {
  if (in.Int32("count") != count) in.Fail("number of points or parameters");
  if (values.size() < count) values.Resize(count);
  for (int k = 1; k <= count; ++k) values(k) = FiniteIn(in);
}

void WriteGeometries(const std::vector<CellGeometry>& geometries, ByteWriter& out) {
  out.Unsigned32(static_cast<std::uint32_t>(geometries.size()));
  for (const CellGeometry& geometry : geometries) {
    out.Int16(geometry.number);
    WriteLongText(geometry.name, out);
    out.Unsigned32(static_cast<std::uint32_t>(geometry.r.size()));
    for (const float r : geometry.r) out.Float(r);
    for (const float f : geometry.f) out.Float(f);
  }
}

std::vector<CellGeometry> ReadGeometries(ByteReader& in) {
  std::vector<CellGeometry> geometries(in.Count(10, "cell geometries"));
  for (CellGeometry& geometry : geometries) {
    geometry.number = in.Int16("cell geometry");
    geometry.name = LongTextIn(in);
    const std::uint32_t pairs = in.Count(8, "cell geometry");
    if (pairs > kMaxGeometryPairs) in.Fail("number of pairs");
    for (std::vector<float>* const column : {&geometry.r, &geometry.f}) {
      for (std::uint32_t k = 0; k < pairs; ++k) {
        column->push_back(in.Float("cell geometry"));
        if (!std::isfinite(column->back())) in.Fail("number, which is not finite,");
      }
    }
  }
  return geometries;
}

void WriteRest(const std::optional<RestVerdict>& rest, ByteWriter& out) {
  out.Int16(rest ? 1 : 0);
  if (!rest) return;
  constexpr std::int16_t kUnknown = -1;
  out.Int16(rest->atRest ? static_cast<std::int16_t>(*rest->atRest) : kUnknown);
  for (const double value : {rest->sum, rest->sumFall, rest->largestMove}) out.Double(value);
  out.Int16(rest->determined ? 1 : 0);
  WriteLongText(rest->moved, out);
  WriteLongText(rest->reason, out);
}

std::optional<RestVerdict> ReadRest(ByteReader& in) {
  if (in.Int16("rest") == 0) return std::nullopt;
  RestVerdict rest;
  const std::int16_t known = in.Int16("rest");
  if (known >= 0) rest.atRest = known != 0;
  rest.sum = FiniteIn(in);
  rest.sumFall = FiniteIn(in);
  rest.largestMove = FiniteIn(in);
  rest.determined = in.Int16("rest") != 0;
  rest.moved = LongTextIn(in);
  rest.reason = LongTextIn(in);
  return rest;
}

void WriteResults(const FinishedFit& fit, ByteWriter& out) {
  const FitState& state = fit.state;
  out.Int32(fit.iterations);
  Write(state.FitA, state.FitMA, out);
  Write(state.FitYCalc, state.FitNumPoints, out);
  const bool loads = state.SetCalcLoad.size() >= state.NumFitSets;
  out.Int16(loads ? 1 : 0);
  if (loads) Write(state.SetCalcLoad, state.NumFitSets, out);
  for (int j = 1; j <= state.FitCovar.rows(); ++j) {
    out.Doubles({state.FitCovar.Row(j), static_cast<std::size_t>(state.FitCovar.cols())});
  }
  for (const double value :
       {state.FitChiSq, state.Memory.bestChiSq, fit.ratios.FRatio, fit.ratios.VarianceRatio}) {
    out.Double(value);
  }
  WriteRest(fit.rest, out);
}

void ReadResults(FinishedFit& fit, ByteReader& in) {
  FitState& state = fit.state;
  fit.iterations = in.Int32("iterations");
  Read(state.FitA, state.FitMA, in);
  Read(state.FitYCalc, state.FitNumPoints, in);
  if (in.Int16("loads") != 0) Read(state.SetCalcLoad, state.NumFitSets, in);
  state.FitCovar = Matrix1<double>(state.FitMA, state.FitMA);
  for (int j = 1; j <= state.FitMA; ++j) {
    for (int k = 1; k <= state.FitMA; ++k) state.FitCovar(j, k) = FiniteIn(in);
  }
  state.FitChiSq = FiniteIn(in);
  state.Memory.bestChiSq = FiniteIn(in);
  fit.ratios.FRatio = FiniteIn(in);
  fit.ratios.VarianceRatio = FiniteIn(in);
  fit.rest = ReadRest(in);
}

// The page of the fit, judged as that of an archive is.
void ReadPage(QuorvaneModule& module, ByteReader& in) {
  for (double FitPage::*const number : kPageNumbers) module.FitPage.*number = FiniteIn(in);
  module.ConstantsSet.Vbar = in.Int16("constants") != 0;
  module.ConstantsSet.VbarB = in.Int16("constants") != 0;
  module.ConstantsSet.Density = in.Int16("constants") != 0;
  module.Preferences.MCTolerance = FiniteIn(in);
  const Model* model = FindModel(int{in.Int16("model")});
  if (model == nullptr) in.Fail("model");
  module.ChosenModel = model;
  module.CellGeometries = ReadGeometries(in);
  const std::uint32_t count = in.Count(800, "datasets");
  for (std::uint32_t k = 0; k < count; ++k) {
    module.Store.Datasets.push_back(ReadDataset(in));
    module.Store.UseData.push_back(false);
  }
  const std::string setup = LongTextIn(in);
  if (!IsSetupText(setup)) in.Fail("setup");
  TakeSetup(setup, "fit", module);
  if (module.Setup.NumFitSets == 0) in.Fail("number of datasets");
}

}  // namespace

std::string PackFit(const FitRecord& record) {
  const FinishedFit& fit = *record.fit;
  QuorvaneModule module;
  BeginAround(record, module);
  ByteWriter out;
  for (double FitPage::*const number : kPageNumbers) out.Double(fit.page.*number);
  for (const bool set : {fit.constantsSet.Vbar, fit.constantsSet.VbarB, fit.constantsSet.Density}) {
    out.Int16(set ? 1 : 0);
  }
  out.Double(fit.state.MCTolerance);
  out.Int16(static_cast<std::int16_t>(fit.setup.FitModel->index));
  WriteGeometries(record.geometries, out);
  out.Unsigned32(static_cast<std::uint32_t>(fit.datasets.size()));
  for (const Dataset& dataset : fit.datasets) WriteDataset(dataset, out);
  WriteLongText(SetupText(module), out);
  WriteResults(fit, out);
  WriteSearches(fit, out);
  WriteLongText(record.log, out);
  out.Unsigned32(static_cast<std::uint32_t>(record.messages.size()));
  for (const std::string& message : record.messages) WriteLongText(message, out);
  return Sealed(kKind, out.Take());
}

FitRecord UnpackFit(std::string_view bytes) {
  ByteReader in(kKind, Unsealed(kKind, bytes));
  QuorvaneModule module;
  ReadPage(module, in);
  auto fit = std::make_shared<FinishedFit>();
  QuietHost host;
  SetupDataArrays(fit->state, FitSourceOf(module), host);
  bool anyFitted = false;
  SetupParameterArray(fit->state, module.Setup, module.FitPage, module.Store.Datasets, anyFitted);
  ReadResults(*fit, in);
  fit->setup = module.Setup;
  fit->page = module.FitPage;
  fit->constantsSet = module.ConstantsSet;
  fit->datasets = module.Store.Datasets;
  for (const std::int16_t channel : fit->setup.SetCellChannel) {
    const auto place = static_cast<std::size_t>(channel);
    const bool known = place < module.CellGeometries.size();
    fit->cells.emplace_back(known ? Trim(module.CellGeometries[place].name) : "");
  }
  ReadSearches(*fit, in);
  FitRecord record{fit, module.CellGeometries, LongTextIn(in), {}};
  for (std::uint32_t count = in.Count(4, "messages"); count > 0; --count) {
    record.messages.push_back(LongTextIn(in));
  }
  if (!in.AtEnd()) in.Fail("length");
  return record;
}

}  // namespace quorvane
