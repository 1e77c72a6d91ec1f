#include "stats/comparison_table.h"

#include <algorithm>
#include <cmath>

#include "base/csv.h"
#include "base/number_format.h"
#include "fit/models.h"

namespace quorvane {

namespace {

// A sum of squares of huge signals may have gone beyond all numbers.
std::string Shown(const std::optional<double>& value, const char* pattern) {
  return value && std::isfinite(*value) ? FormatNumber(*value, pattern) : "-";
}

std::string Counted(int count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Fitted ones of the parameters that every dataset has, from place `first` on.
int CountFitted(const FitSummary& fit, int first, int count) {
  int fitted = 0;
  for (int k = first; k < first + count; ++k) {
    fitted += fit.parameters[static_cast<std::size_t>(k)].fitted ? 1 : 0;
  }
  return fitted;
}

std::string VariedText(const FitSummary& fit) {
  std::string shared;
  for (const ModelParameter& parameter : fit.model->parameters) {
    if (!fit.Shared(*parameter.shared)->fitted) continue;
    shared += (shared.empty() ? "" : ", ") + std::string(parameter.shared->name);
  }
  const int sets = fit.Sets();
  const int concentrations = CountFitted(fit, sets, fit.model->secondComponent ? 2 * sets : sets);
  return (shared.empty() ? "" : shared + "; ") +
         Counted(CountFitted(fit, 0, sets), "baseline", "baselines") + ", " +
         Counted(concentrations, "concentration", "concentrations");
}

// The shared parameters that at least one of the fits has, in the order of the page.
std::vector<const SharedParameter*> ParametersOf(std::span<const NamedFit> fits) {
  std::vector<const SharedParameter*> parameters;
  for (const SharedParameter& parameter : SharedParameters) {
    for (const NamedFit& fit : fits) {
      if (fit.summary->Shared(parameter) == nullptr) continue;
      parameters.push_back(&parameter);
      break;
    }
  }
  return parameters;
}

std::string CsvOptional(const std::optional<double>& value) {
  return value ? CsvNumber(*value) : "";
}

}  // namespace

FitTexts TextsOf(const FitSummary& fit) {
  FitTexts texts;
  texts.model = fit.model->name;
  texts.varied = VariedText(fit);
  texts.points = std::to_string(fit.points);
  texts.fitted = std::to_string(fit.Fitted());
  texts.freedom = std::to_string(fit.Freedom());
  texts.sum = Shown(fit.sum, "0.00000E+00");
  texts.rms = Shown(fit.Rms(), "0.0000E+00");
  texts.aicc = Shown(fit.AICc(), "0.00");
  texts.bic = Shown(fit.BIC(), "0.00");
  texts.runsZ = Shown(fit.runsZ, "0.00");
  texts.rest = fit.atRest ? (*fit.atRest ? "yes" : "no") : "-";
  return texts;
}

std::string PatternOfError(double value, double error) {
  if (!(error > 0.0) || !std::isfinite(error)) return "";
  constexpr double kWidest = 1e7;
  const double digits = std::floor(std::log10(error));
  if (digits < -6.0 || digits > 6.0 || !(std::abs(value) < kWidest)) return "";
  const int decimals = std::max(0, 1 - static_cast<int>(digits));
  return decimals == 0 ? "0" : "0." + std::string(static_cast<std::size_t>(decimals), '0');
}

std::string ValueText(const SummaryParameter& parameter) {
  if (!std::isfinite(parameter.value)) return "-";
  const std::string value = FormatParam(parameter.value);
  if (!parameter.fitted) return value + " (held)";
  if (!parameter.error || !std::isfinite(*parameter.error)) return value;
  const double error = *parameter.error;
  const std::string pattern = PatternOfError(parameter.value, error);
  if (pattern.empty()) return value + " \u00B1 " + FormatParam(error);
  return FormatNumber(parameter.value, pattern) + " \u00B1 " + FormatNumber(error, pattern);
}

std::vector<ComparisonRow> ComparisonRows(std::span<const NamedFit> fits,
                                          const FitComparison* comparison) {
  std::vector<ComparisonRow> rows;
  const auto add = [&](const std::string& name, auto&& cell) {
    ComparisonRow& row = rows.emplace_back(ComparisonRow{name, {}});
    for (std::size_t k = 0; k < fits.size(); ++k) row.cells.push_back(cell(k));
  };
  std::vector<FitTexts> texts;
  for (const NamedFit& fit : fits) texts.push_back(TextsOf(*fit.summary));
  const auto addText = [&](const char* name, std::string FitTexts::*field) {
    add(name, [&](std::size_t k) { return texts[k].*field; });
  };
  addText("Model", &FitTexts::model);
  addText("Fitted", &FitTexts::varied);
  addText("Points", &FitTexts::points);
  addText("Fitted parameters", &FitTexts::fitted);
  addText("Degrees of freedom", &FitTexts::freedom);
  addText("Sum of squares", &FitTexts::sum);
  addText("RMS", &FitTexts::rms);
  addText("AICc", &FitTexts::aicc);
  if (comparison != nullptr) {
    add("AICc above the lowest",
        [&](std::size_t k) { return Shown(comparison->ranks[k].difference, "0.00"); });
    add("Akaike weight",
        [&](std::size_t k) { return Shown(comparison->ranks[k].weight, "0.000"); });
  }
  addText("BIC", &FitTexts::bic);
  addText("Runs Z", &FitTexts::runsZ);
  addText("At rest", &FitTexts::rest);
  for (const SharedParameter* parameter : ParametersOf(fits)) {
    add(std::string(parameter->name), [&](std::size_t k) {
      const SummaryParameter* value = fits[k].summary->Shared(*parameter);
      return value == nullptr ? std::string("-") : ValueText(*value);
    });
  }
  return rows;
}

std::string FitsCsv(std::span<const NamedFit> fits) {
  const std::vector<const SharedParameter*> parameters = ParametersOf(fits);
  std::string text =
      "name,model,fitted,points,fitted_parameters,degrees_of_freedom,sum,rms,aicc,bic,runs_z,at_"
      "rest";
  for (const SharedParameter* parameter : parameters) {
    text += "," + std::string(parameter->name) + "," + std::string(parameter->name) + "_sd";
  }
  text += "\n";
  for (const NamedFit& named : fits) {
    const FitSummary& fit = *named.summary;
    const FitTexts texts = TextsOf(fit);
    text += CsvText(named.name) + "," + CsvText(texts.model) + "," + CsvText(texts.varied) + "," +
            texts.points + "," + texts.fitted + "," + texts.freedom + "," + CsvNumber(fit.sum) +
            "," + CsvOptional(fit.Rms()) + "," + CsvOptional(fit.AICc()) + "," +
            CsvOptional(fit.BIC()) + "," + CsvOptional(fit.runsZ) + "," +
            (fit.atRest ? texts.rest : "");
    for (const SharedParameter* parameter : parameters) {
      const SummaryParameter* value = fit.Shared(*parameter);
      text +=
          value == nullptr ? ",," : "," + CsvNumber(value->value) + "," + CsvOptional(value->error);
    }
    text += "\n";
  }
  return text;
}

}  // namespace quorvane
