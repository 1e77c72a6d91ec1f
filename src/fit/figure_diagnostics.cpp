#include "fit/figure_diagnostics.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "fit/concentration_scale.h"
#include "fit/figure_words.h"
#include "fit/local_weights.h"
#include "fit/normal_scores.h"

namespace quorvane {

namespace {

constexpr double kMicromolar = 1e6;

bool IsTrueWeight(const FitState& fit, const FigureChoices& choices) {
  return choices.trueWeights && !fit.TwoComponentModel && fit.Vbar * fit.Density != 1.0;
}

// Whether signals can be told as concentrations of the one component.
bool IsMolar(const FitState& fit) {
  return !fit.TwoComponentModel && ScaleOf(fit) == ConcentrationScale::kMolar;
}

void AddAverages(FigurePoints& points, const LocalAverages& averages, double perSignal,
                 double perWeight) {
  for (std::size_t k = 0; k < averages.signal.size(); ++k) {
    points.Add(averages.signal[k] * perSignal, averages.weight[k] * perWeight);
  }
}

double RmsOf(const std::vector<double>& residuals) {
  double squares = 0.0;
  for (const double residual : residuals) squares += residual * residual;
  return std::sqrt(squares / static_cast<double>(residuals.size()));
}

}  // namespace

DiagnosticTitles TitlesOf(const FigureChoices& choices, const FitState& fit,
                          const std::vector<const Dataset*>& datasets) {
  switch (choices.content) {
    case FigureContent::kResiduals:
      return {"Residuals", RadialTitle(choices.abscissa)};
    case FigureContent::kQuantiles:
      return {"Residual / rms of its dataset", "Quantile of a normal distribution"};
    default:
      break;
  }
  std::string left = fit.TwoComponentModel ? "Local signal-average " : "Local weight-average ";
  left += IsTrueWeight(fit, choices) ? "M (Da)" : "buoyant M (Da)";
  return {left, IsMolar(fit) ? "Concentration as monomer (\xC2\xB5M)"
                             : SignalTitle(datasets) + " above baseline"};
}

int ShowLocalWeights(FigureSeries& series, const FitState& fit, int d,
                     const FigureChoices& choices) {
  const int window =
      choices.window > 0 ? choices.window : AutomaticWeightWindow(fit.SetPointCount(d));
  const LocalWeights weights = LocalWeightAverages(fit, d, window);
  const double perSignal = IsMolar(fit) ? kMicromolar / fit.SetEpsA(d) : 1.0;
  const double perWeight = IsTrueWeight(fit, choices) ? 1.0 / (1.0 - fit.Vbar * fit.Density) : 1.0;
  AddAverages(series.data, weights.data, perSignal, perWeight);
  if (choices.curves) AddAverages(series.curve, weights.model, perSignal, perWeight);
  return weights.leftOut;
}

void RankResiduals(std::vector<FigureSeries>& series) {
  std::vector<std::pair<double, double*>> ranked;  // value, and where its quantile goes
  for (FigureSeries& one : series) {
    const double rms = RmsOf(one.data.y);
    for (std::size_t k = 0; k < one.data.y.size(); ++k) {
      if (rms > 0.0) one.data.y[k] /= rms;
      ranked.emplace_back(one.data.y[k], &one.data.x[k]);
    }
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  const std::vector<double> scores = NormalScores(ranked.size());
  for (std::size_t k = 0; k < ranked.size(); ++k) *ranked[k].second = scores[k];
}

std::vector<FigurePoints> GuidesOf(FigureContent content, const std::vector<FigureSeries>& series) {
  if (content == FigureContent::kData || content == FigureContent::kLocalWeights) return {};
  ChartRange across;
  for (const FigureSeries& one : series) across.Include(one.data.x);
  if (across.Empty()) return {};
  if (content == FigureContent::kResiduals) return {{{across.low, across.high}, {0.0, 0.0}}};
  return {{{across.low, across.high}, {across.low, across.high}}};
}

}  // namespace quorvane
