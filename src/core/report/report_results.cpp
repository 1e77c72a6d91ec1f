#include "core/report/report_results.h"

#include <cmath>
#include <functional>
#include <span>
#include <utility>

#include "base/number_format.h"
#include "base/text.h"
#include "core/page/display_form.h"
#include "core/report/report_errors.h"
#include "core/report/report_view.h"
#include "fit/levmarq.h"
#include "fit/mass_conservation.h"
#include "fit/models.h"

namespace quorvane {

namespace {

// Which of the two sums of squares of a fit counts here.
std::string SumText(const ReportView& view) {
  const auto sum = [](double value) { return ReportNumber(value, "0.0000E+00"); };
  std::string text =
      "They, the variance and the sum of squares are those of the values with which the fit "
      "ended. ";
  if (sum(view.fit.FitChiSq) != sum(AcceptedSum(view.fit))) {
    text +=
        "The log and the confidence intervals count the sum of the last step, which was "
        "tried and not taken: " +
        sum(view.fit.FitChiSq) + ". ";
  }
  return text;
}

std::string Level(const ReportView& view) {
  return FormatNumber(view.record.intervals->request.percent, "##.0#") + " %";
}

std::string IntervalText(const ReportView& view) {
  const std::string errors = "Standard errors are from the covariance matrix. " + SumText(view);
  if (!view.record.intervals) return errors + "No confidence intervals were searched.";
  const auto& [request, outcome] = *view.record.intervals;
  return errors + "Confidence intervals at the " + Level(view) +
         " level were searched with all other parameters fitted anew at each trial value, for a "
         "ratio of " +
         FormatParam(outcome.ratio) + " of the variances: " +
         (request.method == RatioMethod::kEqualFreedom ? "F(NDF, NDF)"
                                                       : "1 + (Nparm/NDF) F(Nparm, NDF)") +
         ", with NDF = " + std::to_string(view.statistics.freedom) +
         " degrees of freedom and Nparm = " + std::to_string(view.statistics.fitted) +
         " fitted parameters." + (outcome.stopped ? " The search was stopped before its end." : "");
}

const ConfidenceInterval* IntervalOf(const ReportView& view, int shared) {
  if (!view.record.intervals) return nullptr;
  const std::span<const ModelParameter> parameters = view.fit.FitModel->parameters;
  const std::string name(Trim(parameters[static_cast<std::size_t>(shared - 1)].caption));
  for (const ConfidenceInterval& interval : view.record.intervals->outcome.intervals) {
    if (interval.name == name) return &interval;
  }
  return nullptr;
}

// A quantity that rises or falls all along with a shared parameter.
struct Quantity {
  std::string name;
  std::string unit;
  const char* pattern;
  std::function<double(double)> of = [](double v) { return v; };
  double errorFactor = 1.0;  // its error over the parameter's; 0: none is given
};

std::string LimitText(const Quantity& quantity, bool found, double limit) {
  if (!found) return "no limit";
  return WrittenOrNa([&] { return FormatNumber(quantity.of(limit), quantity.pattern); });
}

std::string IntervalCell(const ReportView& view, const Quantity& quantity, int shared) {
  const ConfidenceInterval* found = IntervalOf(view, shared);
  if (found == nullptr) return kReportNone;
  std::string low = LimitText(quantity, found->HasLower(), found->lower);
  std::string high = LimitText(quantity, found->HasUpper(), found->upper);
  if (quantity.errorFactor < 0.0) std::swap(low, high);
  return "[" + low + ", " + high + "]";
}

// The table of the parameters that all datasets share: in each form that a paper may want.
class SharedTable {
 public:
  explicit SharedTable(const ReportView& view) : view_(view) {
    if (view_.record.intervals) table_.head.push_back(Level(view_) + " interval");
    table_.head.emplace_back("Unit");
    int shared = 0;
    for (const ModelParameter& parameter : view_.fit.FitModel->parameters) {
      AddParameter(++shared, parameter);
    }
  }

