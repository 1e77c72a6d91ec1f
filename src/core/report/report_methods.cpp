#include "core/report/report_methods.h"

#include <algorithm>

#include "base/number_format.h"
#include "base/text.h"
#include "base/units.h"
#include "core/report/report_view.h"
#include "fit/models.h"
#include "stats/confidence.h"

namespace quorvane {

namespace {

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

// Texts of all datasets of the fit, each once, in the order of their first.
template <class TextOf>
std::string Kinds(const ReportView& view, TextOf&& textOf) {
  std::vector<std::string> kinds;
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    std::string text = textOf(view.DatasetOf(d));
    if (std::find(kinds.begin(), kinds.end(), text) == kinds.end()) {
      kinds.push_back(std::move(text));
    }
  }
  return Enumeration(kinds);
}

// Numbers of the datasets for which `holds`.
template <class Holds>
std::string Those(const ReportView& view, Holds&& holds) {
  std::vector<int> numbers;
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    if (holds(d)) numbers.push_back(d);
  }
  return NumberList(numbers);
}

std::string Temperature(const ReportView& view) {
  return ReportNumber(view.fit.TempK - kZeroCelsius, "#0.0 \u00b0C");
}

// Whether somebody entered a load, which a fit without mass conservation does not take.
bool LoadsSet(const ReportView& view) {
  if (!view.Two()) return false;
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    const Dataset& set = view.DatasetOf(d);
    if (set.ALoad != kDefaultLoad || set.BLoad != kDefaultLoad) return true;
  }
  return false;
}

std::string Summary(const ReportView& view) {
  const std::string optics = Kinds(view, [](const Dataset& dataset) {
    const std::string kind = OpticsOf(dataset);
    if (kind != "absorbance" && kind != "fluorescence") return kind;
    return kind + " at " + std::to_string(dataset.Wavelength) + " nm";
  });
  const std::string speeds =
      Kinds(view, [](const Dataset& dataset) { return FormatNumber(dataset.Speed, "#####0"); });
  const int sets = view.fit.NumFitSets;
  return (sets == 1 ? "One scan" : std::to_string(sets) + " scans") +
         " of sedimentation equilibrium (optics: " + optics + "; " + speeds + " rpm; " +
         Temperature(view) + ") " + (sets == 1 ? "was" : "were") + " fitted with the model " +
         view.ModelName() +
         " by nonlinear least squares (Levenberg-Marquardt), all points with the same weight, "
         "with Quorvane " +
         ProgramVersion() + ".";
}

ReportTable Conditions(const ReportView& view) {
  ReportTable table{.title = "Model and conditions", .head = {}, .rows = {}};
  const auto add = [&](const char* name, ReportText text) {
    table.rows.push_back({name, std::move(text)});
  };
  const Reaction& reaction = view.fit.FitModel->reaction;
  add("Model", view.ModelName());
  add("Reaction", {std::string(reaction.equation), true});
  if (!reaction.constants.empty()) {
    add("Association constants", {std::string(reaction.constants), true});
    add("Scale of the constants",
        "that of the reference concentrations: signal over extinction coefficient");
  }
  add("Temperature", Temperature(view));
  add(view.Two() ? "Partial specific volume of A" : "Partial specific volume",
      ReportNumber(view.record.page.Vbar, "0.000##") + " ml/g");
  if (view.Two()) {
    add("Partial specific volume of B", ReportNumber(view.record.page.VbarB, "0.000##") + " ml/g");
  }
  add("Solvent density", ReportNumber(view.record.page.Density, "0.0000#") + " g/ml");
  if (view.LoadsCount()) {
    add("Mass conservation", "soft, tolerance " + ReportNumber(view.fit.MCTolerance, "#0.0###"));
  } else if (LoadsSet(view)) {
    add("Mass conservation", "none: the loads had no part in the fit");
  }
  return table;
}

// Ends of a column that the model takes, or that somebody moved from where the load put them.
bool MeniscusCounts(const ReportView& view, const Dataset& set) {
  return view.fit.FitModel->cellEnds || set.Rmen != set.R.front();
}

bool BaseCounts(const ReportView& view, const Dataset& set) {
  return view.fit.FitModel->cellEnds || set.Rbase != LastRadius(set);
}

bool EndsCount(const ReportView& view) {
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    if (MeniscusCounts(view, view.DatasetOf(d)) || BaseCounts(view, view.DatasetOf(d))) return true;
  }
  return false;
}

