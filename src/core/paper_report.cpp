#include "core/paper_report.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "base/number_format.h"
#include "base/text.h"
#include "base/units.h"
#include "core/display_form.h"
#include "core/report_sources.h"
#include "fit/fit_statistics.h"
#include "fit/levmarq.h"
#include "fit/mass_conservation.h"
#include "fit/models.h"
#include "stats/fit_quality.h"

namespace {

const std::string kNone = "\u2013";  // a dash

using Cells = std::vector<ReportText>;

// What `work` writes, "n/a" where its arithmetic fails.
template <class Work>
std::string Written(Work&& work) {
  try {
    return work();
  } catch (const ArithmeticFault&) {
    return "n/a";
  }
}

std::string Number(double value, const char* pattern) {
  return Written([&] { return FormatNumber(value, pattern); });
}

// "1, 3-5, 9"
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

// "a", "a and b", "a, b and c"
std::string Enumeration(const std::vector<std::string>& parts) {
  std::string text;
  for (std::size_t k = 0; k < parts.size(); ++k) {
    if (k > 0) text += k + 1 == parts.size() ? " and " : ", ";
    text += parts[k];
  }
  return text;
}

// The optics that made a scan, by the first letter of its header line.
std::string OpticsOf(const Dataset& dataset) {
  const std::string header = Comment2Of(dataset);
  switch (header.empty() ? ' ' : header.front()) {
    case 'R':
      return "absorbance";
    case 'P':
    case 'I':
      return "interference";
    case 'F':
      return "fluorescence";
    case 'E':
      return "electrophoresis";
    default:
      return "not stated";
  }
}

// The report of one finished fit.
class Maker {
 public:
  explicit Maker(const QuorvaneModule& module)
      : module_(module), fit_(module.Fit), record_(module.LastFit) {
    statistics_ = CalcFitStatistics(fit_, AcceptedSum(fit_));
  }

  PaperReport Make() const {
    PaperReport report;
    report.title = "Analysis of sedimentation equilibrium: " + ModelName();
    report.origin = "Quorvane " + std::string(ProgramVersion()) + ", " + DateAndTimeText();
    report.sections = {Methods(), Results(), Quality(), Files()};
    for (int set = 0; set < fit_.NumFitSets; ++set) {
      report.charts.push_back(PlotDataFit(fit_, record_.datasets, set, module_.Plots));
    }
    return report;
  }

 private:
  std::string ModelName() const { return std::string(fit_.FitModel->name); }
  const Dataset& DatasetOf(int d) const {
    const auto place = static_cast<std::size_t>(d - 1);
    return record_.datasets[static_cast<std::size_t>(fit_.FitSetList[place])];
  }
  // Position, from 1, whose reference concentrations dataset d uses.
  int LinkOf(int d) const { return fit_.RefLink[static_cast<std::size_t>(d - 1)] + 1; }
  bool Two() const { return fit_.TwoComponentModel; }
  // Whether the loads that were entered have a part in the fit.
  bool LoadsCount() const { return Two() && fit_.UseMassConservation; }
  bool NeedsWidth() const { return Two() ? fit_.UseMassConservation : fit_.CalcLoadingConcs; }

  // Texts of all datasets of the fit, each once, in the order of their first.
  template <class TextOf>
  std::string Kinds(TextOf&& textOf) const {
    std::vector<std::string> kinds;
    for (int d = 1; d <= fit_.NumFitSets; ++d) {
      std::string text = textOf(DatasetOf(d));
      if (std::find(kinds.begin(), kinds.end(), text) == kinds.end()) {
        kinds.push_back(std::move(text));
      }
    }
    return Enumeration(kinds);
  }

  // Numbers of the datasets for which `holds`.
  template <class Holds>
  std::string Those(Holds&& holds) const {
    std::vector<int> numbers;
    for (int d = 1; d <= fit_.NumFitSets; ++d) {
      if (holds(d)) numbers.push_back(d);
    }
    return NumberList(numbers);
  }

  ReportSection Methods() const {
    ReportSection section{.title = "Methods", .paragraphs = {Summary()}, .tables = {}};
    section.tables = {Conditions(), Scans(), Points(), Treatment()};
    return section;
  }