  ReportTable Take() { return std::move(table_); }

 private:
  void AddShared(int shared, const Quantity& quantity) {
    const int k = view_.fit.SharedBase() + shared;
    const bool held = view_.fit.FitIA(k) == 0;
    std::string error = held ? "held" : kReportNone;
    if (!held && quantity.errorFactor != 0.0) {
      error = WrittenOrNa([&] {
        const double sd = StandardError(view_.fit, view_.statistics, k);
        return FormatNumber(sd * std::fabs(quantity.errorFactor), quantity.pattern);
      });
    }
    ReportRow row = {
        {quantity.name, true},
        WrittenOrNa([&] { return FormatNumber(quantity.of(view_.fit.FitA(k)), quantity.pattern); }),
        std::move(error)};
    if (view_.record.intervals) row.emplace_back(IntervalCell(view_, quantity, shared));
    row.emplace_back(quantity.unit);
    table_.rows.push_back(std::move(row));
  }

  void AddWeight(int shared, const std::string& of, double vbar) {
    const double density = view_.record.page.Density;
    const double buoyancy = 1.0 - density * vbar;
    AddShared(shared, {.name = "Buoyant molecular weight" + of, .unit = "Da", .pattern = "##0"});
    AddShared(shared, {.name = "Molecular weight" + of,
                       .unit = "Da",
                       .pattern = "##0",
                       .of = [=](double v) { return MolecularWeight(v, vbar, density); },
                       .errorFactor = buoyancy == 0.0 ? 0.0 : 1.0 / buoyancy});
    const int k = view_.fit.SharedBase() + shared;
    const double weight = view_.fit.FitA(k);
    const double sigma = SigmaAtMaxSpeed(view_.fit, view_.statistics, k);
    const double perWeight = weight == 0.0 ? 0.0 : sigma / weight;
    AddShared(shared,
              {.name = "Sigma" + of + " at " + std::to_string(view_.statistics.maxSpeed) + " rpm",
               .unit = "cm\u207b\u00b2",
               .pattern = "#0.0000",
               .of = [=](double v) { return v * perWeight; },
               .errorFactor = perWeight});
  }

  void AddConstant(int shared, const std::string& name) {
    const double log10e = 1.0 / std::log(10.0);
    AddShared(shared, {.name = "ln " + name, .unit = "", .pattern = "#0.000"});
    AddShared(shared, {.name = "log10 " + name,
                       .unit = "",
                       .pattern = "#0.000",
                       .of = [](double v) { return ShownK(v, KDisplay::kLog10); },
                       .errorFactor = log10e});
    AddShared(shared, {.name = name,
                       .unit = "",
                       .pattern = "0.00E+00",
                       .of = [](double v) { return ShownK(v, KDisplay::kPlain); },
                       .errorFactor = 0.0});
  }

  std::string FirstSymbol() const {
    return std::string(FindParameter(*view_.fit.FitModel, shared::kLnK1)->symbol);
  }

  void AddParameter(int shared, const ModelParameter& parameter) {
    const SharedParameter& record = *parameter.shared;
    const std::string symbol(parameter.symbol);
    switch (record.kind) {
      case ParameterKind::kWeight:
        AddWeight(shared,
                  !view_.Two()        ? ""
                  : record.place == 2 ? " of B"
                                      : " of A",
                  record.place == 2 ? view_.record.page.VbarB : view_.record.page.Vbar);
        break;
      case ParameterKind::kLnK:
        if (view_.fit.ConstrainKRatios && view_.fit.FitModel->kRatios && MayBeRatio(record)) {
          AddShared(shared,
                    {.name = symbol + "/" + FirstSymbol(), .unit = "", .pattern = "#0.000"});
        } else {
          AddConstant(shared, symbol);
        }
        break;
      case ParameterKind::kStoichiometry:
        AddShared(shared, {.name = record.place == 1 ? "Stoichiometry n" : "Stoichiometry m",
                           .unit = "",
                           .pattern = "#0.00"});
        break;
      case ParameterKind::kFraction:
        AddShared(shared, {.name = "Alpha", .unit = "", .pattern = "#0.000"});
        break;
      case ParameterKind::kVirial:
        AddShared(shared, {.name = "B M (virial)", .unit = "", .pattern = "0.000E+00"});
        break;
    }
  }

