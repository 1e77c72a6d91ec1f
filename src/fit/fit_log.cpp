#include "fit/fit_log.h"

#include <cmath>
#include <string>

#include "base/arithmetic.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/text.h"
#include "fit/mass_conservation.h"
#include "fit/models.h"

namespace quorvane {

namespace {

constexpr std::string_view kSigned = " 0.00E+00;-0.00E+00";

std::string Space(std::size_t count) {
  return std::string(count, ' ');
}

// `text` (UTF-8) in a field of 20 characters: filled up with blanks, or its end behind "...".
std::string NameField(const std::string& text) {
  constexpr std::size_t kField = 20;
  constexpr std::size_t kEnd = 17;
  const std::string bytes = Utf8ToCp1252(text);
  if (bytes.size() > kField) return "..." + Cp1252ToUtf8(bytes.substr(bytes.size() - kEnd));
  return text + Space(kField - bytes.size());
}

// `text` in at most 20 characters: its start before "..." if it is longer.
std::string CellTypeField(const std::string& text) {
  constexpr std::size_t kField = 20;
  constexpr std::size_t kStart = 17;
  const std::string bytes = Utf8ToCp1252(std::string(Trim(text)));
  if (bytes.size() > kField) return Cp1252ToUtf8(bytes.substr(0, kStart)) + "...";
  return Cp1252ToUtf8(bytes);
}

// The lines of one report, made from its source.
class ModelReport {
 public:
  ModelReport(const ReportSource& source, Host& host) : source_(source), host_(host) {}

  void MolecularWeight(const std::string& suffix, int k, double vbar, const std::string& name) {
    const double v = source_.fit.FitA(k);
    const double density = source_.page.Density;
    host_.PrintIt("Buoyant MW" + suffix + " = " + FormatNumber(v, "### ") +
                  std::string(kPlusMinus) + FormatNumber(Error(k), " ##0 Da") + "\r\n");
    const double weight = Checked([&] { return v / (1.0 - density * vbar); });
    host_.PrintIt("MW" + suffix + " = " + FormatNumber(weight, "### ") +
                  "using the current values of " + name + " = " + FormatNumber(vbar, "0.###0 ") +
                  "and density = " + FormatNumber(density, "0.####0"));
  }

  void Sigma(const std::string& suffix, int k) {
    const double speed = source_.statistics.maxSpeed;
    const double sigma = SigmaAtMaxSpeed(source_.fit, source_.statistics, k);
    host_.PrintIt("Sigma" + suffix + " at Max. Speed of " + FormatNumber(speed, "##### RPM = ") +
                  FormatNumber(sigma, "#0.000 cm-2"));
  }

  void LnK(const std::string& tag, int k) {
    const double v = source_.fit.FitA(k);
    const double association = Checked([&] { return std::exp(v); });
    host_.PrintIt("Ln " + tag + " = " + WithError(v, "#0.000 ", k, " #0.00") + "\r\n");
    host_.PrintIt("Log10 " + tag + " = " + FormatNumber(v / std::log(10.0), "#0.000 ") + "\r\n" +
                  tag + " = " + FormatNumber(association, kSigned));
  }

  void Stoichiometry(const std::string& label, int k) {
    host_.PrintIt(label + " = " + WithError(source_.fit.FitA(k), "#0.00 ", k, " #0.00") + "\r\n");
  }

  void Virial(int k) {
    host_.PrintIt("B*M (virial coefficient) = " +
                  WithError(source_.fit.FitA(k), "0.000E+00 ", k, " 0.000E+00 ") + "\r\n");
  }

  void Alpha(int k) {
    host_.PrintIt("Alpha = " + WithError(source_.fit.FitA(k), "#0.000 ", k, " #0.000") + "\r\n");
  }

 private:
  double Error(int k) const { return StandardError(source_.fit, source_.statistics, k); }

  std::string WithError(double v, const char* pattern, int k, const char* errorPattern) const {
    return FormatNumber(v, pattern) + std::string(kPlusMinus) +
           FormatNumber(Error(k), errorPattern);
  }