  std::string Summary() const {
    const std::string optics = Kinds([](const Dataset& dataset) {
      const std::string kind = OpticsOf(dataset);
      if (kind != "absorbance" && kind != "fluorescence") return kind;
      return kind + " at " + std::to_string(dataset.Wavelength) + " nm";
    });
    const std::string speeds =
        Kinds([](const Dataset& dataset) { return FormatNumber(dataset.Speed, "#####0"); });
    const int sets = fit_.NumFitSets;
    return (sets == 1 ? "One scan" : std::to_string(sets) + " scans") +
           " of sedimentation equilibrium (optics: " + optics + "; " + speeds + " rpm; " +
           Temperature() + ") " + (sets == 1 ? "was" : "were") + " fitted with the model " +
           ModelName() +
           " by nonlinear least squares (Levenberg-Marquardt), all points with the same weight, "
           "with Quorvane " +
           ProgramVersion() + ".";
  }

  std::string Temperature() const { return Number(fit_.TempK - kZeroCelsius, "#0.0 \u00b0C"); }

  ReportTable Conditions() const {
    ReportTable table{.title = "Model and conditions", .head = {}, .rows = {}};
    const auto add = [&](const char* name, ReportText text) {
      table.rows.push_back({name, std::move(text)});
    };
    const Reaction& reaction = fit_.FitModel->reaction;
    add("Model", ModelName());
    add("Reaction", {std::string(reaction.equation), true});
    if (!reaction.constants.empty()) {
      add("Association constants", {std::string(reaction.constants), true});
      add("Scale of the constants",
          "that of the reference concentrations: signal over extinction coefficient");
    }
    add("Temperature", Temperature());
    add(Two() ? "Partial specific volume of A" : "Partial specific volume",
        Number(record_.page.Vbar, "0.000##") + " ml/g");
    if (Two()) add("Partial specific volume of B", Number(record_.page.VbarB, "0.000##") + " ml/g");
    add("Solvent density", Number(record_.page.Density, "0.0000#") + " g/ml");
    if (LoadsCount()) {
      add("Mass conservation", "soft, tolerance " + Number(fit_.MCTolerance, "#0.0###"));
    }
    return table;
  }

  // Ends of a column that the model takes, or that somebody moved from where the load put them.
  bool MeniscusCounts(const Dataset& set) const {
    return fit_.FitModel->cellEnds || set.Rmen != set.R.front();
  }
  bool BaseCounts(const Dataset& set) const {
    return fit_.FitModel->cellEnds || set.Rbase != LastRadius(set);
  }
  bool EndsCount() const {
    for (int d = 1; d <= fit_.NumFitSets; ++d) {
      if (MeniscusCounts(DatasetOf(d)) || BaseCounts(DatasetOf(d))) return true;
    }
    return false;
  }

  ReportTable Scans() const {
    ReportTable table{
        .title = "Datasets",
        .head = {"No.", "Dataset", "Optics", "Wavelength (nm)", "Speed (rpm)", "Temp. (\u00b0C)"},
        .rows = {}};
    const bool ends = EndsCount();
    if (ends) table.head.insert(table.head.end(), {"Meniscus (cm)", "Base (cm)"});
    table.head.emplace_back("Blank subtracted");
    if (NeedsWidth()) table.head.emplace_back("Cell");
    for (int d = 1; d <= fit_.NumFitSets; ++d) {
      const Dataset& set = DatasetOf(d);
      Cells row = {std::to_string(d),
                   NameOf(set),
                   OpticsOf(set),
                   Number(set.Wavelength, "##0"),
                   Number(set.Speed, "#####0"),
                   Number(static_cast<double>(set.Temperature), "#0.0")};
      if (ends) {
        row.emplace_back(MeniscusCounts(set) ? Number(set.Rmen, "0.0000") : kNone);
        row.emplace_back(BaseCounts(set) ? Number(set.Rbase, "0.0000") : kNone);
      }
      row.emplace_back(IsBlanked(set) ? "yes" : "no");
      if (NeedsWidth()) row.emplace_back(record_.cells[static_cast<std::size_t>(d - 1)]);
      table.rows.push_back(std::move(row));
    }
    return table;
  }