  const ReportView& view_;
  ReportTable table_ = {.title = "Parameters shared by all datasets",
                        .head = {"Parameter", "Value", "Std. error"},
                        .rows = {}};
};

// A baseline or reference concentration: value and error, held, or that of another dataset.
std::string OwnCell(const ReportView& view, int block, int d) {
  if (block > 0 && view.LinkOf(d) != d) return "as no. " + std::to_string(view.LinkOf(d));
  const int k = block * view.fit.NumFitSets + d;
  return WrittenOrNa([&] {
    const ValueAndError found =
        block == 0 ? ValueAndError{view.fit.FitA(k), StandardError(view.fit, view.statistics, k)}
                   : ReferenceConcentration(view.fit, view.statistics, k);
    const std::string value = FormatNumber(found.value, "0.000E+00");
    if (view.fit.FitIA(k) == 0) return value + " (held)";
    return value + " " + std::string(kPlusMinus) + " " + FormatNumber(found.error, "0.0E+00");
  });
}

ReportTable OwnValues(const ReportView& view) {
  ReportTable table{
      .title = "Values of each dataset",
      .head = {"No.", "Dataset", "Baseline", view.Two() ? "Ref. conc. A" : "Ref. conc."},
      .rows = {}};
  if (view.Two()) table.head.emplace_back("Ref. conc. B");
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    ReportRow row = {std::to_string(d), NameOf(view.DatasetOf(d)), OwnCell(view, 0, d),
                     OwnCell(view, 1, d)};
    if (view.Two()) row.emplace_back(OwnCell(view, 2, d));
    table.rows.push_back(std::move(row));
  }
  return table;
}

// Loads as entered and as the fit gives them, where the cells' shapes are known.
ReportTable MassBalance(const ReportView& view) {
  ReportTable table{.title = "Loading concentrations of the fitted region",
                    .head = {"No.", "Dataset"},
                    .rows = {}};
  if (view.Two()) {
    for (const char* head : {"A entered", "A from the fit", "B entered", "B from the fit"}) {
      table.head.emplace_back(head);
    }
  } else {
    table.head.emplace_back("From the fit");
  }
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    ReportRow row = {std::to_string(d), NameOf(view.DatasetOf(d))};
    if (view.Two()) {
      for (const double load : {view.fit.SetALoad(d), CalculatedLoad(view.fit, d, 1),
                                view.fit.SetBLoad(d), CalculatedLoad(view.fit, d, 2)}) {
        row.emplace_back(ReportNumber(load, "0.00E+00"));
      }
    } else {
      row.emplace_back(ReportNumber(view.fit.SetCalcLoad(d), "0.00E+00"));
    }
    table.rows.push_back(std::move(row));
  }
  return table;
}

}  // namespace

ReportSection ResultsSection(const ReportView& view) {
  ReportSection section{
      .title = "Results", .paragraphs = {IntervalText(view)}, .tables = {}, .figure = true};
  section.tables.push_back(SharedTable(view).Take());
  if (view.record.errors) {
    for (std::string& text : ErrorParagraphs(*view.record.errors)) {
      section.paragraphs.push_back(std::move(text));
    }
    for (ReportTable& table : ErrorTables(*view.record.errors)) {
      section.tables.push_back(std::move(table));
    }
  }
  section.tables.push_back(OwnValues(view));
  if (view.NeedsWidth()) section.tables.push_back(MassBalance(view));
  return section;
}

}  // namespace quorvane