  const ReportSource& source_;
  Host& host_;
};

// The ratios that were held, as one line; they stand behind the first constant.
void LogRatios(const ReportSource& source, Host& host) {
  std::string names;
  std::string values;
  int k = source.fit.SharedBase();
  int ratios = 0;
  for (const ModelParameter& parameter : source.fit.FitModel->parameters) {
    ++k;
    if (!MayBeRatio(*parameter.shared)) continue;
    const std::string name = std::string(parameter.tag) + "/K1";
    names += (ratios++ == 0 ? "" : " and ") + name;
    values += name + " = " + FormatNumber(source.fit.FitA(k), "#0.000 ");
  }
  host.PrintIt("The ratios for " + names + (ratios > 1 ? " have" : " has") +
               " been fixed at the following value" + (ratios > 1 ? "s: " : ": ") + values);
}

// The lines of one shared parameter, FitA(k).
void LogParameter(const ReportSource& source, const ModelParameter& parameter, int k,
                  ModelReport& report) {
  const std::string tag(parameter.tag);
  const bool ofB = parameter.shared->place == 2;
  switch (parameter.shared->kind) {
    case ParameterKind::kWeight:
      report.MolecularWeight(tag, k, ofB ? source.page.VbarB : source.page.Vbar, "vbar" + tag);
      if (parameter.sigma) report.Sigma(tag, k);
      break;
    case ParameterKind::kVirial:
      report.Virial(k);
      break;
    case ParameterKind::kStoichiometry:
      report.Stoichiometry(tag, k);
      break;
    case ParameterKind::kLnK:
      report.LnK(tag, k);
      break;
    case ParameterKind::kFraction:
      report.Alpha(k);
      break;
  }
}

const Dataset& DatasetOf(const ReportSource& source, int d) {
  const auto place = static_cast<std::size_t>(d - 1);
  return source.datasets[static_cast<std::size_t>(source.fit.FitSetList[place])];
}

// Start of a table row: number and name.
std::string RowHead(const ReportSource& source, int d) {
  return FormatNumber(d, " ###: ") + NameField(NameOf(DatasetOf(source, d)));
}

std::string CellType(const ReportSource& source, int d) {
  const auto channel =
      static_cast<std::size_t>(source.cellChannels[static_cast<std::size_t>(d - 1)]);
  if (channel >= source.geometries.size()) return {};
  return CellTypeField(source.geometries[channel].name);
}

void LogMassConservation(const ReportSource& source, Host& host) {
  const FitState& fit = source.fit;
  host.PrintIt("Using soft mass conservation with a tolerance of " +
               FormatNumber(fit.MCTolerance, "#0.0000") + "\r\n");
  host.PrintIt(Space(7) + "File" + Space(16) +
               "[A]input   [A]calc    [B]input   [B]calc      CellType");
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    host.PrintIt(RowHead(source, d) + Space(2) + FormatNumber(fit.SetALoad(d), " 0.00E+00  ") +
                 FormatNumber(CalculatedLoad(fit, d, 1), " 0.00E+00  ") +
                 FormatNumber(fit.SetBLoad(d), " 0.00E+00  ") +
                 FormatNumber(CalculatedLoad(fit, d, 2), " 0.00E+00   ") + CellType(source, d));
  }
}

std::string ReferenceText(const ReportSource& source, int k) {
  const auto [value, error] = ReferenceConcentration(source.fit, source.statistics, k);
  return FormatNumber(value, kSigned) + std::string(kPlusMinus) + FormatNumber(error, "0.00E+00");
}

}  // namespace

void LogDatasetTable(const ReportSource& source, Host& host) {
  const FitState& fit = source.fit;
  const int n = fit.NumFitSets;
  std::string head = "\r\n" + Space(7) + "File" + Space(16) + "Baseline" + Space(13);
  head += fit.TwoComponentModel ? "Ref.Conc.A" + Space(11) + "Ref.Conc.B" + Space(9)
                                : "Ref.Conc." + Space(10);
  head += "Ref.Dist." + Space(2);
  head += fit.TwoComponentModel ? "Ext.Coeff.A" + Space(2) + "Ext.Coeff.B" : "Ext.Coeff.";
  host.PrintIt(head);
  for (int d = 1; d <= n; ++d) {
    const Dataset& dataset = DatasetOf(source, d);
    std::string row = RowHead(source, d) + Space(2) + FormatNumber(fit.FitA(d), kSigned) +
                      std::string(kPlusMinus) +
                      FormatNumber(StandardError(fit, source.statistics, d), "0.00E+00") +
                      Space(3) + ReferenceText(source, n + d);
    if (fit.TwoComponentModel) row += Space(3) + ReferenceText(source, 2 * n + d);
    row += Space(3) + FormatNumber(dataset.RefRadius, "0.0000") + Space(4) +
           FormatNumber(dataset.ExtCoeff, "0.000E+00");
    if (fit.TwoComponentModel) row += Space(4) + FormatNumber(dataset.ExtCoeff2, "0.000E+00");
    host.PrintIt(row);
  }
}

void LogModelLines(const ReportSource& source, Host& host) {
  ModelReport report(source, host);
  const FitState& fit = source.fit;
  const bool ratios = fit.ConstrainKRatios && fit.FitModel->kRatios;
  int k = fit.SharedBase();
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    ++k;
    if (!ratios || !MayBeRatio(*parameter.shared)) LogParameter(source, parameter, k, report);
  }
  if (ratios) LogRatios(source, host);
  if (fit.TwoComponentModel && fit.UseMassConservation) LogMassConservation(source, host);
}

void LogLoadingConcs(const ReportSource& source, Host& host) {
  host.PrintIt("Calculated Loading Concentration for the fitted region:\r\n");
  host.PrintIt(Space(7) + "File" + Space(16) + "[A]calc      CellType");
  for (int d = 1; d <= source.fit.NumFitSets; ++d) {
    host.PrintIt(RowHead(source, d) + Space(2) +
                 FormatNumber(source.fit.SetCalcLoad(d), " 0.00E+00   ") + CellType(source, d));
  }
}

void LogFitCounts(const ReportSource& source, int iterations, Host& host) {
  const FitStatistics& statistics = source.statistics;
  host.PrintIt("\r\nNumber of Iterations: " + FormatNumber(iterations, "###"));
  host.PrintIt("Number of Points: " + FormatNumber(source.fit.FitNumPoints, "#####"));
  host.PrintIt("Degrees of Freedom: " + FormatNumber(statistics.freedom, "#####"));
  const double rms = Checked([&] { return std::sqrt(source.fit.FitChiSq / statistics.freedom); });
  host.PrintIt("RMS Deviation: " + FormatNumber(rms, "#0.00000"));
  host.PrintIt("Number of Parameters Held Constant: " +
               FormatNumber(source.fit.FitMA - statistics.fitted, "#0"));
}

}  // namespace quorvane
