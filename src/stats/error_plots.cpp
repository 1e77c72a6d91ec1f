#include "stats/error_plots.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "base/number_format.h"

namespace quorvane {

namespace {

// One colour a level, from the innermost.
ChartColor LevelColor(std::size_t k) {
  constexpr std::array<ChartColor, 4> kColors = {0x2C8A2C, 0x0070D0, 0x902090, 0x808080};
  return kColors[k % kColors.size()];
}

std::string LevelText(double level) {
  return FormatNumber(level, "##.0#") + " %";
}

// How far from the value a side is worth showing.
double ReachOf(const ParameterErrors& errors) {
  constexpr double kErrors = 6.0;
  double reach = kErrors * errors.error;
  for (const ProfileLimits& limits : errors.profile->limits) {
    for (const SideLimit* side : {&limits.lower, &limits.upper}) {
      if (side->HasLimit()) reach = std::max(reach, 1.05 * std::fabs(side->limit - errors.value));
    }
  }
  return reach > 0.0 ? reach : std::numeric_limits<double>::infinity();
}

ChartSeries CurveOf(const ParameterErrors& errors) {
  ChartSeries curve{.name = "Sum of squares", .color = kChartBlack, .x = {}, .y = {}};
  const double reach = ReachOf(errors);
  for (const ProfilePoint& point : errors.profile->curve) {
    if (std::fabs(point.value - errors.value) > reach) continue;
    curve.x.push_back(point.value);
    curve.y.push_back(point.sum);
  }
  return curve;
}

// S (1 + ((v - value) / sd)^2 / NDF) over the range of the curve, no higher than it.
ChartSeries ParabolaOf(const ErrorAnalysis& analysis, const ParameterErrors& errors,
                       const ChartSeries& curve) {
  constexpr int kPoints = 121;
  ChartSeries parabola{.name = "Standard error", .color = kChartBlue, .x = {}, .y = {}};
  if (!(errors.error > 0.0)) return parabola;
  const double low = curve.x.front();
  const double high = curve.x.back();
  const double top = *std::max_element(curve.y.begin(), curve.y.end());
  for (int k = 0; k < kPoints; ++k) {
    const double v = low + (high - low) * k / (kPoints - 1);
    const double errorsOff = (v - errors.value) / errors.error;
    const double sum = analysis.sum * (1.0 + errorsOff * errorsOff / analysis.freedom);
    if (sum > top) continue;
    parabola.x.push_back(v);
    parabola.y.push_back(sum);
  }
  return parabola;
}

// Stairs over even classes.
ChartSeries StairsOf(const std::vector<double>& values) {
  constexpr double kMostClasses = 60.0;
  ChartSeries stairs{.name = "Replicates", .x = {}, .y = {}};
  const auto ends = std::minmax_element(values.begin(), values.end());
  const double low = *ends.first;
  const double high = *ends.second;
  const double root = std::sqrt(static_cast<double>(values.size()));
  const auto classes = static_cast<std::size_t>(std::clamp(root, 1.0, kMostClasses));
  const double width = (high - low) / static_cast<double>(classes);
  std::vector<double> counts(classes, 0.0);
  for (const double value : values) {
    const double place = width > 0.0 ? (value - low) / width : 0.0;
    counts[std::min(classes - 1, static_cast<std::size_t>(place))] += 1.0;
  }
  const auto corner = [&](std::size_t edge, double count) {
    stairs.x.push_back(low + width * static_cast<double>(edge));
    stairs.y.push_back(count);
  };
  corner(0, 0.0);
  for (std::size_t k = 0; k < classes; ++k) {
    corner(k, counts[k]);
    corner(k + 1, counts[k]);
  }
  corner(classes, 0.0);
  return stairs;
}

}  // namespace

Chart PlotProfile(const ErrorAnalysis& analysis, const ParameterErrors& errors) {
  ChartPanel panel{.leftTitle = "Sum of squares", .series = {}, .marks = {}, .legend = true};
  const ChartSeries curve = CurveOf(errors);
  ChartSeries trials = curve;
  trials.name.clear();
  trials.style = SeriesStyle::kDot;
  panel.series = {curve, std::move(trials), ParabolaOf(analysis, errors, curve)};
  for (std::size_t k = 0; k < errors.profile->limits.size(); ++k) {
    const ProfileLimits& limits = errors.profile->limits[k];
    const double sum = limits.ratio * analysis.sum;
    panel.series.push_back({.name = LevelText(limits.level),
                            .color = LevelColor(k),
                            .x = {curve.x.front(), curve.x.back()},
                            .y = {sum, sum}});
    for (const SideLimit* side : {&limits.lower, &limits.upper}) {
      if (side->HasLimit()) panel.marks.push_back({side->limit, LevelColor(k), ""});
    }
  }
  return {.title = "Profile of " + errors.name, .bottomTitle = errors.name, .panels = {panel}};
}

Chart PlotReplicates(const ParameterErrors& errors, const ParameterReplicates& replicates,
                     const std::string& title) {
  ChartPanel panel{.leftTitle = "Replicates", .series = {}, .marks = {}};
  if (!replicates.values.empty()) {
    panel.series.push_back(StairsOf(replicates.values));
    panel.marks.push_back({errors.value, kChartBlack, "fit"});
  }
  for (std::size_t k = 0; k < replicates.limits.size(); ++k) {
    const PercentileLimits& limits = replicates.limits[k];
    panel.marks.push_back({limits.lower, LevelColor(k), LevelText(limits.level)});
    panel.marks.push_back({limits.upper, LevelColor(k), LevelText(limits.level)});
  }
  return {.title = title + ": " + errors.name, .bottomTitle = errors.name, .panels = {panel}};
}

}  // namespace quorvane