  ReportTable Points() const {
    ReportTable table{.title = "Points and constants of each dataset",
                      .head = {"No.", "Radii fitted (cm)", "Points", "Left out", "Ref. radius (cm)",
                               Two() ? "Ext. coeff. A" : "Ext. coeff."},
                      .rows = {}};
    if (Two()) table.head.emplace_back("Ext. coeff. B");
    if (LoadsCount()) table.head.insert(table.head.end(), {"Load A", "Load B"});
    for (int d = 1; d <= fit_.NumFitSets; ++d) {
      const Dataset& set = DatasetOf(d);
      const int good = CountGoodPoints(set);
      Cells row = {std::to_string(d),
                   FittedRadii(d),
                   std::to_string(good),
                   std::to_string(set.NumPoints - good),
                   Number(set.RefRadius, "0.0000"),
                   Number(set.ExtCoeff, "0.000E+00")};
      if (Two()) row.emplace_back(Number(set.ExtCoeff2, "0.000E+00"));
      if (LoadsCount()) {
        row.emplace_back(Number(set.ALoad, "0.00E+00"));
        row.emplace_back(Number(set.BLoad, "0.00E+00"));
      }
      table.rows.push_back(std::move(row));
    }
    return table;
  }

  // From the first to the last good point.
  std::string FittedRadii(int d) const {
    const int first = fit_.SetFirstPoint(d);
    int last = first + fit_.SetPointCount(d) - 1;
    while (last > first && fit_.PointKind(last) != 0) --last;
    if (last < first) return kNone;
    return Number(fit_.FitR(first), "0.0000") + " \u2013 " + Number(fit_.FitR(last), "0.0000");
  }

  // What was fitted, held, shared and linked.
  ReportTable Treatment() const {
    ReportTable table{.title = "Parameters", .head = {}, .rows = {}};
    std::vector<std::string> fitted;
    std::vector<std::string> held;
    for (const ConfidenceRow& row : ConfidenceRows(fit_)) {
      const std::string name(Trim(row.caption));
      (row.fitted ? fitted : held).push_back(row.fitted ? name : name + " = " + row.value);
    }
    const auto add = [&](const char* name, std::string text) {
      if (!text.empty()) table.rows.push_back({name, std::move(text)});
    };
    add("Shared by all datasets, fitted", Enumeration(fitted));
    add("Shared by all datasets, held", Enumeration(held));
    add("Ratios of constants", fit_.ConstrainKRatios ? "held" : "");
    AddPerDataset(table, "Baseline", 0);
    AddPerDataset(table, Two() ? "Reference concentration of A" : "Reference concentration", 1);
    if (Two()) AddPerDataset(table, "Reference concentration of B", 2);
    std::vector<std::string> links;
    for (int d = 1; d <= fit_.NumFitSets; ++d) {
      const std::string linked = Those([&](int e) { return e != d && LinkOf(e) == d; });
      if (!linked.empty()) links.push_back(linked + " with " + std::to_string(d));
    }
    add("Datasets that share reference concentrations", Enumeration(links));
    return table;
  }

  // Block 0 of a fit's parameters holds the baselines, 1 and 2 the reference concentrations.
  void AddPerDataset(ReportTable& table, const std::string& name, int block) const {
    const auto state = [&](int d) { return fit_.FitIA(block * fit_.NumFitSets + d) != 0; };
    const auto own = [&](int d) { return block == 0 || LinkOf(d) == d; };
    const std::string fitted = Those([&](int d) { return own(d) && state(d); });
    const std::string held = Those([&](int d) { return own(d) && !state(d); });
    std::vector<std::string> parts;
    if (!fitted.empty()) parts.push_back("fitted (" + fitted + ")");
    if (!held.empty()) parts.push_back("held (" + held + ")");
    table.rows.push_back({name + ", by dataset", Enumeration(parts)});
  }

  ReportSection Results() const {
    ReportSection section{.title = "Results", .paragraphs = {IntervalText()}, .tables = {}};
    section.tables.push_back(SharedValues());
    section.tables.push_back(OwnValues());
    if (NeedsWidth()) section.tables.push_back(MassBalance());
    return section;
  }

  // Which of the two sums of squares of a fit counts here.
  std::string SumText() const {
    const auto sum = [](double value) { return Number(value, "0.0000E+00"); };
    std::string text =
        "They, the variance and the sum of squares are those of the values that the fit ended "
        "with. ";
    if (sum(fit_.FitChiSq) != sum(AcceptedSum(fit_))) {
      text +=
          "The log and the confidence intervals count the sum of the last step, which was "
          "tried and not taken: " +
          sum(fit_.FitChiSq) + ". ";
    }
    return text;
  }