ReportTable Scans(const ReportView& view) {
  ReportTable table{
      .title = "Datasets",
      .head = {"No.", "Dataset", "Optics", "Wavelength (nm)", "Speed (rpm)", "Temp. (\u00b0C)"},
      .rows = {}};
  const bool ends = EndsCount(view);
  if (ends) table.head.insert(table.head.end(), {"Meniscus (cm)", "Base (cm)"});
  table.head.emplace_back("Blank subtracted");
  if (view.NeedsWidth()) table.head.emplace_back("Cell");
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    const Dataset& set = view.DatasetOf(d);
    ReportRow row = {std::to_string(d),
                     NameOf(set),
                     OpticsOf(set),
                     ReportNumber(set.Wavelength, "##0"),
                     ReportNumber(set.Speed, "#####0"),
                     ReportNumber(static_cast<double>(set.Temperature), "#0.0")};
    if (ends) {
      row.emplace_back(MeniscusCounts(view, set) ? ReportNumber(set.Rmen, "0.0000") : kReportNone);
      row.emplace_back(BaseCounts(view, set) ? ReportNumber(set.Rbase, "0.0000") : kReportNone);
    }
    row.emplace_back(IsBlanked(set) ? "yes" : "no");
    if (view.NeedsWidth()) row.emplace_back(view.record.cells[static_cast<std::size_t>(d - 1)]);
    table.rows.push_back(std::move(row));
  }
  return table;
}

// From the first to the last good point.
std::string FittedRadii(const ReportView& view, int d) {
  const int first = view.fit.SetFirstPoint(d);
  int last = first + view.fit.SetPointCount(d) - 1;
  while (last > first && view.fit.PointKind(last) != 0) --last;
  if (last < first) return kReportNone;
  return ReportNumber(view.fit.FitR(first), "0.0000") + " \u2013 " +
         ReportNumber(view.fit.FitR(last), "0.0000");
}

ReportTable Points(const ReportView& view) {
  ReportTable table{.title = "Points and constants of each dataset",
                    .head = {"No.", "Radii fitted (cm)", "Points", "Left out", "Ref. radius (cm)",
                             view.Two() ? "Ext. coeff. A" : "Ext. coeff."},
                    .rows = {}};
  if (view.Two()) table.head.emplace_back("Ext. coeff. B");
  const bool loads = view.LoadsCount() || LoadsSet(view);
  if (loads) table.head.insert(table.head.end(), {"Load A", "Load B"});
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    const Dataset& set = view.DatasetOf(d);
    const int good = CountGoodPoints(set);
    ReportRow row = {std::to_string(d),
                     FittedRadii(view, d),
                     std::to_string(good),
                     std::to_string(set.NumPoints - good),
                     ReportNumber(set.RefRadius, "0.0000"),
                     ReportNumber(set.ExtCoeff, "0.000E+00")};
    if (view.Two()) row.emplace_back(ReportNumber(set.ExtCoeff2, "0.000E+00"));
    if (loads) {
      row.emplace_back(ReportNumber(set.ALoad, "0.00E+00"));
      row.emplace_back(ReportNumber(set.BLoad, "0.00E+00"));
    }
    table.rows.push_back(std::move(row));
  }
  return table;
}

// Block 0 of a fit's parameters holds the baselines, 1 and 2 the reference concentrations.
void AddPerDataset(const ReportView& view, ReportTable& table, const std::string& name, int block) {
  const auto state = [&](int d) { return view.fit.FitIA(block * view.fit.NumFitSets + d) != 0; };
  const auto own = [&](int d) { return block == 0 || view.LinkOf(d) == d; };
  const std::string fitted = Those(view, [&](int d) { return own(d) && state(d); });
  const std::string held = Those(view, [&](int d) { return own(d) && !state(d); });
  std::vector<std::string> parts;
  if (!fitted.empty()) parts.push_back("fitted (" + fitted + ")");
  if (!held.empty()) parts.push_back("held (" + held + ")");
  table.rows.push_back({name + ", by dataset", Enumeration(parts)});
}

// What was fitted, held, shared and linked.
ReportTable Treatment(const ReportView& view) {
  ReportTable table{.title = "Parameters", .head = {}, .rows = {}};
  std::vector<std::string> fitted;
  std::vector<std::string> held;
  for (const ConfidenceRow& row : ConfidenceRows(view.fit)) {
    const std::string name(Trim(row.caption));
    (row.fitted ? fitted : held).push_back(row.fitted ? name : name + " = " + row.value);
  }
  const auto add = [&](const char* name, std::string text) {
    if (!text.empty()) table.rows.push_back({name, std::move(text)});
  };
  add("Shared by all datasets, fitted", Enumeration(fitted));
  add("Shared by all datasets, held", Enumeration(held));
  add("Ratios of constants", view.fit.ConstrainKRatios ? "held" : "");
  AddPerDataset(view, table, "Baseline", 0);
  AddPerDataset(view, table,
                view.Two() ? "Reference concentration of A" : "Reference concentration", 1);
  if (view.Two()) AddPerDataset(view, table, "Reference concentration of B", 2);
  std::vector<std::string> links;
  for (int d = 1; d <= view.fit.NumFitSets; ++d) {
    const std::string linked = Those(view, [&](int e) { return e != d && view.LinkOf(e) == d; });
    if (!linked.empty()) links.push_back(linked + " with " + std::to_string(d));
  }
  add("Datasets that share reference concentrations", Enumeration(links));
  return table;
}

}  // namespace

ReportSection MethodsSection(const ReportView& view) {
  ReportSection section{.title = "Methods", .paragraphs = {Summary(view)}, .tables = {}};
  section.tables = {Conditions(view), Scans(view), Points(view), Treatment(view)};
  return section;
}

}  // namespace quorvane