  std::string IntervalText() const {
    const std::string errors =
        "Errors are standard errors from the covariance matrix. " + SumText();
    if (!record_.intervals) return errors + "No confidence intervals were searched.";
    const auto& [request, outcome] = *record_.intervals;
    return errors + "Confidence intervals at the " + Level() +
           " level were searched with all other parameters fitted anew at each trial value, for a "
           "ratio of " +
           FormatParam(outcome.ratio) + " of the variances: " +
           (request.method == RatioMethod::kEqualFreedom ? "F(NDF, NDF)"
                                                         : "1 + (Nparm/NDF) F(Nparm, NDF)") +
           ", with NDF = " + std::to_string(statistics_.freedom) +
           " degrees of freedom and Nparm = " + std::to_string(statistics_.fitted) +
           " fitted parameters." +
           (outcome.stopped ? " The search was stopped before its end." : "");
  }

  std::string Level() const {
    return FormatNumber(record_.intervals->request.percent, "##.0#") + " %";
  }

  const ConfidenceInterval* IntervalOf(int shared) const {
    if (!record_.intervals) return nullptr;
    const std::span<const ModelParameter> parameters = fit_.FitModel->parameters;
    const std::string name(Trim(parameters[static_cast<std::size_t>(shared - 1)].caption));
    for (const ConfidenceInterval& interval : record_.intervals->outcome.intervals) {
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

  std::string LimitText(const Quantity& quantity, bool found, double limit) const {
    if (!found) return "no limit";
    return Written([&] { return FormatNumber(quantity.of(limit), quantity.pattern); });
  }

  std::string IntervalCell(const Quantity& quantity, int shared) const {
    const ConfidenceInterval* found = IntervalOf(shared);
    if (found == nullptr) return kNone;
    std::string low = LimitText(quantity, found->HasLower(), found->lower);
    std::string high = LimitText(quantity, found->HasUpper(), found->upper);
    if (quantity.errorFactor < 0.0) std::swap(low, high);
    return "[" + low + ", " + high + "]";
  }

  void AddShared(ReportTable& table, int shared, const Quantity& quantity) const {
    const int k = fit_.SharedBase() + shared;
    const bool held = fit_.FitIA(k) == 0;
    std::string error = held ? "held" : kNone;
    if (!held && quantity.errorFactor != 0.0) {
      error = Written([&] {
        const double sd = StandardError(fit_, statistics_, k);
        return FormatNumber(sd * std::fabs(quantity.errorFactor), quantity.pattern);
      });
    }
    Cells row = {{quantity.name, true},
                 Written([&] { return FormatNumber(quantity.of(fit_.FitA(k)), quantity.pattern); }),
                 std::move(error)};
    if (record_.intervals) row.emplace_back(IntervalCell(quantity, shared));
    row.emplace_back(quantity.unit);
    table.rows.push_back(std::move(row));
  }

  void AddWeight(ReportTable& table, int shared, const std::string& of, double vbar) const {
    const double density = record_.page.Density;
    const double buoyancy = 1.0 - density * vbar;
    AddShared(table, shared,
              {.name = "Buoyant molecular weight" + of, .unit = "Da", .pattern = "##0"});
    AddShared(table, shared,
              {.name = "Molecular weight" + of,
               .unit = "Da",
               .pattern = "##0",
               .of = [=](double v) { return MolecularWeight(v, vbar, density); },
               .errorFactor = buoyancy == 0.0 ? 0.0 : 1.0 / buoyancy});
    const int k = fit_.SharedBase() + shared;
    const double weight = fit_.FitA(k);
    const double sigma = SigmaAtMaxSpeed(fit_, statistics_, k);
    const double perWeight = weight == 0.0 ? 0.0 : sigma / weight;
    AddShared(table, shared,
              {.name = "Sigma" + of + " at " + std::to_string(statistics_.maxSpeed) + " rpm",
               .unit = "cm\u207b\u00b2",
               .pattern = "#0.0000",
               .of = [=](double v) { return v * perWeight; },
               .errorFactor = perWeight});
  }

  void AddConstant(ReportTable& table, int shared, const std::string& name) const {
    const double log10e = 1.0 / std::log(10.0);
    AddShared(table, shared, {.name = "ln " + name, .unit = "", .pattern = "#0.000"});
    AddShared(table, shared,
              {.name = "log10 " + name,
               .unit = "",
               .pattern = "#0.000",
               .of = [](double v) { return ShownK(v, 1); },
               .errorFactor = log10e});
    AddShared(table, shared,
              {.name = name,
               .unit = "",
               .pattern = "0.00E+00",
               .of = [](double v) { return ShownK(v, 2); },
               .errorFactor = 0.0});
  }

  ReportTable SharedValues() const {
    ReportTable table{.title = "Parameters shared by all datasets",
                      .head = {"Parameter", "Value", "Std. error"},
                      .rows = {}};
    if (record_.intervals) table.head.push_back(Level() + " interval");
    table.head.emplace_back("Unit");
    int shared = 0;
    for (const ModelParameter& parameter : fit_.FitModel->parameters) {
      AddParameter(table, ++shared, parameter);
    }
    return table;
  }

  void AddParameter(ReportTable& table, int shared, const ModelParameter& parameter) const {
    const SharedParameter& record = *parameter.shared;
    const std::string symbol(parameter.symbol);
    switch (record.kind) {
      case ParameterKind::kWeight:
        AddWeight(table, shared,
                  !Two()              ? ""
                  : record.place == 2 ? " of B"
                                      : " of A",
                  record.place == 2 ? record_.page.VbarB : record_.page.Vbar);
        break;
      case ParameterKind::kLnK:
        if (fit_.ConstrainKRatios && fit_.FitModel->kRatios && MayBeRatio(record)) {
          AddShared(table, shared,
                    {.name = symbol + "/" + FirstSymbol(), .unit = "", .pattern = "#0.000"});
        } else {
          AddConstant(table, shared, symbol);
        }
        break;
      case ParameterKind::kStoichiometry:
        AddShared(table, shared,
                  {.name = record.place == 1 ? "Stoichiometry n" : "Stoichiometry m",
                   .unit = "",
                   .pattern = "#0.00"});
        break;
      case ParameterKind::kFraction:
        AddShared(table, shared, {.name = "Alpha", .unit = "", .pattern = "#0.000"});
        break;
      case ParameterKind::kVirial:
        AddShared(table, shared, {.name = "B M (virial)", .unit = "", .pattern = "0.000E+00"});
        break;
    }
  }

  std::string FirstSymbol() const {
    return std::string(FindParameter(*fit_.FitModel, shared::kLnK1)->symbol);
  }

  // A baseline or reference concentration: value and error, held, or that of another dataset.
  std::string OwnCell(int block, int d) const {
    if (block > 0 && LinkOf(d) != d) return "as no. " + std::to_string(LinkOf(d));
    const int k = block * fit_.NumFitSets + d;
    return Written([&] {
      const ValueAndError found =
          block == 0 ? ValueAndError{fit_.FitA(k), StandardError(fit_, statistics_, k)}
                     : ReferenceConcentration(fit_, statistics_, k);
      const std::string value = FormatNumber(found.value, "0.000E+00");
      if (fit_.FitIA(k) == 0) return value + " (held)";
      return value + " " + std::string(kPlusMinus) + " " + FormatNumber(found.error, "0.0E+00");
    });
  }

  ReportTable OwnValues() const {
    ReportTable table{.title = "Values of each dataset",
                      .head = {"No.", "Dataset", "Baseline", Two() ? "Ref. conc. A" : "Ref. conc."},
                      .rows = {}};
    if (Two()) table.head.emplace_back("Ref. conc. B");
    for (int d = 1; d <= fit_.NumFitSets; ++d) {
      Cells row = {std::to_string(d), NameOf(DatasetOf(d)), OwnCell(0, d), OwnCell(1, d)};
      if (Two()) row.emplace_back(OwnCell(2, d));
      table.rows.push_back(std::move(row));
    }
    return table;
  }

  // Loads as entered and as the fit gives them, where the cells' shapes are known.
  ReportTable MassBalance() const {
    ReportTable table{.title = "Loading concentrations of the fitted region",
                      .head = {"No.", "Dataset"},
                      .rows = {}};
    if (Two()) {
      for (const char* head : {"A entered", "A from the fit", "B entered", "B from the fit"}) {
        table.head.emplace_back(head);
      }
    } else {
      table.head.emplace_back("From the fit");
    }
    for (int d = 1; d <= fit_.NumFitSets; ++d) {
      Cells row = {std::to_string(d), NameOf(DatasetOf(d))};
      if (Two()) {
        for (const double load : {fit_.SetALoad(d), CalculatedLoad(fit_, d, 1), fit_.SetBLoad(d),
                                  CalculatedLoad(fit_, d, 2)}) {
          row.emplace_back(Number(load, "0.00E+00"));
        }
      } else {
        row.emplace_back(Number(fit_.SetCalcLoad(d), "0.00E+00"));
      }
      table.rows.push_back(std::move(row));
    }
    return table;
  }

  ReportSection Quality() const {
    ReportSection section{.title = "Quality of the fit", .paragraphs = {}, .tables = {WholeFit()}};
    try {
      FitQuality quality =
          CalcFitQuality(fit_, record_.page, record_.constantsSet, module_.CriticalCCCValue);
      for (int d = 1; d <= fit_.NumFitSets; ++d) {  // as they are numbered here
        quality.sets[static_cast<std::size_t>(d - 1)].dataset = d;
      }
      section.paragraphs = QualityRemarks(quality);
      section.tables.push_back(QualityOfSets(quality));
    } catch (const ArithmeticFault&) {
      section.paragraphs = {"The quality of the datasets cannot be computed from this fit."};
    }
    return section;
  }

  ReportTable WholeFit() const {
    ReportTable table{.title = "The whole fit", .head = {}, .rows = {}};
    const auto count = [&](const char* name, int number) {
      table.rows.push_back({name, std::to_string(number)});
    };
    count(LoadsCount() ? "Points, two a dataset of mass conservation" : "Points",
          fit_.FitNumPoints);
    count("Fitted parameters", statistics_.fitted);
    count("Parameters held or linked", fit_.FitMA - statistics_.fitted);
    count("Degrees of freedom", statistics_.freedom);
    count("Iterations", record_.iterations);
    table.rows.push_back({"Sum of squared residuals", Number(AcceptedSum(fit_), "0.0000E+00")});
    table.rows.push_back({"Variance", Number(statistics_.variance, "0.0000E+00")});
    table.rows.push_back({"Root mean square deviation",
                          Number(std::sqrt(statistics_.variance), "0.000E+00") + " signal units"});
    return table;
  }

  // Everything that is said of the fit of a single dataset stands in this table.
  ReportTable QualityOfSets(const FitQuality& quality) const {
    ReportTable table{.title = "Each dataset",
                      .head = {"No.", "Dataset", "Points", "RMS residual", "Largest residual",
                               "Share of squares", "Runs", "Z of runs", "Durbin\u2013Watson"},
                      .rows = {}};
    const auto known = [](const std::optional<double>& value) {
      return value.has_value() ? Number(*value, "0.00") : kNone;
    };
    for (const SetQuality& set : quality.sets) {
      table.rows.push_back({std::to_string(set.dataset), NameOf(DatasetOf(set.dataset)),
                            std::to_string(set.points), Number(set.rms, "0.000E+00"),
                            Number(LargestResidual(set.dataset), "0.000E+00"),
                            Number(100.0 * set.share, "0.0") + " %", std::to_string(set.runs.runs),
                            known(set.runs.z), known(set.durbinWatson)});
    }
    return table;
  }

  double LargestResidual(int d) const {
    double largest = 0.0;
    const int first = fit_.SetFirstPoint(d);
    for (int i = first; i < first + fit_.SetPointCount(d); ++i) {
      if (fit_.PointKind(i) != 0) continue;
      largest = std::max(largest, std::fabs(fit_.FitY(i) - fit_.FitYCalc(i)));
    }
    return largest;
  }

  ReportSection Files() const {
    ReportSection section{.title = "Program and files",
                          .paragraphs = {"Made with Quorvane " + std::string(ProgramVersion()) +
                                         ". SHA-256 is a digest of the bytes of a file: equal "
                                         "digests, equal files."},
                          .tables = {}};
    ReportTable table{.title = "Scan files", .head = {"Datasets", "File", "SHA-256"}, .rows = {}};
    for (const SourceFile& file : SourceFiles(record_.datasets, fit_.FitSetList)) {
      table.rows.push_back({file.numbers.empty() ? std::string("blank") : NumberList(file.numbers),
                            file.path.empty() ? std::string("not stated") : file.path, file.state});
    }
    if (NeedsWidth()) {
      const SourceFile cells = CellFile(module_.ChannelFile);
      table.rows.push_back({"cells", cells.path, cells.state});
    }
    section.tables.push_back(std::move(table));
    return section;
  }

  const QuorvaneModule& module_;
  const FitState& fit_;
  const FitRecord& record_;
  FitStatistics statistics_;
};

}  // namespace

PaperReport MakePaperReport(const QuorvaneModule& module) {
  return Maker(module).Make();
}
